#include "model/vb6_members.h"

#include <cstddef>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include "infra/vb_runtime.h"
#include "model/vb6_declaration.h"

namespace folioscope {
namespace {

// A statement of interest: its first and last physical code line (0-based).
struct Declaration {
  ParsedStatement parsed;
  size_t first = 0;
  size_t last = 0;
  size_t end = 0;  // procedures: index of the End line
  bool has_end = false;
};

// The line without its trailing blanks (VB's RTrim: spaces only).
std::string_view RTrimmedView(std::string_view line) {
  size_t end = line.size();
  while (end > 0 && line[end - 1] == ' ') --end;
  return line.substr(0, end);
}

bool EndsWithContinuation(std::string_view line) {
  const std::string_view trimmed = RTrimmedView(line);
  return trimmed == "_" ||
         (trimmed.size() >= 2 && trimmed.back() == '_' &&
          (trimmed[trimmed.size() - 2] == ' ' || trimmed[trimmed.size() - 2] == '\t'));
}

// The logical statement that starts at lines[*i]: continued lines joined
// with one blank in place of " _". Leaves *i at the statement's last line.
// `joined` holds the text when lines had to be joined.
std::string_view LogicalStatement(const std::vector<CodeLine>& lines, size_t* i,
                                  std::string* joined) {
  std::string_view statement = lines[*i].text;
  if (!EndsWithContinuation(statement) || *i + 1 >= lines.size()) return statement;
  joined->assign(statement);
  while (EndsWithContinuation(*joined) && *i + 1 < lines.size()) {
    joined->resize(RTrimmedView(*joined).size() - 1);
    joined->push_back(' ');
    joined->append(vb::Trim(lines[++*i].text));
  }
  return *joined;
}

bool IsCommentLine(const std::string& line) {
  const std::string code = vb::Trim(line);
  if (code.empty()) return false;
  return StripComment(code).empty();
}

struct ModuleScan {
  std::vector<Declaration> declarations;  // procedures and events in order
  size_t header_lines = 0;                // lines 1..header_lines form Header
};

ModuleScan ScanStatements(const std::vector<CodeLine>& lines, const std::string& file_path,
                          Diagnostics* diagnostics) {
  ModuleScan scan;
  Declaration* open = nullptr;  // the procedure whose End is still to come
  bool seen_procedure = false;
  std::string joined;
  size_t i = 0;
  while (i < lines.size()) {
    const size_t first = i;
    const std::string_view statement = LogicalStatement(lines, &i, &joined);
    const size_t last = i++;
    ParsedStatement parsed = ParseStatement(statement);
    switch (parsed.kind) {
      case StatementKind::kProcedure:
        if (open != nullptr) {
          diagnostics->push_back({file_path, lines[first].file_line, DiagnosticSeverity::kWarning,
                                  "Prozedurende fehlt vor dieser Zeile."});
          open->end = first - 1;
          open->has_end = true;
        }
        scan.declarations.push_back({std::move(parsed), first, last, 0, false});
        open = &scan.declarations.back();
        seen_procedure = true;
        break;
      case StatementKind::kEvent:
        if (!seen_procedure) scan.header_lines = last + 1;
        if (open == nullptr)
          scan.declarations.push_back({std::move(parsed), first, last, 0, false});
        break;
      case StatementKind::kProcedureEnd:
        if (open != nullptr) {
          open->end = last;
          open->has_end = true;
          open = nullptr;
        }
        break;
      case StatementKind::kOther:
        if (!seen_procedure) scan.header_lines = last + 1;
        break;
      case StatementKind::kBlank:
        break;
    }
  }
  if (!seen_procedure) scan.header_lines = lines.size();
  return scan;
}

// The member's lines are the module's lines first .. first + count - 1,
// shared with the module rather than copied.
void ShareLines(const vb::SharedLines& lines, size_t first, size_t count, SourceMember* member) {
  member->FirstLine = static_cast<int32_t>(first + 1);
  member->LineCount = static_cast<int32_t>(count);
  member->CodeLines.ShareLines(lines, first, static_cast<int32_t>(count));
}

void AddParameters(const ParsedStatement& parsed, SourceMember* member) {
  for (const ParsedParameter& p : parsed.parameters) {
    auto parameter = std::make_unique<SourceParameter>();
    parameter->Name = p.name;
    parameter->Type = p.type;
    parameter->Passing = p.passing;
    parameter->Optional = p.optional;
    parameter->ParamArray = p.param_array;
    parameter->HasDefault = p.has_default;
    parameter->Default = p.default_value;
    const bool keyed = !p.name.empty() && !member->Parameters.Exists(p.name);
    member->Parameters.Add(std::move(parameter), keyed ? p.name : "");
  }
}

// The first line of an Event member: the comment lines directly above it.
size_t EventFirstLine(const std::vector<std::string>& texts, size_t declaration) {
  size_t first = declaration;
  while (first > 0 && IsCommentLine(texts[first - 1])) --first;
  return first;
}

std::unique_ptr<SourceMember> MakeMember(const Declaration& d, const ModuleFile& file) {
  auto member = std::make_unique<SourceMember>();
  const ParsedStatement& p = d.parsed;
  member->Name = p.property_form + p.name;
  member->PropertyForm = p.property_form;
  member->Kind = p.keyword == "Event" ? "OutEvent" : p.keyword;
  member->Scope = p.scope;
  member->ReturnType = p.return_type;
  auto attributes = file.procedure_attributes.find(vb::LCase(p.name));
  if (attributes != file.procedure_attributes.end()) {
    member->Description = attributes->second.description;
    member->HelpContextId = attributes->second.help_context_id;
  }
  AddParameters(p, member.get());
  return member;
}

// The last procedure among `declarations` (events are no procedures), or
// null when there is none.
const Declaration* LastProcedure(const std::vector<Declaration>& declarations) {
  const Declaration* last = nullptr;
  for (const Declaration& d : declarations) {
    if (d.parsed.kind == StatementKind::kProcedure) last = &d;
  }
  return last;
}

// The first and last line index of the member `d` declares. An event is its
// declaration with the comment lines above it; a procedure runs from
// `next_start` (the line after the previous procedure's End) to its own End
// line, the last procedure to the end of the file, and moves `next_start`
// past itself. A procedure without End is reported.
// `texts` are the texts of `lines`.
std::pair<size_t, size_t> MemberLineRange(const std::vector<CodeLine>& lines,
                                          const std::vector<std::string>& texts,
                                          const Declaration& d, bool is_last_procedure,
                                          size_t& next_start, const std::string& file_path,
                                          Diagnostics* diagnostics) {
  if (d.parsed.kind == StatementKind::kEvent) return {EventFirstLine(texts, d.first), d.last};
  const size_t first = next_start;
  const size_t last = is_last_procedure ? lines.size() - 1 : d.end;
  if (!d.has_end) {
    diagnostics->push_back({file_path, lines[d.first].file_line, DiagnosticSeverity::kWarning,
                            "Prozedurende fehlt: " + d.parsed.name});
  }
  next_start = last + 1;
  return {first, last};
}

}  // namespace

void BuildModuleCode(ModuleFile& file, const std::string& file_path, SourceModule* module,
                     Diagnostics* diagnostics) {
  std::vector<CodeLine>& lines = file.code_lines;
  ModuleScan scan = ScanStatements(lines, file_path, diagnostics);

  // The module and every member read one copy of the lines.
  auto texts = std::make_shared<std::vector<std::string>>();
  texts->reserve(lines.size());
  for (size_t k = 0; k < lines.size(); ++k) {
    module->FileLines.Add(static_cast<int32_t>(k + 1), lines[k].file_line);
    texts->push_back(std::move(lines[k].text));
  }
  const vb::SharedLines shared = std::move(texts);
  module->CodeLines.ShareLines(shared, 0, static_cast<int32_t>(lines.size()));

  auto header = std::make_unique<SourceMember>();
  header->Name = "Header";
  ShareLines(shared, 0, scan.header_lines, header.get());
  module->Members.Add(std::move(header), "Header");

  size_t next_start = scan.header_lines;
  const Declaration* last_procedure = LastProcedure(scan.declarations);
  for (const Declaration& d : scan.declarations) {
    const ParsedStatement& p = d.parsed;
    const int32_t file_line = lines[d.first].file_line;
    const auto [first, last] = MemberLineRange(lines, *shared, d, &d == last_procedure, next_start,
                                               file_path, diagnostics);
    if (p.malformed) {
      diagnostics->push_back(
          {file_path, file_line, DiagnosticSeverity::kWarning,
           "Deklaration nicht vollst\xE4ndig lesbar: " + vb::Trim((*shared)[d.first])});
    }
    if (!IsValidIdentifier(p.name)) {
      diagnostics->push_back({file_path, file_line, DiagnosticSeverity::kError,
                              "Ung\xFCltiger Name eines Members: \"" + p.name + "\""});
      continue;
    }
    auto member = MakeMember(d, file);
    if (module->Members.Exists(member->Name)) {
      diagnostics->push_back({file_path, file_line, DiagnosticSeverity::kError,
                              "Member doppelt vorhanden: " + member->Name});
      continue;
    }
    ShareLines(shared, first, last + 1 - first, member.get());
    const std::string key = member->Name;
    module->Members.Add(std::move(member), key);
  }
}

}  // namespace folioscope
