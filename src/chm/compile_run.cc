#include "chm/compile_run.h"

#include <string>

#include "chm/help_compiler.h"
#include "infra/file_system.h"
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

bool HelpCompilerPresent() { return !CurrentPlatform().FindHelpCompiler().path.empty(); }

std::string CompileBatchText(const std::string& folder) {
  return std::string("cd \\") + kCrLf + vb::Left(folder, 2) + kCrLf + "cd " + folder + kCrLf +
         "hhc.exe Project.hhp" + kCrLf;
}

HelpCompilerRun PlanHelpCompilerRun(const std::string& folder, const std::string& batch) {
  const HelpCompiler compiler = CurrentPlatform().FindHelpCompiler();
  // Quoted: the output folder may hold blanks.
  if (compiler.runs_beside_pages) return {"\"" + batch + "\"", "", ""};
  return {ShellQuote(compiler.path) + " " + ShellQuote(kChmcmdProjectName), kChmcmdProjectName,
          ChmcmdProjectText(folder, ReadFileText(folder + kPathSeparatorText + "Project.hhp"))};
}

std::vector<std::string> ShellCommand(const std::string& command_line, int32_t window_style) {
  return CurrentPlatform().ShellCommand(command_line, window_style == kWindowHidden);
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
      RemoveFile(*it);
      it = written.erase(it);
    } else {
      ++it;
    }
  }
}

}  // namespace folioscope
