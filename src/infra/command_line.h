// Command lines for Windows' CreateProcess, which takes one string rather
// than an argument vector. Kept free of Windows calls so that the quoting
// rules are tested on every build.
#ifndef FOLIOSCOPE_INFRA_COMMAND_LINE_H_
#define FOLIOSCOPE_INFRA_COMMAND_LINE_H_

#include <string>
#include <vector>

namespace folioscope {

// One argument quoted so that the C runtime's argument splitting (and
// CommandLineToArgvW) gives it back unchanged: quotes only when needed,
// backslashes doubled only in front of a quote.
std::string QuoteWindowsArgument(const std::string& argument);

// The command line for `argv`. "cmd.exe /c <command...>" is special, the
// counterpart of "sh -c": what follows /c is a command line for cmd, taken
// as it stands (joined by blanks) and passed as `/s /c "<command>"`, so that
// cmd keeps the quotes inside it. The caller quotes paths in that command
// ("\"C:\Eigene Dateien\compile.bat\"").
std::string WindowsCommandLine(const std::vector<std::string>& argv);

}  // namespace folioscope

#endif  // FOLIOSCOPE_INFRA_COMMAND_LINE_H_
