#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "engine/folioscope.h"
#include "engine/report_test_support.h"
#include "infra/error_handler.h"

namespace folioscope {
namespace {

using report_testing::AddMember;
using report_testing::AddModule;
using report_testing::ReportTest;
using report_testing::WriteMiniFile;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsSupersetOf;
using ::testing::Not;
using ::testing::UnorderedElementsAre;

class WebReportTest : public ReportTest {
 protected:
  WebReportTest() {
    AddModule(project_, "modKasse", "Module");
    AddModule(project_, "CBon", "Class");
  }
};

TEST_F(WebReportTest, EachSaveModeWritesOnlyItsPages) {
  struct Case {
    int32_t save_mode;
    std::vector<std::string> present;
    std::vector<std::string> absent;
  };
  const Case cases[] = {
      {0,
       {"style.css", "logo.gif", "Logo.htm", "_Index.htm", "Menu.htm", "Projekt.htm",
        "modKasse.htm", "CBon.htm"},
       {}},
      {1,
       {"style.css", "logo.gif", "CBon.htm"},
       {"Logo.htm", "_Index.htm", "Menu.htm", "Projekt.htm", "modKasse.htm"}},
      {2,
       {"style.css", "logo.gif", "CBon_DoIt.htm"},
       {"Logo.htm", "_Index.htm", "Menu.htm", "Projekt.htm", "modKasse.htm", "CBon.htm",
        "modKasse_DoIt.htm"}},
      {7,
       {"style.css", "logo.gif"},
       {"Logo.htm", "_Index.htm", "Menu.htm", "Projekt.htm", "modKasse.htm", "CBon.htm",
        "CBon_DoIt.htm"}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE("SaveMode " + std::to_string(c.save_mode));
    std::filesystem::remove_all(OutDir());
    auto report = MakeReport();
    report->ModuleName = "CBon";
    report->MemberName = "DoIt";
    EXPECT_EQ(report->SaveReport(c.save_mode), 0);
    EXPECT_EQ(report->save_mode(), -1);
    std::vector<std::string> files = OutFiles();
    EXPECT_THAT(files, IsSupersetOf(c.present));
    for (const std::string& name : c.absent) EXPECT_THAT(files, Not(::testing::Contains(name)));
  }
  EXPECT_EQ(NewFaults(), 0);
}

TEST_F(WebReportTest, SaveModeHoldsDuringTheSaveAndResetsOnEveryExit) {
  auto report = MakeReport();
  report->SaveReport(0);
  ASSERT_FALSE(events_.works.empty());
  for (const auto& w : events_.works) EXPECT_EQ(w.save_mode, 0) << w.description;
  EXPECT_EQ(report->save_mode(), -1);

  // A module the project does not have: the lookup fails after the
  // resource files were copied, the fault is reported, the mode resets.
  std::filesystem::remove_all(OutDir());
  report->ModuleName = "Fehlt";
  report->SaveReport(1);
  EXPECT_EQ(NewFaults(), 1);
  EXPECT_EQ(CErrorHandler::Instance().Member(), "   Prozedur: SaveReport");
  EXPECT_EQ(CErrorHandler::Instance().FehlerNummer(), "Fehlernummer: 5");
  EXPECT_EQ(report->save_mode(), -1);
  EXPECT_THAT(OutFiles(), ElementsAre("logo.gif", "style.css"));

  // A member the module does not have.
  report->ModuleName = "CBon";
  report->MemberName = "Fehlt";
  report->SaveReport(2);
  EXPECT_EQ(NewFaults(), 2);
  EXPECT_EQ(report->save_mode(), -1);
}

TEST_F(WebReportTest, WrittenPagesReferToCopiesAndPreviewsToTheReportSet) {
  auto report = MakeReport();
  const std::string prefix = report->report_set_path();
  ASSERT_FALSE(prefix.empty());
  report->SaveReport(0);
  EXPECT_THAT(Out("Projekt.htm"), HasSubstr("|style.css|"));
  EXPECT_EQ(report->report_set_path(), prefix);
  EXPECT_THAT(report->GetProjektSite(), HasSubstr("|" + prefix + "style.css|"));
}

TEST_F(WebReportTest, OutputPathIsCombinedAndCreatedOneLevelDeep) {
  const std::string out = OutDir().string();
  struct Case {
    std::string plain_path;
    std::string folder_name;
    std::string combined;
  };
  const Case cases[] = {
      {out + "/", "Doc", out + "/Doc"},
      {out + "//", "Doc", out + "/Doc"},
      {out, "/Doc//Neu", out + "/Doc/Neu"},
      {out, "", out},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.plain_path + " + " + c.folder_name);
    std::filesystem::remove_all(OutDir());
    auto report = MakeWriter();
    report->PlainPath = c.plain_path;
    report->FolderName = c.folder_name;
    report->SaveReport(7);
    EXPECT_EQ(report->PlainPath, c.combined);
  }
  // "Doc/Neu" above has a missing parent: one level only, so that save
  // failed and was reported; the others created their folder.
  EXPECT_EQ(NewFaults(), 1);
  EXPECT_EQ(CErrorHandler::Instance().FehlerNummer(), "Fehlernummer: 76");
}

TEST_F(WebReportTest, NothingIsWrittenWithoutPathOrProject) {
  auto report = MakeReport();
  report->PlainPath = "";
  report->FolderName = "Doc";
  report->SaveReport(0);
  EXPECT_EQ(report->PlainPath, "");

  report->PlainPath = OutDir().string();
  report->Projekt = nullptr;
  report->SaveReport(0);
  EXPECT_EQ(report->PlainPath, OutDir().string() + "Doc");  // combined, nothing created
  EXPECT_FALSE(std::filesystem::exists(report->PlainPath));
  EXPECT_FALSE(std::filesystem::exists(OutDir()));
  EXPECT_EQ(NewFaults(), 0);
}

TEST_F(WebReportTest, MissingHelpCompilerIsReportedOnlyInHelpFileMode) {
  auto report = MakeReport();
  report->SaveReport(0);
  EXPECT_TRUE(events_.messages.empty());

  report->SaveCHMReportSystem(0);
  const std::string text =
      "Die Datei 'hhc.exe' konnte nicht im Anwendungsordner gefunden werden. Diese ist "
      "f\xFCr die Erstellung von CHM-Dateien unbedingt erforderlich. Der Web-Report konnte "
      "nicht kompiliert werden.";
  ASSERT_EQ(events_.messages.size(), 2u);  // the second is the compile step's own
  EXPECT_EQ(events_.messages[0].first, text);
  EXPECT_EQ(events_.messages[0].second, kIconFailure);
  ASSERT_EQ(platform_.message_boxes.size(), 1u);
  EXPECT_EQ(platform_.message_boxes[0].text, text);
  EXPECT_EQ(platform_.message_boxes[0].style, kMbOkOnly | kMbExclamation);
  EXPECT_EQ(platform_.message_boxes[0].title, "Quillon");
  // The other files were copied all the same, and no compiler copy.
  EXPECT_TRUE(OutHas("logo.gif") && OutHas("style.css"));
  EXPECT_FALSE(OutHas("hhc.exe"));
}

// Module and member pages of a whole-project save are written behind the
// page builder; a page that cannot be written is still reported before
// SaveReport returns, for the procedure that built it, and the pages after
// it are written.
TEST_F(WebReportTest, UnwritablePagesAreReportedBeforeTheSaveEnds) {
  std::filesystem::create_directories(OutDir() / "modKasse.htm");
  std::filesystem::create_directories(OutDir() / "CBon_DoIt.htm");
  auto report = MakeReport();
  EXPECT_EQ(report->SaveReport(0), 0);
  EXPECT_EQ(NewFaults(), 2);
  EXPECT_EQ(CErrorHandler::Instance().Member(), "   Prozedur: WriteMemberContentSite");
  EXPECT_EQ(CErrorHandler::Instance().Modul(), "CFolioscope");
  EXPECT_THAT(OutFiles(), IsSupersetOf({"modKasse_DoIt.htm", "CBon.htm", "Projekt.htm"}));
}

TEST_F(WebReportTest, FailedCopyNamesBothPathsAndStops) {
  std::filesystem::remove(AppDir() / "Res" / "Mini" / "style.css");
  auto report = MakeReport();
  report->SaveReport(0);
  const std::string source = AppDir().string() + "/Res/Mini/style.css";
  const std::string target = OutDir().string() + "/style.css";
  EXPECT_EQ(NewFaults(), 1);
  const CErrorHandler& handler = CErrorHandler::Instance();
  EXPECT_EQ(handler.Member(), "   Prozedur: WriteFileRessources");
  EXPECT_EQ(handler.Modul(), "CFolioscope");
  EXPECT_EQ(handler.Hinweis(), "Hinweis: Quelldatei = " + source + "\r\nZieldatei = " + target);
  // logo.gif comes after the failed copy and is not copied; the pages are
  // written all the same.
  EXPECT_FALSE(OutHas("logo.gif"));
  EXPECT_TRUE(OutHas("Projekt.htm"));
}

// The Mini set with the search index named `name`.
std::string DescriptionWithIndex(const std::string& name) {
  std::string description = report_testing::kMiniDescription;
  const std::string head = "Platzhalter\r\n";
  return head + "\\&&&FS_Allgemein_Suchindex&&& = " + name + "\r\n" +
         description.substr(head.size());
}

// The search index is the only new output, and only of a whole-project
// save with a report set that names it; members that get no page are not
// in it.
TEST_F(WebReportTest, SearchIndexComesOnlyFromASetThatNamesIt) {
  AddMember(project_.Modules.Item("CBon"), "Geheim", "Sub", "Private",
            {"'/// <summary>Geheim.</summary>", "Private Sub Geheim()", "End Sub"});
  SetWord("ToolBarPrivateValue", 0);
  auto save = [&](const std::string& description, int32_t save_mode) {
    WriteMiniFile(AppDir(), "Description.dat", description);
    std::filesystem::remove_all(OutDir());
    auto report = MakeReport();
    report->ModuleName = "CBon";
    report->SaveReport(save_mode);
    std::map<std::string, std::string> files;
    for (const std::string& name : OutFiles()) files[name] = Out(name);
    return files;
  };
  const auto without = save(report_testing::kMiniDescription, 0);
  auto with = save(DescriptionWithIndex(" idx "), 0);
  EXPECT_EQ(with["idx.js"],
            "var FolioscopeNames={k:[\"Module\",\"Sub\",\"Class\"],m:[\n"
            "[\"modKasse\",0,\"DoIt\",1],\n"
            "[\"CBon\",2,\"DoIt\",1]]};\r\n");
  EXPECT_EQ(with["idx-text.js"],
            "var FolioscopeTexts=[\n"
            "[\"\",\"Does it.\"],\n"
            "[\"\",\"Does it.\"]];\r\n");
  with.erase("idx.js");
  with.erase("idx-text.js");
  EXPECT_EQ(with, without);

  using ::testing::Key;
  EXPECT_THAT(
      save(DescriptionWithIndex("idx"), 1),
      ElementsAre(Key("CBon.htm"), Key("CBon_DoIt.htm"), Key("logo.gif"), Key("style.css")));
  EXPECT_TRUE(events_.messages.empty());
  EXPECT_EQ(NewFaults(), 0);

  // A name that leads out of the output folder writes nothing.
  save(DescriptionWithIndex("../idx"), 0);
  EXPECT_FALSE(std::filesystem::exists(root_ / "idx.js"));
  ASSERT_EQ(events_.messages.size(), 1u);
  EXPECT_EQ(events_.messages[0].first,
            "Der Suchindex '../idx' des Report-Sets wird nicht geschrieben: der Name f\xFChrt "
            "aus dem Ordner " +
                OutDir().string() + " heraus.");
}

}  // namespace
}  // namespace folioscope
