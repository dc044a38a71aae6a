// A whole report from hostile input: module and member names, resource
// names and the ReportPath setting that try to reach files outside the
// report-set folder and the output folder. Nothing outside is read or
// written, each refusal is a message, and the rest of the report is there.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "engine/folioscope.h"
#include "engine/report_test_support.h"

namespace folioscope {
namespace {

namespace fs = std::filesystem;

using report_testing::AddModule;
using report_testing::ReadBytes;
using report_testing::ReportTest;
using ::testing::HasSubstr;
using ::testing::IsSupersetOf;

class ReportContainmentTest : public ReportTest {
 protected:
  ReportContainmentTest() {
    AddModule(project_, "modKasse", "Module");
    report_testing::WriteBytes(root_ / "secret.css", "secret");
  }

  // Every file below the test root outside out/, with its bytes; the
  // formatter's keyword list, which the application folder receives when it
  // lacks one, left aside.
  std::map<std::string, std::string> FilesOutsideOut() const {
    std::map<std::string, std::string> files;
    for (const auto& e : fs::recursive_directory_iterator(root_)) {
      const fs::path relative = e.path().lexically_relative(root_);
      if (*relative.begin() == "out" || !e.is_regular_file()) continue;
      if (relative == fs::path("app") / "sfn.dat") continue;
      files[relative.string()] = ReadBytes(e.path());
    }
    return files;
  }

  std::vector<std::string> Refusals() const {
    std::vector<std::string> texts;
    for (const auto& [text, icon] : events_.messages) {
      if (icon == kIconFailure) texts.push_back(text);
    }
    return texts;
  }

  // Puts hostile names into the report set and the project.
  void PlantHostileNames() {
    // Resource names that lead out of the set or the output folder, and one
    // through a link in the set that points out of it. (Description.dat
    // separates its entries with backslashes, so these names cannot hold one.)
    fs::create_symlink(root_ / "secret.css", AppDir() / "Res" / "Mini" / "link.css");
    std::string description = report_testing::kMiniDescription;
    description.insert(description.find("\\}"),
                       "\\&&&FS_A_File&&& = ../../../secret.css\r\n"
                       "\\&&&FS_B_File&&& = ../../escaped.css\r\n"
                       "\\&&&FS_C_File&&& = " +
                           (root_ / "secret.css").string() +
                           "\r\n"
                           "\\&&&FS_D_File&&& = C:secret.css\r\n"
                           "\\&&&FS_E_File&&& = link.css\r\n"
                           "\\&&&FS_F_File&&& = CON\r\n");
    report_testing::WriteMiniFile(AppDir(), "Description.dat", description);

    // Module names no VB file could hold, and a member name of the same kind
    // in an ordinary module.
    for (const char* name : {"../../escaped", "..\\escaped", "NUL", "a/b"}) {
      AddModule(project_, name, "Class");
    }
    SourceModule& kasse = project_.Modules.Item("modKasse");
    kasse.Members.Item("DoIt").Name = "..\\..\\..\\escaped";
    kasse.Members.Item(2).FirstLine = 12;
    AddModule(project_, "CBon", "Class");
  }
};

TEST_F(ReportContainmentTest, HostileNamesAreRefusedAndTheRestIsWritten) {
  PlantHostileNames();
  const auto outside_before = FilesOutsideOut();
  auto report = MakeReport();
  report->SaveReport(0);

  const auto outside_after = FilesOutsideOut();
  for (const auto& [name, bytes] : outside_after) {
    EXPECT_TRUE(outside_before.count(name) && outside_before.at(name) == bytes) << name;
  }
  EXPECT_EQ(outside_after.size(), outside_before.size());
  EXPECT_FALSE(fs::exists(root_.parent_path() / "escaped.css"));
  EXPECT_FALSE(fs::exists(root_.parent_path() / "escaped.htm"));
  EXPECT_EQ(NewFaults(), 0);
  EXPECT_THAT(OutFiles(),
              IsSupersetOf({"style.css", "logo.gif", "_Index.htm", "Menu.htm", "Logo.htm",
                            "Projekt.htm", "modKasse.htm", "CBon.htm", "CBon_DoIt.htm"}));
  for (const auto& entry : fs::recursive_directory_iterator(OutDir())) {
    EXPECT_TRUE(entry.is_regular_file()) << entry.path();  // no folders, no links
    EXPECT_NE(ReadBytes(entry.path()), "secret") << entry.path();
  }

  const std::vector<std::string> refusals = Refusals();
  ASSERT_EQ(refusals.size(), 11u) << ::testing::PrintToString(refusals);
  EXPECT_EQ(refusals[0],
            "Die Ressourcendatei '../../../secret.css' des Report-Sets wird nicht kopiert: der "
            "Name f\xFChrt aus dem Ordner " +
                AppDir().string() + "/Res/Mini heraus.");
  EXPECT_THAT(refusals[4], HasSubstr("'link.css'"));
  EXPECT_THAT(refusals[5], HasSubstr("'CON'"));
  EXPECT_EQ(refusals[6],
            "Die Seite des Members '..\\..\\..\\escaped' im Modul 'modKasse' (Datei "
            "/src/modKasse.bas, Zeile 12) wird nicht geschrieben: "
            "'modKasse_..\\..\\..\\escaped.htm' ist kein zul\xE4ssiger Dateiname.");
  EXPECT_EQ(refusals[7],
            "Die Seite des Moduls '../../escaped' (Datei /src/../../escaped.cls) wird nicht "
            "geschrieben: '../../escaped.htm' ist kein zul\xE4ssiger Dateiname.");
  EXPECT_THAT(refusals[9], HasSubstr("'NUL.htm'"));
}

TEST_F(ReportContainmentTest, HostileReportPathLoadsAndWritesNothing) {
  // A complete copy of the set beside Res: it would load if it were read.
  fs::copy(AppDir() / "Res" / "Mini", AppDir() / "Mini", fs::copy_options::recursive);
  const std::vector<std::string> paths = {"../Mini", "..\\Mini", (AppDir() / "Mini").string()};
  for (const std::string& path : paths) {
    SCOPED_TRACE(path);
    events_.messages.clear();
    SetCurrent("ReportPath", path);
    auto report = MakeReport();
    report->SaveReport(0);
    EXPECT_FALSE(report->Ready());
    EXPECT_FALSE(fs::exists(OutDir()));
    ASSERT_FALSE(events_.messages.empty());
    EXPECT_THAT(events_.messages[0].first, HasSubstr("ist ung\xFCltig"));
    EXPECT_EQ(events_.messages[0].second, kIconNotReady);
  }
}

}  // namespace
}  // namespace folioscope
