#include <filesystem>
#include <string>
#include <vector>

#include "chm/help_compiler.h"
#include "engine/report_test_support.h"
#include "infra/file_system.h"
#include "infra/path_guard.h"
#include "infra/posix_platform.h"

namespace folioscope {
namespace {

using report_testing::ReadBytes;
using report_testing::ReportTest;
using report_testing::WriteBytes;

const char kMissing[] =
    "hhc.exe wurde nicht gefunden. Der CHM-Report kann nicht kompiliert werden.";

class ChmCompileTest : public ReportTest {
 protected:
  ChmCompileTest() {
    report_testing::AddModule(project_, "Kasse", "Module").Members.Item("DoIt").HelpContextId =
        1010;
    fake_compiler_ = root_ / "bin" / "fakehhc";
    WriteBytes(fake_compiler_, "#!/bin/sh\nexit 0\n");
    std::filesystem::permissions(fake_compiler_, std::filesystem::perms::owner_all);
  }
  // Selects the fake compiler; each of its runs writes `chm_bytes` as the
  // help file (nothing when empty) and keeps the batch file it found.
  void UseFakeCompiler(const std::string& chm_bytes) {
    platform_.help_compiler.path = fake_compiler_.string();
    platform_.on_run = [this, chm_bytes](const RecordingPlatform::ProgramRun& run) {
      batch_seen_ = ReadBytes(OutDir() / "compile.bat");
      derived_seen_ = ReadBytes(OutDir() / kChmcmdProjectName);
      if (!chm_bytes.empty())
        WriteBytes(std::filesystem::path(run.working_folder) / "Kasse.chm", chm_bytes);
      return 0;
    };
  }
  std::filesystem::path fake_compiler_;
  std::string batch_seen_;
  std::string derived_seen_;
};

TEST_F(ChmCompileTest, WithoutCompilerEveryFileStaysAndTheRunIsLogged) {
  SetWord("DelFilesAfterCHMCompiling", 1);
  auto report = MakeReport();
  EXPECT_EQ(report->SaveCHMReportSystem(0), 0);
  for (const char* name : {"Project.hhp", "Map_Test.h", "alias_test.h", "Table of Contents.hhc",
                           "Projekt.htm", "Kasse.htm", "style.css"}) {
    EXPECT_TRUE(OutHas(name)) << name;
  }
  EXPECT_FALSE(OutHas("compile.bat"));
  EXPECT_TRUE(platform_.program_runs.empty());
  EXPECT_TRUE(Logged(AppDir().string() + "/" + kMissing, 3));
  for (const auto& box : platform_.message_boxes)
    EXPECT_EQ(box.text.find(kMissing), std::string::npos);
  EXPECT_FALSE(report->chm_mode());
}

TEST_F(ChmCompileTest, SuccessfulRunKeepsTheReportUnlessAskedAndRemovesTheBatchFile) {
  SetWord("DelFilesAfterCHMCompiling", 2);
  UseFakeCompiler("ITSF");
  auto report = MakeReport();
  report->SaveCHMReportSystem(0);

  ASSERT_EQ(platform_.program_runs.size(), 1u);
  const auto& run = platform_.program_runs[0];
  EXPECT_EQ(run.working_folder, OutDir().string());
  EXPECT_TRUE(run.pump_messages);
  ASSERT_EQ(run.argv.size(), 3u);
  EXPECT_NE(run.argv[2].find(ShellQuote(fake_compiler_.string()) + " '" + kChmcmdProjectName + "'"),
            std::string::npos);
  const std::string folder = OutDir().string();
  EXPECT_EQ(batch_seen_, "cd \\\r\n" + folder.substr(0, 2) + "\r\ncd " + folder +
                             "\r\nhhc.exe Project.hhp\r\n\r\n");
  EXPECT_NE(derived_seen_.find("Kasse_DoIt = Kasse_DoIt.htm"), std::string::npos);

  EXPECT_TRUE(Logged("CHM-Datei wird vorbereitet und kompiliert.", 1));
  EXPECT_TRUE(Logged("Kasse CHM-Kommentarreport wurde erfolgreich erstellt.", 1));
  EXPECT_EQ(events_.works.back().description, "Compilieren der CHM-Datei...");
  EXPECT_FALSE(OutHas("compile.bat"));
  EXPECT_FALSE(OutHas(kChmcmdProjectName));
  for (const char* name : {"Project.hhp", "Map_Test.h", "Projekt.htm", "style.css", "Kasse.chm"}) {
    EXPECT_TRUE(OutHas(name)) << name;
  }
  // Help-file mode ends with the run: a later web report is a plain one.
  EXPECT_FALSE(report->chm_mode());
}

// The clean-up takes away what the run wrote (pages, help project, listed
// resource types, batch file) and nothing else: files that were there
// before stay even when their names match, and so does a resource type
// that is not listed.
TEST_F(ChmCompileTest, DeletionAfterCompilingRemovesOnlyWhatTheRunWrote) {
  SetWord("DelFilesAfterCHMCompiling", 1);
  UseFakeCompiler("ITSF");
  const std::vector<std::string> foreign = {"notes.txt", "bild.JPG",    "eigene.htm",
                                            "hhc.exe",   "compile.BAT", "x.h"};
  for (const std::string& name : foreign) WriteBytes(OutDir() / name, "kept");
  WriteBytes(root_ / "beside.htm", "kept");  // next to the output folder
  auto report = MakeReport();
  report->SaveCHMReportSystem(0);
  EXPECT_EQ(OutFiles(),
            (std::vector<std::string>{"Kasse.chm", "bild.JPG", "compile.BAT", "eigene.htm",
                                      "hhc.exe", "logo.gif", "notes.txt", "x.h"}));
  EXPECT_TRUE(std::filesystem::exists(root_ / "beside.htm"));
}

// A project name that is no plain file name in the output folder (the
// compiler would write the help file there) is not compiled.
TEST_F(ChmCompileTest, ProjectNameLeadingOutOfTheFolderIsNotCompiled) {
  SetWord("DelFilesAfterCHMCompiling", 1);
  UseFakeCompiler("ITSF");
  const std::vector<std::string> names = {"../Kasse", "CON", "a/b", std::string("K\0x", 3)};
  for (const std::string& name : names) {
    SCOPED_TRACE(name);
    platform_.program_runs.clear();
    events_.messages.clear();
    project_.Name = name;
    auto report = MakeReport();
    report->SaveCHMReportSystem(0);
    EXPECT_TRUE(platform_.program_runs.empty());
    EXPECT_TRUE(Logged("Der Projektname '" + PrintableName(name) +
                           "' ergibt keinen zul\xE4ssigen Dateinamen f\xFCr die CHM-Datei. Der "
                           "CHM-Report wird nicht kompiliert.",
                       3));
    EXPECT_TRUE(OutHas("Project.hhp"));
    EXPECT_FALSE(OutHas("compile.bat"));
  }
}

TEST_F(ChmCompileTest, MissingHelpFileIsReportedAsAFailedCompile) {
  SetWord("DelFilesAfterCHMCompiling", 1);
  UseFakeCompiler("");
  auto report = MakeReport();
  report->SaveCHMReportSystem(0);
  EXPECT_TRUE(Logged("Kasse CHM-Kommentarreport konnte nicht erfolgreich kompiliert werden.", 3));
  EXPECT_FALSE(OutHas("Projekt.htm"));  // deleted even after a failed compile
  EXPECT_FALSE(OutHas("compile.bat"));
}

// The real compiler, when this machine has it: the help file holds the
// pages, the contents and the context map.
TEST_F(ChmCompileTest, RealCompilerBuildsTheHelpFile) {
  PosixPlatform runner(&platform_.registry, AppDir().string());
  platform_.help_compiler = runner.FindHelpCompiler();
  if (platform_.help_compiler.path.empty())
    GTEST_SKIP() << "no chmcmd on PATH and no $FOLIOSCOPE_HHC";
  platform_.on_run = [&runner](const RecordingPlatform::ProgramRun& run) {
    return runner.RunAndWait(run.argv, run.working_folder, false);
  };
  auto report = MakeReport();
  report->SaveCHMReportSystem(0);
  ASSERT_TRUE(OutHas("Kasse.chm")) << "chmcmd did not produce the help file";
  const std::string chm = ReadBytes(OutDir() / "Kasse.chm");
  for (const char* entry :
       {"/Projekt.htm", "/Kasse.htm", "/Kasse_DoIt.htm", "/Table of Contents.hhc", "/#IVB"}) {
    EXPECT_NE(chm.find(entry), std::string::npos) << entry;
  }
  EXPECT_TRUE(Logged("Kasse CHM-Kommentarreport wurde erfolgreich erstellt.", 1));
}

}  // namespace
}  // namespace folioscope
