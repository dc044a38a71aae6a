// The member page: what each placeholder receives, the syntax line and the
// parameter notes.
#include <gtest/gtest.h>

#include <string>

#include "pages/member_page.h"
#include "pages/page_test_support.h"

namespace folioscope {
namespace {

class MemberPageTest : public report_testing::MiniSetTest {
 protected:
  MemberPageTest() { report_testing::AddSampleModules(project_); }
  std::string Page(const std::string& module, const std::string& name,
                   const ReportSettings& settings = {}) {
    const ReportContext context{&Mini(), &project_, settings, "set/", false, nullptr};
    return MemberPageText(context, project_.Modules.Item(module).Members.Item(name), "Kasse",
                          module);
  }
};

TEST_F(MemberPageTest, ParameterRowsNotesAndSwitchedFacts) {
  ReportSettings settings;
  settings.ShowHelpContextID = 1;
  settings.ShowVBInternDescription = 1;
  EXPECT_EQ(Page("Kasse Buch", "Rechne", settings),
            "T[Rechne|Kasse|Kasse Buch|Function|privat|Rechne|objekt.Rechne(a, [b], rest)|"
            "Rechnet.||Long|intern|Hilfe-ID: 12|set/style.css]"
            "R[a&nbsp;|Long|Der erste.|ja|Wert|keine|#336699]"
            "R[b&nbsp;|Long||nein|Verweis|Standard:0|#336699]"
            "R[rest&nbsp;|Variant()||ja|Verweis|Feld|#336699]"
            "B[Long|Bemerkung.|Die Summe.|set/style.css]");
  // Both switches count as on only above zero.
  settings.ShowHelpContextID = -1;
  settings.ShowVBInternDescription = -1;
  EXPECT_NE(Page("Kasse Buch", "Rechne", settings).find("|Long|||set/style.css"),
            std::string::npos);
}

TEST_F(MemberPageTest, SyntaxLineForms) {
  struct Case {
    const char* module;
    const char* member;
    const char* top_fields;  // kind | scope | name | syntax
  };
  const Case cases[] = {
      // Assignment forms take " = " and no closing bracket.
      {"Kasse Buch", "Let Wert", "|Property|offen|Let Wert|objekt.Wert = RHS|"},
      // No parameters: the name alone; every member of a class-like module
      // gets the object prefix, whatever its scope.
      {"Kasse Buch", "Tu Es", "|Sub|freund|Tu Es|objekt.Tu Es|"},
      {"Kasse Buch", "Geaendert", "|Ereignis|offen|Geaendert|objekt.Geaendert|"},
      // A standard module has no object prefix; Get keeps its brackets.
      {"Werkzeug", "Get Eintrag", "|Property|offen|Get Eintrag|Eintrag([Index], Name)|"},
      // The declarations section: no kind, name or syntax.
      {"Werkzeug", "Header", "||Deklaration|||"},
  };
  for (const Case& c : cases) {
    const std::string page = Page(c.module, c.member);
    EXPECT_NE(page.find(c.top_fields), std::string::npos) << c.member << ": " << page;
  }
}

}  // namespace
}  // namespace folioscope
