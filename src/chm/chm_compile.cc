// The compile run: SaveCHMReportSystem writes the web report in its
// help-file form, the help project files and compile.bat, runs the help
// compiler, reports the outcome and clears the intermediate files away.
// The clean-up removes only files that this run wrote into the output
// folder: whatever else lies there (the user's own files, a compiler copy
// from elsewhere) stays, even when its name matches a removed pattern.
//
// On Windows compile.bat runs hhc.exe, the copy next to the pages. On Linux
// compile.bat is still written (the record of what the run does) but chmcmd
// is run directly, on a derived project file that it can read
// (help_compiler.h); the derived file is removed after the run.
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "chm/help_compiler.h"
#include "engine/folioscope.h"
#include "engine/object_required.h"
#include "infra/error_handler.h"
#include "infra/file_system.h"
#include "infra/fs_communicator.h"
#include "infra/path_guard.h"
#include "infra/platform.h"
#include "infra/vb_runtime.h"

namespace folioscope {

namespace {

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

// The help file's name comes from the project's name, which the compiler
// writes to: a name that is no plain file in the output folder is not
// compiled.
std::string RefusedHelpFileMessage(const std::string& project_name) {
  return "Der Projektname '" + PrintableName(project_name) +
         "' ergibt keinen zul\xE4ssigen Dateinamen f\xFCr die CHM-Datei. Der CHM-Report wird nicht "
         "kompiliert.";
}

// The name of `path` when it lies directly in `folder` (separators at the end
// of `folder` and either separator in `path` allowed), else "".
std::string NameInFolder(const std::string& path, const std::string& folder) {
  const size_t cut = path.find_last_of("/\\");
  if (cut == std::string::npos) return "";
  std::string parent = path.substr(0, cut);
  std::string base = folder;
  while (parent.size() > 1 && (parent.back() == '/' || parent.back() == '\\')) parent.pop_back();
  while (base.size() > 1 && (base.back() == '/' || base.back() == '\\')) base.pop_back();
  return NativePath(parent) == NativePath(base) ? path.substr(cut + 1) : "";
}

// Deletes the files of `written` that lie directly in `folder` and match
// `pattern`, and takes them off the record.
void DeleteWrittenFiles(std::set<std::string>& written, const std::string& folder,
                        std::string_view pattern) {
  for (auto it = written.begin(); it != written.end();) {
    const std::string name = NameInFolder(*it, folder);
    if (!name.empty() && WildcardMatch(name, pattern) && ResolveInside(folder, name)) {
      RemoveFile(*it);
      it = written.erase(it);
    } else {
      ++it;
    }
  }
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
    written_files_.clear();
    SaveReport(SaveMode);
    // Like the web report, no output folder or no project writes nothing.
    if (PlainPath.empty() || Projekt == nullptr) return;
    const auto mode = static_cast<folioscope::SaveMode>(SaveMode);
    CreateCHMProjektFile(mode);
    CreateCHMMapAndAlias(mode);
    CreateCHMTableOfContens(mode);
    const std::string folder = PlainPath;
    if (CurrentPlatform().FindHelpCompiler().path.empty()) {
      AddLog(CurrentPlatform().ApplicationFolder() + kPathSeparatorText + kMissingCompiler,
             kIconFailure);
      return;
    }
    const std::string name = RequireProject(Projekt).Name;
    if (!IsSafeFileName(name + ".chm")) {
      AddLog(RefusedHelpFileMessage(name), kIconFailure);
      return;
    }
    ReportWorks(progress_total_, "Compilieren der CHM-Datei...", false);
    AddLog("CHM-Datei wird vorbereitet und kompiliert.", kIconProgress);
    RunHelpCompiler(folder);
    if (file_system_->IsDateiVorhanden(InFolder(folder, name + ".chm"))) {
      AddLog(name + " CHM-Kommentarreport wurde erfolgreich erstellt.", kIconProgress);
    } else {
      AddLog(name + " CHM-Kommentarreport konnte nicht erfolgreich kompiliert werden.",
             kIconFailure);
    }
    CurrentPlatform().PumpMessages();
    DeleteCompileFiles(folder);
  });
  // Help-file mode lasts for this run only: a later SaveReport writes a
  // plain web report.
  chm_mode_ = false;
  return 0;
}

void CFolioscope::RunHelpCompiler(const std::string& folder) {
  const std::string batch = InFolder(folder, "compile.bat");
  WriteTextFile(batch, CompileBatchText(folder), false);
  const HelpCompiler compiler = CurrentPlatform().FindHelpCompiler();
  if (compiler.runs_beside_pages) {
    // Quoted: the output folder may hold blanks.
    RunAndWait("\"" + batch + "\"", kWindowHidden, true);
    return;
  }
  const std::string derived = InFolder(folder, kChmcmdProjectName);
  WriteTextFile(derived, ChmcmdProjectText(folder, ReadFileText(InFolder(folder, "Project.hhp"))),
                false);
  RunAndWait(ShellQuote(compiler.path) + " " + ShellQuote(kChmcmdProjectName), kWindowHidden, true);
  DeleteWrittenFiles(written_files_, folder, kChmcmdProjectName);
}

void CFolioscope::DeleteCompileFiles(const std::string& folder) {
  if (DelFilesAfterCHMCompiling == 1) {
    for (const char* pattern : kIntermediatePatterns)
      DeleteWrittenFiles(written_files_, folder, pattern);
  }
  DeleteWrittenFiles(written_files_, folder, "compile.bat");
  DeleteWrittenFiles(written_files_, folder, "hhc.exe");
}

int32_t CFolioscope::RunAndWait(const std::string& CommandLine, int32_t WindowStyle,
                                bool DoEventsWhileWaiting) {
  int32_t exit_code = 0;
  Trap(kClass, "RunAndWait", [&] {
    Platform& platform = CurrentPlatform();
    const std::vector<std::string> argv =
        platform.ShellCommand(CommandLine, WindowStyle == kWindowHidden);
    exit_code = platform.RunAndWait(argv, PlainPath, DoEventsWhileWaiting);
  });
  return exit_code;
}

}  // namespace folioscope
