#include "model/vb6_module_file.h"

#include <algorithm>
#include <string_view>

#include "infra/vb_runtime.h"

namespace folioscope {
namespace {

std::string_view TrimmedView(std::string_view s) {
  size_t start = 0;
  size_t end = s.size();
  while (start < end && (s[start] == ' ' || s[start] == '\t')) ++start;
  while (end > start && (s[end - 1] == ' ' || s[end - 1] == '\t')) --end;
  return s.substr(start, end - start);
}

std::string TrimBlanksAndTabs(std::string_view s) { return std::string(TrimmedView(s)); }

char AsciiUpper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

// `text` begins with the upper-case ASCII `word`, ignoring case. Windows-1252
// upper-casing maps no other byte onto an ASCII letter, so comparing ASCII
// case-insensitively equals comparing the upper-cased line.
bool StartsWithNoCase(std::string_view text, std::string_view word) {
  if (text.size() < word.size()) return false;
  for (size_t i = 0; i < word.size(); ++i)
    if (AsciiUpper(text[i]) != word[i]) return false;
  return true;
}

// The trimmed line is `word` alone or `word` followed by a blank or tab.
bool StartsWithWord(std::string_view trimmed, std::string_view word) {
  return StartsWithNoCase(trimmed, word) &&
         (trimmed.size() == word.size() || trimmed[word.size()] == ' ' ||
          trimmed[word.size()] == '\t');
}

// "Object = {...}#2.0#0; "x.ocx"" and "Object={...}" name the controls a
// form uses.
bool IsObjectLine(std::string_view trimmed) {
  if (!StartsWithNoCase(trimmed, "OBJECT")) return false;
  const std::string_view rest = TrimmedView(trimmed.substr(6));
  return !rest.empty() && rest.front() == '=';
}

// The value of an attribute: a quoted text without its quotes ("" inside
// stands for one quote), else the trimmed text.
std::string AttributeValue(std::string_view raw) {
  std::string value = TrimBlanksAndTabs(raw);
  if (value.size() >= 2 && value.front() == '"') {
    const size_t close = value.rfind('"');
    if (close > 0) value = value.substr(1, close - 1);
    vb::ReplaceAll(value, "\"\"", "\"");
  }
  return value;
}

int32_t AttributeNumber(const std::string& value) {
  double number = 0;
  if (!vb::IsNumeric(value, &number)) return 0;
  if (number < -2147483648.0 || number > 2147483647.0) return 0;
  return static_cast<int32_t>(number);
}

// "Attribute NAME = VALUE" or "Attribute Proc.NAME = VALUE".
void ReadAttribute(std::string_view line, ModuleFile* module) {
  const std::string body = TrimBlanksAndTabs(line).substr(9);  // after "Attribute"
  const size_t equals = body.find('=');
  if (equals == std::string::npos) return;
  const std::string target = TrimBlanksAndTabs(std::string_view(body).substr(0, equals));
  const std::string value = AttributeValue(std::string_view(body).substr(equals + 1));
  const size_t dot = target.rfind('.');
  const std::string procedure = dot == std::string::npos ? "" : target.substr(0, dot);
  const std::string name = vb::UCase(dot == std::string::npos ? target : target.substr(dot + 1));
  if (procedure.empty()) {
    if (name == "VB_NAME") module->vb_name = value;
    if (name == "VB_DESCRIPTION") module->description = value;
    if (name == "VB_HELPID") module->help_context_id = AttributeNumber(value);
    return;
  }
  ProcedureAttributes& attributes = module->procedure_attributes[vb::LCase(procedure)];
  if (name == "VB_DESCRIPTION") attributes.description = value;
  if (name == "VB_HELPID") attributes.help_context_id = AttributeNumber(value);
}

}  // namespace

// Calls `visit` with each physical line of `text` (without its line end).
template <typename Visit>
void ForEachPhysicalLine(std::string_view text, Visit visit) {
  size_t start = 0;
  while (start < text.size()) {
    size_t end = text.find('\n', start);
    const size_t next = end == std::string_view::npos ? text.size() : end + 1;
    if (end == std::string_view::npos) end = text.size();
    std::string_view line = text.substr(start, end - start);
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    visit(line);
    start = next;
  }
}

std::vector<std::string> PhysicalLines(const std::string& text) {
  std::vector<std::string> lines;
  ForEachPhysicalLine(text, [&](std::string_view line) { lines.emplace_back(line); });
  return lines;
}

ModuleFile SplitModuleFile(const std::string& bytes) {
  ModuleFile module;
  bool in_header = true;
  int depth = 0;
  int32_t file_line = 0;
  // Room for every line at once: a module has hundreds, and growing the
  // list step by step would move each of them several times.
  module.code_lines.reserve(static_cast<size_t>(std::count(bytes.begin(), bytes.end(), '\n')) + 1);
  ForEachPhysicalLine(bytes, [&](std::string_view line) {
    ++file_line;
    const std::string_view trimmed = TrimmedView(line);
    if (StartsWithWord(trimmed, "ATTRIBUTE")) {
      ReadAttribute(line, &module);
      return;
    }
    if (in_header) {
      if (depth > 0) {
        if (StartsWithWord(trimmed, "BEGIN")) ++depth;
        if (trimmed.size() == 3 && StartsWithNoCase(trimmed, "END")) --depth;
        return;
      }
      if (StartsWithWord(trimmed, "VERSION") || IsObjectLine(trimmed)) return;
      if (StartsWithWord(trimmed, "BEGIN")) {
        depth = 1;
        module.unclosed_begin_line = file_line;
        return;
      }
      in_header = false;
    }
    module.code_lines.push_back(CodeLine{std::string(line), file_line});
  });
  if (depth == 0) module.unclosed_begin_line = 0;
  return module;
}

}  // namespace folioscope
