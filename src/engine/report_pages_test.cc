// The page writers and previews of the report object: which switches each
// page reads and when, what a save writes and announces, and the help-file
// entries of the pages.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "engine/folioscope.h"
#include "engine/report_test_support.h"

namespace folioscope {
namespace {

using report_testing::ReportTest;
using ::testing::HasSubstr;

class ReportPagesTest : public ReportTest {
 protected:
  ReportPagesTest() { report_testing::AddSampleModules(project_); }
};

TEST_F(ReportPagesTest, ProjectPageLinesFollowTheSwitchOnlyInThePreview) {
  const std::string sentence = " Das Projekt hat 5 Codezeilen.";
  for (int32_t show_loc : {1, 2, 0, -1}) {
    SCOPED_TRACE(show_loc);
    SetWord("ShowLOCForProjects", show_loc);
    auto report = MakeReport();
    EXPECT_EQ(report->GetProjektSite().find(sentence) != std::string::npos, show_loc == 1);
    EXPECT_THAT(report->GetProjektSite(), HasSubstr(SetPrefix() + "style.css"));
    report->SaveReport(0);
    EXPECT_THAT(Out("Projekt.htm"), HasSubstr(sentence + "|style.css|"));
  }
  // One step per module, then the project page.
  EXPECT_EQ(events_.starts, std::vector<int32_t>(4, 3));
  std::vector<std::string> names;
  for (const auto& works : events_.works) {
    EXPECT_TRUE(works.std_praefix);
    names.push_back(std::to_string(works.value) + " " + works.description);
  }
  EXPECT_EQ(names[0], "1 Kasse Buch");
  EXPECT_EQ(names[1], "2 Werkzeug");
  EXPECT_EQ(NewFaults(), 0);
}

TEST_F(ReportPagesTest, LogoPrefersTheUsersTrimmedTitle) {
  const std::pair<std::string, std::string> cases[] = {{"Mein Titel", "Mein Titel"},
                                                       {"  Kasse  ", "Kasse"},
                                                       {"   ", "Quelltext-Dokumentation"},
                                                       {"", "Quelltext-Dokumentation"}};
  for (const auto& [title, shown] : cases) {
    SCOPED_TRACE("'" + title + "'");
    SetString("ReportStdTitle", title);
    MakeReport()->SaveReport(0);
    EXPECT_EQ(Out("Logo.htm"), "L[" + shown + "|#336699]\r\n");
  }
}

TEST_F(ReportPagesTest, ModulePagePreviewListsMembersBySwitchInSourceOrder) {
  SetWord("ToolBarFriendValue", 2);  // only exactly 1 lists
  SetWord("ShowHelpContextID", 2);   // any positive value shows
  SetWord("ShowLOCForModuls", 2);    // only exactly 1 shows
  SetWord("ShowModulePath", 1);
  SetWord("ShowModuleRelativePath", 3);
  SetWord("ShowVBInternDescription", 1);
  auto report = MakeReport();
  const std::string css = SetPrefix() + "style.css";
  EXPECT_EQ(report->GetModulContentSite("Kasse Buch"),
            "H[Kasse Buch|Klassenmodul|Kasse Buch|Kasse|Datei: Kasse Buch.cls|Buchungen|"
            "Kontext: 77||Pfad: /src/Kasse Buch.cls|Das Kassenbuch.|" +
                css +
                "]"
                "M[<a href='Rechne'>Rechne</a>~<br><br>~Rechnet.|style.css]"
                "M[<a href='Let Wert'>Let Wert</a>~~|style.css]"
                "M[<a href='Geaendert'>Geaendert</a>~~|style.css]"
                "F[Anmerkungen|Nur lesen.|" +
                css + "]");

  SetWord("ToolBarPublicValue", 0);
  SetWord("ToolBarPrivateValue", 0);
  SetWord("ToolBarFriendValue", 1);
  SetWord("ShowLOCForModuls", 1);
  const std::string page = report->GetModulContentSite("Kasse Buch");
  EXPECT_NE(page.find("|Zeilen: 5|"), std::string::npos);
  EXPECT_NE(page.find("]M[<a href='Tu Es'>Tu Es</a>~~|style.css]F["), std::string::npos);
  EXPECT_EQ(NewFaults(), 0);

  // An unknown module is a fault and gives nothing.
  EXPECT_EQ(report->GetModulContentSite("Fehlt"), "");
  EXPECT_EQ(NewFaults(), 1);
}

TEST_F(ReportPagesTest, WrittenModulePageWritesListedMemberPagesWithoutPrefix) {
  auto report = MakeReport();
  report->ModuleName = "Kasse Buch";
  report->SaveReport(1);
  EXPECT_EQ(Out("Kasse_Buch.htm"),
            "H[Kasse Buch|Klassenmodul|Kasse Buch|Kasse||||||Das Kassenbuch.|style.css]"
            "M[<a href='Kasse_Buch_Rechne.htm' TARGET = 'FrameRechts'>Rechne</a>~<br><br>~"
            "Rechnet.|style.css]"
            "M[<a href='Kasse_Buch_Let_Wert.htm' TARGET = 'FrameRechts'>Let Wert</a>~~|style.css]"
            "M[<a href='Kasse_Buch_Tu_Es.htm' TARGET = 'FrameRechts'>Tu Es</a>~~|style.css]"
            "M[<a href='Kasse_Buch_Geaendert.htm' TARGET = 'FrameRechts'>Geaendert</a>~~|"
            "style.css]"
            "F[Anmerkungen|Nur lesen.|style.css]\r\n");
  const std::string tu_es =
      "T[Tu Es|Kasse|Kasse Buch|Sub|freund|Tu Es|objekt.Tu Es||||||style.css]"
      "B[|||style.css]\r\n";
  EXPECT_EQ(Out("Kasse_Buch_Tu_Es.htm"), tu_es);
  EXPECT_THAT(OutFiles(), ::testing::ElementsAre("Kasse_Buch.htm", "Kasse_Buch_Geaendert.htm",
                                                 "Kasse_Buch_Let_Wert.htm", "Kasse_Buch_Rechne.htm",
                                                 "Kasse_Buch_Tu_Es.htm", "logo.gif", "style.css"));
  // A one-member save writes that page again, replacing it.
  report->MemberName = "Tu Es";
  report->SaveReport(2);
  EXPECT_EQ(Out("Kasse_Buch_Tu_Es.htm"), tu_es);
  EXPECT_EQ(NewFaults(), 0);
}

TEST_F(ReportPagesTest, HelpFileModeListsPagesAndNestsTheirContentsEntries) {
  SetWord("ToolBarPrivateValue", 0);
  SetWord("ToolBarFriendValue", 0);
  auto entry = [](const std::string& caption, const std::string& file) {
    return "<LI> <OBJECT type=\"text/sitemap\">\r\n<param name=\"Name\" value=\"" + caption +
           "\">\r\n<param name=\"Local\" value=\"" + file + "\">\r\n</OBJECT>\r\n";
  };
  auto report = MakeReport();
  report->SaveCHMReportSystem(0);
  // Resources named twice are listed once; the logo page is not listed.
  EXPECT_EQ(report->chm_file_list(),
            "[FILES]\r\nstyle.css\r\nlogo.gif\r\n_Index.htm\r\nMenu.htm\r\nProjekt.htm\r\n"
            "Kasse_Buch.htm\r\nWerkzeug.htm\r\n");
  EXPECT_EQ(report->chm_toc_text(), entry("Kasse", "Projekt.htm") + "<ul>" +
                                        entry("Kasse Buch", "Kasse_Buch.htm") + "<ul>" +
                                        entry("Let Wert", "Kasse_Buch_Let_Wert.htm") + "\r\n" +
                                        entry("Geaendert", "Kasse_Buch_Geaendert.htm") + "\r\n" +
                                        "</ul>" + entry("Werkzeug", "Werkzeug.htm") + "<ul>" +
                                        entry("Get Eintrag", "Werkzeug_Get_Eintrag.htm") + "\r\n");
  // Help pages open links in place.
  EXPECT_THAT(Out("Werkzeug.htm"), HasSubstr("<a href='Werkzeug_Get_Eintrag.htm'>"));

  // A one-module save opens its own list.
  report->ModuleName = "Werkzeug";
  report->SaveCHMReportSystem(1);
  EXPECT_EQ(report->chm_toc_text(), "<ul>" + entry("Werkzeug", "Werkzeug.htm") + "<ul>" +
                                        entry("Get Eintrag", "Werkzeug_Get_Eintrag.htm") + "\r\n");
}

// A save checks its readiness before every member page. What the caller
// changes from a progress event or from host code run by a pumped message
// is seen from the next member page on; the switch here is the help
// context's, which shows on member pages only.
TEST_F(ReportPagesTest, SavePagesSeeSettingsChangedByTheCallerFromTheNextPageOn) {
  struct Case {
    const char* how;
    std::vector<std::string> pages_with_help_context;
  };
  const std::vector<Case> cases = {
      {"none", {}},
      {"progress event of module 2", {"Werkzeug_Get_Eintrag.htm"}},
      {"pump before page 2",
       {"Kasse_Buch_Let_Wert.htm", "Kasse_Buch_Tu_Es.htm", "Kasse_Buch_Geaendert.htm",
        "Werkzeug_Get_Eintrag.htm"}},
  };
  const std::vector<std::string> member_pages = {"Kasse_Buch_Rechne.htm", "Kasse_Buch_Let_Wert.htm",
                                                 "Kasse_Buch_Tu_Es.htm", "Kasse_Buch_Geaendert.htm",
                                                 "Werkzeug_Get_Eintrag.htm"};
  struct SwitchOnWorks : CFSCommunicatorEvents {
    void Message(std::string&, int32_t&) override {}
    void OnReportStart(int32_t&) override {}
    void OnReportWorks(int32_t& value, std::string&, bool&) override {
      if (value == 2) CRegistry().SaveRegWord(kHkeyCurrentUser, kConfigKey, "ShowHelpContextID", 1);
    }
  } switch_on_works;
  for (const Case& c : cases) {
    SCOPED_TRACE(c.how);
    SetWord("ShowHelpContextID", 0);
    const std::string how = c.how;
    if (how == "progress event of module 2") channel_->AddListener(&switch_on_works);
    // Pumps run before and after each member page's check.
    const int64_t pumps_before = platform_.pump_count;
    if (how == "pump before page 2") {
      platform_.on_pump = [&] {
        if (platform_.pump_count - pumps_before == 5) SetWord("ShowHelpContextID", 1);
      };
    }
    auto report = MakeReport();
    report->SaveReport(0);
    channel_->RemoveListener(&switch_on_works);
    platform_.on_pump = nullptr;
    std::vector<std::string> with;
    for (const std::string& page : member_pages) {
      if (Out(page).find("Hilfe-ID:") != std::string::npos) with.push_back(page);
    }
    EXPECT_EQ(with, c.pages_with_help_context);
  }
  EXPECT_EQ(NewFaults(), 0);
}

}  // namespace
}  // namespace folioscope
