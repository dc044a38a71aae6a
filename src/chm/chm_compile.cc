// The compile run: SaveCHMReportSystem writes the web report in its
// help-file form, the help project files and compile.bat, runs the help
// compiler, reports the outcome and clears the intermediate files away.
//
// On Windows compile.bat runs hhc.exe, the copy next to the pages. On Linux
// compile.bat is still written (the record of what the run does) but chmcmd
// is run directly, on a derived project file that it can read
// (help_compiler.h); the derived file is removed after the run.
#include <string>
#include <vector>

#include "chm/help_compiler.h"
#include "engine/folioscope.h"
#include "engine/fs_communicator.h"
#include "engine/object_required.h"
#include "infra/error_handler.h"
#include "infra/file_system.h"
#include "infra/platform.h"
#include "infra/vb_runtime.h"

namespace folioscope {

namespace {

constexpr const char* kClass = "CFolioscope";
constexpr const char* kCrLf = "\r\n";
constexpr int32_t kWindowHidden = 0;

// Removed after the run when DelFilesAfterCHMCompiling is 1, in this order.
const char* const kIntermediatePatterns[] = {"*.htm", "*.h",   "*.jpg", "*.js",
                                             "*.hhp", "*.css", "*.hhc"};

const char kMissingCompiler[] =
    "hhc.exe wurde nicht gefunden. Der CHM-Report kann nicht kompiliert werden.";

std::string InFolder(const std::string& folder, const std::string& name) {
  return folder + kPathSeparatorText + name;
}

// compile.bat: change to the output folder's drive and folder, run hhc.exe.
std::string CompileBatchText(const std::string& folder) {
  return std::string("cd \\") + kCrLf + vb::Left(folder, 2) + kCrLf + "cd " + folder + kCrLf +
         "hhc.exe Project.hhp" + kCrLf;
}

bool HelpCompilerPresent(const CFileSystem& file_system) {
#ifdef _WIN32
  return file_system.IsDateiVorhanden(CurrentPlatform().ApplicationFolder() + "\\hhc.exe");
#else
  (void)file_system;
  return !FindHelpCompiler().empty();
#endif
}

}  // namespace

int32_t CFolioscope::SaveCHMReportSystem(int32_t SaveMode) {
  Trap(kClass, "SaveCHMReportSystem", [&] {
    CheckOfReady();
    if (!ready_) return;
    chm_mode_ = true;
    chm_file_list_ = std::string("[FILES]") + kCrLf;
    chm_toc_text_.clear();
    chm_alias_text_.clear();
    SaveReport(SaveMode);
    // Like the web report, no output folder or no project writes nothing.
    if (PlainPath.empty() || Projekt == nullptr) return;
    CreateCHMProjektFile(SaveMode);
    CreateCHMMapAndAlias(SaveMode);
    CreateCHMTableOfContens(SaveMode);
    const std::string folder = PlainPath;
    if (!HelpCompilerPresent(*file_system_)) {
      AddLog(CurrentPlatform().ApplicationFolder() + kPathSeparatorText + kMissingCompiler,
             kIconFailure);
      return;
    }
    ReportWorks(progress_total_, "Compilieren der CHM-Datei...", false);
    AddLog("CHM-Datei wird vorbereitet und kompiliert.", kIconProgress);
    const std::string batch = InFolder(folder, "compile.bat");
    WriteTextFile(batch, CompileBatchText(folder), false);
#ifdef _WIN32
    // Quoted: the output folder may hold blanks.
    RunAndWait("\"" + batch + "\"", kWindowHidden, true);
#else
    const std::string derived = InFolder(folder, kChmcmdProjectName);
    WriteTextFile(derived,
                  ChmcmdProjectText(folder, ReadFileText(InFolder(folder, "Project.hhp"))),
                  false);
    RunAndWait(ShellQuote(FindHelpCompiler()) + " " + ShellQuote(kChmcmdProjectName), kWindowHidden,
               true);
    DeleteMatchingFiles(folder, kChmcmdProjectName);
#endif
    const std::string name = RequireProject(Projekt).Name;
    if (file_system_->IsDateiVorhanden(InFolder(folder, name + ".chm"))) {
      AddLog(name + " CHM-Kommentarreport wurde erfolgreich erstellt.", kIconProgress);
    } else {
      AddLog(name + " CHM-Kommentarreport konnte nicht erfolgreich kompiliert werden.",
             kIconFailure);
    }
    CurrentPlatform().PumpMessages();
    if (DelFilesAfterCHMCompiling == 1) {
      for (const char* pattern : kIntermediatePatterns) DeleteMatchingFiles(folder, pattern);
    }
    DeleteMatchingFiles(folder, "compile.bat");
    DeleteMatchingFiles(folder, "hhc.exe");
  });
  // Help-file mode lasts for this run only: a later SaveReport writes a
  // plain web report.
  chm_mode_ = false;
  return 0;
}

int32_t CFolioscope::RunAndWait(const std::string& CommandLine, int32_t WindowStyle,
                                bool DoEventsWhileWaiting) {
  int32_t exit_code = 0;
  Trap(kClass, "RunAndWait", [&] {
#ifdef _WIN32
    // The Windows platform starts every program without a console window.
    (void)WindowStyle;
    std::vector<std::string> argv = {"cmd.exe", "/c", CommandLine};
#else
    // A hidden window: the compiler's console output goes nowhere.
    const std::string line =
        WindowStyle == kWindowHidden ? CommandLine + " >/dev/null 2>&1" : CommandLine;
    std::vector<std::string> argv = {"/bin/sh", "-c", line};
#endif
    exit_code = CurrentPlatform().RunAndWait(argv, PlainPath, DoEventsWhileWaiting);
  });
  return exit_code;
}

}  // namespace folioscope
