#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "engine/folioscope.h"
#include "engine/report_test_support.h"

namespace folioscope {
namespace {

using report_testing::AddModule;
using report_testing::ReportTest;

const char kGroups[] =
    "Formulare: 1<br>Module: 1<br>Klassen: 2<br>Steuerelemente: 0<br>"
    "Eigenschaftsseiten: 0<br>Designer: 1<br><br>";

class ProjectPageTest : public ReportTest {
 protected:
  // 1234 lines in six modules; the user document belongs to no group.
  void AddMixedModules() {
    AddModule(project_, "frmMain", "Form", 1200);
    AddModule(project_, "modA", "Module", 20);
    AddModule(project_, "CA", "Class", 10);
    AddModule(project_, "CB", "Class", 2);
    AddModule(project_, "DataEnv", "Designer", 1);
    AddModule(project_, "udX", "UserDocument", 1);
  }
  static std::string Page(const std::string& content, const std::string& style) {
    return "P[Kasse|Kasse Version 2.1.7|" + content + "|" + style +
           "|Projekt\xFC"
           "bersicht]";
  }
};

TEST_F(ProjectPageTest, LinesSentenceDependsOnTheSwitchOnlyInThePreview) {
  AddMixedModules();
  const std::string sentence = " Das Projekt hat 1.234 Codezeilen.";
  struct Case {
    int32_t show_loc;
    bool preview_has_sentence;
  };
  const Case cases[] = {{1, true}, {2, false}, {0, false}, {-1, false}};
  for (const Case& c : cases) {
    SCOPED_TRACE("ShowLOCForProjects " + std::to_string(c.show_loc));
    SetWord("ShowLOCForProjects", c.show_loc);
    auto report = MakeReport();
    const std::string prefix = report->report_set_path();
    EXPECT_EQ(report->GetProjektSite(),
              Page(std::string(kGroups) + (c.preview_has_sentence ? sentence : ""),
                   prefix + "style.css"));
    report->SaveReport(0);
    EXPECT_EQ(Out("Projekt.htm"), Page(kGroups + sentence, "style.css") + "\r\n");
  }
  EXPECT_EQ(NewFaults(), 0);
}

TEST_F(ProjectPageTest, EmptyProjectAndRegionalGrouping) {
  auto report = MakeReport();
  EXPECT_EQ(report->GetProjektSite(),
            Page("Formulare: 0<br>Module: 0<br>Klassen: 0<br>Steuerelemente: 0<br>"
                 "Eigenschaftsseiten: 0<br>Designer: 0<br><br> Das Projekt hat 0 Codezeilen.",
                 report->report_set_path() + "style.css"));
  AddMixedModules();
  platform_.group_separator = "'";
  EXPECT_THAT(report->GetProjektSite(), ::testing::HasSubstr(" Das Projekt hat 1'234 Codezeilen."));
}

TEST_F(ProjectPageTest, WritingAnnouncesEveryModuleAndTheProjectStep) {
  AddMixedModules();
  auto report = MakeReport();
  report->SaveReport(0);
  EXPECT_EQ(events_.starts, std::vector<int32_t>{7});
  EXPECT_EQ(CFolioscopeTestPeer(*report).progress_total(), 7);
  std::vector<std::string> names;
  for (size_t i = 0; i < events_.works.size(); ++i) {
    EXPECT_EQ(events_.works[i].value, static_cast<int32_t>(i + 1));
    EXPECT_TRUE(events_.works[i].std_praefix);
    names.push_back(events_.works[i].description);
  }
  EXPECT_EQ(names, (std::vector<std::string>{"frmMain", "modA", "CA", "CB", "DataEnv", "udX"}));
}

TEST_F(ProjectPageTest, HelpFileModeListsThePageAndOpensItsContentsList) {
  AddModule(project_, "modA", "Module", 2);
  auto report = MakeWriter();
  CFolioscopeTestPeer peer(*report);
  peer.StartHelpFileMode();
  peer.WriteProjekt(0);
  EXPECT_EQ(report->chm_file_list().rfind("[FILES]\r\nProjekt.htm\r\n", 0), 0u)
      << report->chm_file_list();
  const std::string& toc = report->chm_toc_text();
  const size_t project_entry = toc.find("Projekt.htm");
  ASSERT_NE(project_entry, std::string::npos);
  EXPECT_NE(toc.find("Kasse"), std::string::npos);
  EXPECT_EQ(toc.find("<ul>"), toc.find("<ul>", project_entry));  // the list follows the entry
}

}  // namespace
}  // namespace folioscope
