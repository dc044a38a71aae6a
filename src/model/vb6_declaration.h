// One VB6 statement read as a possible declaration: a procedure head
// (Sub, Function, Property Get/Let/Set), an Event, or the End line that
// closes a procedure. Everything else is "other".
//
// The input is a logical statement: continuation lines (" _") already joined
// with a blank. Comments and strings are understood, so "End Sub" inside a
// string or "Sub" in a comment is not a declaration.
#ifndef FOLIOSCOPE_MODEL_VB6_DECLARATION_H_
#define FOLIOSCOPE_MODEL_VB6_DECLARATION_H_

#include <string>
#include <string_view>
#include <vector>

namespace folioscope {

enum class StatementKind {
  kOther,
  kBlank,         // empty or only a comment
  kProcedure,     // Sub / Function / Property
  kEvent,         // Event declaration
  kProcedureEnd,  // End Sub / End Function / End Property
};

struct ParsedParameter {
  std::string name;
  std::string type;
  std::string passing;  // "ByVal" or "ByRef"
  bool optional = false;
  bool param_array = false;
  bool has_default = false;
  std::string default_value;
};

struct ParsedStatement {
  StatementKind kind = StatementKind::kOther;
  std::string keyword;        // "Sub", "Function", "Property", "Event"
  std::string property_form;  // "Get ", "Let ", "Set " or ""
  std::string name;           // as written, type suffix removed
  std::string scope;          // "Public", "Private", "Friend"; "Public" when not written
  std::string return_type;    // Function and Property Get only
  std::vector<ParsedParameter> parameters;
  bool malformed = false;  // a head whose parameter list could not be read
};

// The statement without its comment (a ' outside strings, or a Rem
// statement), trimmed of blanks and tabs.
std::string StripComment(std::string_view statement);

// Reads one logical statement. Statements that cannot open or close a
// procedure are recognised from their first words alone.
ParsedStatement ParseStatement(std::string_view statement);

// The same without that shortcut: every statement parsed in full. The two
// always agree; tests compare them.
ParsedStatement ParseStatementFully(std::string_view statement);

// True for a name VB accepts as an identifier: a letter, then letters,
// digits and underscores, at most 255 characters. Letters include the
// Windows-1252 accented letters.
bool IsValidIdentifier(std::string_view name);

}  // namespace folioscope

#endif  // FOLIOSCOPE_MODEL_VB6_DECLARATION_H_
