#include "infra/command_line.h"

#include <string_view>

namespace folioscope {

namespace {

bool IsCmd(std::string_view program) {
  size_t slash = program.find_last_of("\\/");
  std::string name(program.substr(slash == std::string_view::npos ? 0 : slash + 1));
  for (char& c : name) c = (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c;
  return name == "cmd.exe" || name == "cmd";
}

bool IsSlashC(std::string_view s) { return s == "/c" || s == "/C"; }

}  // namespace

std::string QuoteWindowsArgument(const std::string& argument) {
  if (!argument.empty() && argument.find_first_of(" \t\n\v\"") == std::string::npos)
    return argument;
  std::string out = "\"";
  size_t backslashes = 0;
  for (char c : argument) {
    if (c == '\\') {
      ++backslashes;
      continue;
    }
    // Backslashes count double only in front of a quote.
    out.append(c == '"' ? 2 * backslashes + 1 : backslashes, '\\');
    backslashes = 0;
    out += c;
  }
  // The closing quote follows: the trailing backslashes must not escape it.
  out.append(2 * backslashes, '\\');
  out += '"';
  return out;
}

std::string WindowsCommandLine(const std::vector<std::string>& argv) {
  if (argv.empty()) return "";
  std::string line = QuoteWindowsArgument(argv[0]);
  if (argv.size() >= 3 && IsCmd(argv[0]) && IsSlashC(argv[1])) {
    // With /s cmd drops the first and the last quote and runs the rest as
    // it stands, whatever quotes it holds.
    line += " /s /c \"";
    for (size_t i = 2; i < argv.size(); ++i) {
      if (i > 2) line += ' ';
      line += argv[i];
    }
    return line + "\"";
  }
  for (size_t i = 1; i < argv.size(); ++i) line += " " + QuoteWindowsArgument(argv[i]);
  return line;
}

}  // namespace folioscope
