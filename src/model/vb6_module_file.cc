#include "model/vb6_module_file.h"

#include <string_view>

#include "infra/vb_runtime.h"

namespace folioscope {
namespace {

std::string TrimBlanksAndTabs(std::string_view s) {
  size_t start = 0;
  size_t end = s.size();
  while (start < end && (s[start] == ' ' || s[start] == '\t')) ++start;
  while (end > start && (s[end - 1] == ' ' || s[end - 1] == '\t')) --end;
  return std::string(s.substr(start, end - start));
}

bool StartsWithWord(std::string_view upper_line, std::string_view word) {
  return upper_line == word ||
         (upper_line.size() > word.size() && upper_line.substr(0, word.size()) == word &&
          (upper_line[word.size()] == ' ' || upper_line[word.size()] == '\t'));
}

// "Object = {...}#2.0#0; "x.ocx"" and "Object={...}" name the controls a
// form uses.
bool IsObjectLine(const std::string& upper_line) {
  return upper_line.rfind("OBJECT", 0) == 0 &&
         TrimBlanksAndTabs(std::string_view(upper_line).substr(6)).rfind('=', 0) == 0;
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
void ReadAttribute(const std::string& line, ModuleFile* module) {
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

std::vector<std::string> PhysicalLines(const std::string& text) {
  std::vector<std::string> lines = vb::Split(text, "\n");
  if (!lines.empty() && lines.back().empty()) lines.pop_back();
  for (auto& line : lines) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
  }
  return lines;
}

ModuleFile SplitModuleFile(const std::string& bytes) {
  ModuleFile module;
  bool in_header = true;
  int depth = 0;
  int32_t file_line = 0;
  for (const std::string& line : PhysicalLines(bytes)) {
    ++file_line;
    const std::string upper = vb::UCase(TrimBlanksAndTabs(line));
    if (StartsWithWord(upper, "ATTRIBUTE")) {
      ReadAttribute(line, &module);
      continue;
    }
    if (in_header) {
      if (depth > 0) {
        if (StartsWithWord(upper, "BEGIN")) ++depth;
        if (upper == "END") --depth;
        continue;
      }
      if (StartsWithWord(upper, "VERSION") || IsObjectLine(upper)) continue;
      if (StartsWithWord(upper, "BEGIN")) {
        depth = 1;
        continue;
      }
      in_header = false;
    }
    module.code_lines.push_back(CodeLine{line, file_line});
  }
  return module;
}

}  // namespace folioscope
