#include "chm/compile_run.h"

#include <filesystem>
#include <string>
#include <system_error>

#include "chm/help_compiler.h"
#include "infra/file_system.h"
#include "infra/os_path.h"
#include "infra/path_guard.h"
#include "infra/platform.h"
#include "infra/vb_runtime.h"

namespace folioscope {

namespace {

constexpr const char* kCrLf = "\r\n";

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

}  // namespace

bool HelpCompilerPresent() {
#ifdef _WIN32
  return CFileSystem().IsDateiVorhanden(HelpCompilerToCopy());
#else
  return !FindHelpCompiler().empty();
#endif
}

std::string HelpCompilerToCopy() {
#ifdef _WIN32
  return CurrentPlatform().ApplicationFolder() + "\\hhc.exe";
#else
  return "";
#endif
}

std::string CompileBatchText(const std::string& folder) {
  return std::string("cd \\") + kCrLf + vb::Left(folder, 2) + kCrLf + "cd " + folder + kCrLf +
         "hhc.exe Project.hhp" + kCrLf;
}

HelpCompilerRun PlanHelpCompilerRun(const std::string& folder, const std::string& batch) {
#ifdef _WIN32
  (void)folder;
  // Quoted: the output folder may hold blanks.
  return {"\"" + batch + "\"", "", ""};
#else
  (void)batch;
  return {ShellQuote(FindHelpCompiler()) + " " + ShellQuote(kChmcmdProjectName), kChmcmdProjectName,
          ChmcmdProjectText(folder, ReadFileText(folder + kPathSeparatorText + "Project.hhp"))};
#endif
}

std::vector<std::string> ShellCommand(const std::string& command_line, int32_t window_style) {
#ifdef _WIN32
  // The Windows platform starts every program without a console window.
  (void)window_style;
  return {"cmd.exe", "/c", command_line};
#else
  const std::string line =
      window_style == kWindowHidden ? command_line + " >/dev/null 2>&1" : command_line;
  return {"/bin/sh", "-c", line};
#endif
}

// The help file's name comes from the project's name, which the compiler
// writes to: a name that is no plain file in the output folder is not
// compiled.
std::string RefusedHelpFileMessage(const std::string& project_name) {
  return "Der Projektname '" + PrintableName(project_name) +
         "' ergibt keinen zul\xE4ssigen Dateinamen f\xFCr die CHM-Datei. Der CHM-Report wird nicht "
         "kompiliert.";
}

void DeleteWrittenFiles(std::set<std::string>& written, const std::string& folder,
                        std::string_view pattern) {
  for (auto it = written.begin(); it != written.end();) {
    const std::string name = NameInFolder(*it, folder);
    if (!name.empty() && WildcardMatch(name, pattern) && ResolveInside(folder, name)) {
      std::error_code ec;
      std::filesystem::remove(OsPath(*it), ec);
      it = written.erase(it);
    } else {
      ++it;
    }
  }
}

}  // namespace folioscope
