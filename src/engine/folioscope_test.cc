// The readiness check: which settings make the report object ready, the
// messages of a failed check, and the one-time template reload.
#include "engine/folioscope.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "engine/report_test_support.h"

namespace folioscope {
namespace {

using report_testing::ReportTest;
using report_testing::WriteMiniFile;

class ReadinessTest : public ReportTest {
 protected:
  // A module whose page shows the head template, so the loaded templates
  // can be told apart.
  void AddPlainModule() { report_testing::AddModule(project_, "Buch", "Module"); }
};

TEST_F(ReadinessTest, MissingChoiceOrFolderFailsWithLogAndBox) {
  struct Case {
    const char* language;
    const char* path;
    const char* message_start;
    std::string folder_named;  // the tested folder the message ends with, if any
  };
  const Case cases[] = {
      // Blanks only count as no language, whatever the path says.
      {"   ", "Mini", "Es wurde noch kein Report-Set ausgew\xE4hlt.", ""},
      {"Deutsch", "Fehlt", "Der Dateipfad des ausgew\xE4hlten Report-Sets ist ung\xFCltig.",
       AppDir().string() + "/Res/Fehlt"},
      // An empty path tests "<app>/Res/", which exists but still fails.
      {"Deutsch", "", "Der Dateipfad des ausgew\xE4hlten Report-Sets ist ung\xFCltig.",
       AppDir().string() + "/Res/"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.path);
    SetCurrent("ReportLanguage", c.language);
    SetCurrent("ReportPath", c.path);
    platform_.message_boxes.clear();
    events_.messages.clear();
    CFolioscope report;
    EXPECT_FALSE(report.Ready());
    ASSERT_EQ(platform_.message_boxes.size(), 1u);
    const auto& box = platform_.message_boxes[0];
    EXPECT_EQ(box.text.rfind(c.message_start, 0), 0u) << box.text;
    EXPECT_EQ(box.title, "Quillon");
    EXPECT_EQ(box.style, kMbOkOnly | kMbExclamation);
    if (!c.folder_named.empty()) {
      EXPECT_NE(box.text.find("\r\nBitte beachten Sie"), std::string::npos);
      const std::string end = " im Ordner " + c.folder_named + " befinden.";
      EXPECT_EQ(box.text.substr(box.text.size() - end.size()), end);
    }
    ASSERT_EQ(events_.messages.size(), 1u);
    EXPECT_EQ(events_.messages[0].first, box.text);
    EXPECT_EQ(events_.messages[0].second, kIconNotReady);
    // Every call checks again: the getters give nothing and box again.
    report.Projekt = &project_;
    EXPECT_EQ(report.GetModulContentSite("Buch"), "");
    EXPECT_EQ(platform_.message_boxes.size(), 2u);
  }
  EXPECT_EQ(NewFaults(), 0);
}

TEST_F(ReadinessTest, ReloadRequestIsServedOnceAndWrittenBack) {
  AddPlainModule();
  auto report = MakeReport();
  ASSERT_EQ(report->GetModulContentSite("Buch").substr(0, 2), "H[");
  EXPECT_EQ(report->report_set_path(), SetPrefix());

  // Without a request the changed files are not looked at.
  WriteMiniFile(AppDir(), "file7.htm", "Neu[&&&FS_ModulInhaltOben_KlassenName&&&]");
  for (int32_t lnr : {0, -1}) {
    SetWord("LNR", lnr);
    EXPECT_EQ(report->GetModulContentSite("Buch").substr(0, 2), "H[");
    EXPECT_EQ(Word("LNR"), lnr);
  }
  SetWord("LNR", 1);
  EXPECT_EQ(report->GetModulContentSite("Buch").substr(0, 8), "Neu[Buch");
  EXPECT_EQ(Word("LNR"), 0);
  EXPECT_TRUE(platform_.message_boxes.empty());
  EXPECT_EQ(NewFaults(), 0);
}

TEST_F(ReadinessTest, FailedReloadLeavesNoTemplatesUntilTheNextCheck) {
  AddPlainModule();
  auto report = MakeReport();
  ASSERT_TRUE(report->Ready());
  std::filesystem::remove(AppDir() / "Res" / "Mini" / "Description.dat");
  SetWord("LNR", 1);
  events_.messages.clear();
  platform_.message_boxes.clear();
  EXPECT_EQ(report->GetModulContentSite("Buch"), "");
  EXPECT_FALSE(report->Ready());
  EXPECT_EQ(report->resources(), nullptr);
  EXPECT_EQ(Word("LNR"), 0);
  ASSERT_FALSE(events_.messages.empty());
  EXPECT_EQ(events_.messages.back().first,
            "Die Reporterstellung wurde aufgrund von Initialisierungsfehlern abgebrochen.");
  EXPECT_EQ(events_.messages.back().second, kIconNotReady);
  // The loader shows its own box; the check adds none.
  for (const auto& box : platform_.message_boxes) {
    EXPECT_EQ(box.text.find("Reporterstellung"), std::string::npos);
  }
  // With the file back and no request, the next check loads afresh.
  WriteMiniFile(AppDir(), "Description.dat", report_testing::kMiniDescription);
  EXPECT_EQ(report->GetModulContentSite("Buch").substr(0, 2), "H[");
  EXPECT_TRUE(report->Ready());
}

}  // namespace
}  // namespace folioscope
