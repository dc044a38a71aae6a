#include <gtest/gtest.h>

#include <string>

#include "pages/page_test_support.h"
#include "pages/project_page.h"

namespace folioscope {
namespace {

using report_testing::AddModule;

class ProjectPageTest : public report_testing::MiniSetTest {
 protected:
  static std::string Page(const std::string& content, const std::string& style) {
    return "P[Kasse|Kasse Version 2.1.7|" + content + "|" + style +
           "|Projekt\xFC"
           "bersicht]";
  }
  std::string Text(bool with_lines, const std::string& prefix) {
    ModuleCounts counts;
    for (int32_t i = 1; i <= project_.Modules.Count(); ++i) CountModuleAt(counts, project_, i);
    return ProjectPageText(Mini(), project_, counts, with_lines, prefix);
  }
};

TEST_F(ProjectPageTest, GroupsCountKindsExactlyAndLinesInTheRegionsGrouping) {
  EXPECT_EQ(Text(true, ""),
            Page("Formulare: 0<br>Module: 0<br>Klassen: 0<br>Steuerelemente: 0<br>"
                 "Eigenschaftsseiten: 0<br>Designer: 0<br><br> Das Projekt hat 0 Codezeilen.",
                 "style.css"));
  // 1234 lines in six modules; the user document belongs to no group.
  AddModule(project_, "frmMain", "Form", 1200);
  AddModule(project_, "modA", "Module", 20);
  AddModule(project_, "CA", "Class", 10);
  AddModule(project_, "CB", "Class", 2);
  AddModule(project_, "DataEnv", "Designer", 1);
  AddModule(project_, "udX", "UserDocument", 1);
  const std::string groups =
      "Formulare: 1<br>Module: 1<br>Klassen: 2<br>Steuerelemente: 0<br>"
      "Eigenschaftsseiten: 0<br>Designer: 1<br><br>";
  EXPECT_EQ(Text(false, "set/"), Page(groups, "set/style.css"));
  EXPECT_EQ(Text(true, ""), Page(groups + " Das Projekt hat 1.234 Codezeilen.", "style.css"));
  platform_.group_separator = "'";
  EXPECT_EQ(Text(true, ""), Page(groups + " Das Projekt hat 1'234 Codezeilen.", "style.css"));
}

}  // namespace
}  // namespace folioscope
