// One VB6 module file (.bas, .cls, .frm, .ctl, .pag, .dsr, .dob) split into
// what the IDE hides and what it shows.
//
// Hidden: the VERSION line, Object= lines, the BEGIN/Begin ... End blocks
// (nested, as forms and designers write them) at the top of the file, and
// every Attribute line wherever it stands. Shown: every other line, in
// order, bytes unchanged. CR LF and LF both end a line; a last line without a
// line end still counts.
#ifndef FOLIOSCOPE_MODEL_VB6_MODULE_FILE_H_
#define FOLIOSCOPE_MODEL_VB6_MODULE_FILE_H_

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace folioscope {

struct CodeLine {
  std::string text;
  int32_t file_line = 0;  // physical line in the file, 1-based
};

struct ProcedureAttributes {
  std::string description;
  int32_t help_context_id = 0;
};

struct ModuleFile {
  std::string vb_name;  // Attribute VB_Name, empty when absent
  std::string description;
  int32_t help_context_id = 0;
  std::vector<CodeLine> code_lines;
  // Attribute Name.VB_Description / Name.VB_HelpID, keyed by the lower-case
  // procedure name.
  std::map<std::string, ProcedureAttributes> procedure_attributes;
  // The physical line of the outermost Begin whose End never came (the
  // rest of the file then counts as hidden header); 0 when all are closed.
  int32_t unclosed_begin_line = 0;
};

// The physical lines of a text.
std::vector<std::string> PhysicalLines(const std::string& text);

// Splits file bytes into hidden header and code lines.
ModuleFile SplitModuleFile(const std::string& bytes);

}  // namespace folioscope

#endif  // FOLIOSCOPE_MODEL_VB6_MODULE_FILE_H_
