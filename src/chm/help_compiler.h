// The help compiler on this machine and the file chores around a compile
// run.
//
// On Linux the compiler is chmcmd (Free Pascal), found by the platform
// (Platform::FindHelpCompiler). chmcmd does not follow "#include"
// inside [ALIAS], wants every alias target listed under [FILES], and opens
// files by their exact names; the project files written for hhc.exe stay as
// they are, and chmcmd compiles a derived copy (ChmcmdProjectText) instead.
#ifndef FOLIOSCOPE_CHM_HELP_COMPILER_H_
#define FOLIOSCOPE_CHM_HELP_COMPILER_H_

#include <string>
#include <string_view>

namespace folioscope {

// The name of the derived project file that chmcmd compiles; it lies in the
// output folder during the run only.
inline constexpr const char* kChmcmdProjectName = "Project.chmcmd.hhp";

// The project text `hhp` of the project in `folder`, rewritten for chmcmd:
// every "#include NAME" line of the [ALIAS] and [MAP] sections replaced by
// the lines of that file (its name matched without regard to case; a
// missing file contributes nothing), and every alias target, framed page and
// contents or index page named beyond ASCII that [FILES] does not list added
// right after the "[FILES]" line. File names (the
// [FILES] lines, alias targets, the file options) are written as the file
// system holds them, so an umlaut-named page is found and stored in the
// help file under its UTF-8 name; every other byte stays as in `hhp`.
std::string ChmcmdProjectText(const std::string& folder, std::string_view hhp);

// The name of the file in `folder` that `name` denotes when case is ignored
// (the exact name when it exists); `name` itself when nothing matches.
std::string ResolveFileName(const std::string& folder, const std::string& name);

// True when `name` matches `pattern` (wildcards * and ?), case ignored, as
// the Windows file functions compare.
bool WildcardMatch(std::string_view name, std::string_view pattern);

// `text` as one word for /bin/sh.
std::string ShellQuote(std::string_view text);

}  // namespace folioscope

#endif  // FOLIOSCOPE_CHM_HELP_COMPILER_H_
