#include "infra/command_line.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace folioscope {
namespace {

// The C runtime's splitting of a command line (the rules of
// CommandLineToArgvW): 2n backslashes before a quote give n and the quote
// toggles quoting, 2n+1 give n and a literal quote, other backslashes are
// literal.
std::vector<std::string> SplitLikeCRuntime(const std::string& line) {
  std::vector<std::string> args;
  size_t i = 0;
  const size_t n = line.size();
  while (true) {
    while (i < n && (line[i] == ' ' || line[i] == '\t')) ++i;
    if (i == n) return args;
    std::string arg;
    bool quoted = false;
    while (i < n && (quoted || (line[i] != ' ' && line[i] != '\t'))) {
      if (line[i] == '\\') {
        size_t count = 0;
        while (i < n && line[i] == '\\') ++count, ++i;
        if (i < n && line[i] == '"') {
          arg.append(count / 2, '\\');
          if (count % 2 == 1) arg += '"', ++i;
        } else {
          arg.append(count, '\\');
        }
      } else if (line[i] == '"') {
        quoted = !quoted;
        ++i;
      } else {
        arg += line[i++];
      }
    }
    args.push_back(arg);
  }
}

TEST(CommandLine, ArgumentsSurviveTheCRuntimeSplit) {
  const std::vector<std::string> argv = {
      "C:\\Programme\\Hilfe Werkstatt\\hhc.exe",
      "Project.hhp",
      "",
      "C:\\Ausgabe mit Blank\\",  // trailing backslash before the closing quote
      "a\\\\b\\c",                // backslashes not in front of a quote stay single
      "sagt \"hallo\"",
      "\\\"",
      "Tab\there",
      "\xC4nderungen \xFC"
      "ber",
  };
  const std::string line = WindowsCommandLine(argv);
  EXPECT_EQ(SplitLikeCRuntime(line), argv) << line;
  // Quotes only where needed.
  EXPECT_EQ(WindowsCommandLine({"hhc.exe", "Project.hhp"}), "hhc.exe Project.hhp");
  EXPECT_EQ(QuoteWindowsArgument(""), "\"\"");
  EXPECT_EQ(QuoteWindowsArgument("C:\\a b\\"), "\"C:\\a b\\\\\"");
}

TEST(CommandLine, CmdTakesTheCommandAsItStands) {
  // The batch file of the help compiler, in a folder with a blank and an &.
  EXPECT_EQ(WindowsCommandLine({"cmd.exe", "/c", "\"C:\\Eigene Dateien\\A&B\\compile.bat\""}),
            "cmd.exe /s /c \"\"C:\\Eigene Dateien\\A&B\\compile.bat\"\"");
  EXPECT_EQ(WindowsCommandLine({"CMD", "/C", "exit", "7"}), "CMD /s /c \"exit 7\"");
  EXPECT_EQ(WindowsCommandLine({"C:\\Windows\\System32\\cmd.exe", "/c", "exit 7"}),
            "C:\\Windows\\System32\\cmd.exe /s /c \"exit 7\"");
  // Not cmd's /c form: the ordinary rules.
  EXPECT_EQ(WindowsCommandLine({"cmd.exe", "/k", "a b"}), "cmd.exe /k \"a b\"");
  EXPECT_EQ(WindowsCommandLine({"mycmd.exe", "/c", "a b"}), "mycmd.exe /c \"a b\"");
  EXPECT_EQ(WindowsCommandLine({}), "");
}

}  // namespace
}  // namespace folioscope
