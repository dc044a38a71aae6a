// The pieces of a help-file compile run: whether a help compiler is there,
// the batch file and the command that run it, and the clean-up of what the
// run wrote.
//
// On Windows compile.bat runs hhc.exe, the copy next to the pages. On Linux
// compile.bat is still written (the record of what the run does) but chmcmd
// is run directly, on a derived project file that it can read
// (help_compiler.h); the derived file is removed after the run.
//
// The clean-up removes only files that the run wrote into the output
// folder: whatever else lies there (the user's own files, a compiler copy
// from elsewhere) stays, even when its name matches a removed pattern.
#ifndef FOLIOSCOPE_CHM_COMPILE_RUN_H_
#define FOLIOSCOPE_CHM_COMPILE_RUN_H_

#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace folioscope {

inline constexpr int32_t kWindowHidden = 0;

// Removed after the run when DelFilesAfterCHMCompiling is 1, in this order.
inline constexpr const char* kIntermediatePatterns[] = {"*.htm", "*.h",   "*.jpg", "*.js",
                                                        "*.hhp", "*.css", "*.hhc"};

// True when Platform::FindHelpCompiler finds a help compiler to run.
bool HelpCompilerPresent();

// compile.bat for the output folder `folder`: change to its drive and
// folder, run hhc.exe.
std::string CompileBatchText(const std::string& folder);

// How the compiler is run over the project in `folder` once `batch`
// (compile.bat) is written: the command line, and the project file to
// write before the run and delete after it ("" when there is none).
struct HelpCompilerRun {
  std::string command_line;
  std::string derived_name;
  std::string derived_text;
};
HelpCompilerRun PlanHelpCompilerRun(const std::string& folder, const std::string& batch);

// The program and arguments that run `command_line` in the shell; a hidden
// window sends its console output nowhere.
std::vector<std::string> ShellCommand(const std::string& command_line, int32_t window_style);

// The message for a project whose name gives no help-file name.
std::string RefusedHelpFileMessage(const std::string& project_name);

// Deletes the files of `written` that lie directly in `folder` and match
// `pattern`, and takes them off the record.
void DeleteWrittenFiles(std::set<std::string>& written, const std::string& folder,
                        std::string_view pattern);

}  // namespace folioscope

#endif  // FOLIOSCOPE_CHM_COMPILE_RUN_H_
