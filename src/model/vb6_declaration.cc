#include "model/vb6_declaration.h"

#include <cstddef>
#include <initializer_list>
#include <optional>

#include "infra/text_encoding.h"
#include "infra/vb_runtime.h"

namespace folioscope {
namespace {

bool IsBlankChar(char c) { return c == ' ' || c == '\t'; }

std::string TrimBlanks(std::string_view s) {
  size_t start = 0;
  size_t end = s.size();
  while (start < end && IsBlankChar(s[start])) ++start;
  while (end > start && IsBlankChar(s[end - 1])) --end;
  return std::string(s.substr(start, end - start));
}

bool IsLetter(unsigned char c) {
  if ((c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z')) return true;
  // Windows-1252 letters: Š Œ Ž š œ ž Ÿ and the Latin-1 letters.
  if (c == 0x8A || c == 0x8C || c == 0x8E || c == 0x9A || c == 0x9C || c == 0x9E || c == 0x9F) {
    return true;
  }
  return c >= 0xC0 && c != 0xD7 && c != 0xF7;
}

bool IsWordChar(unsigned char c) { return IsLetter(c) || (c >= '0' && c <= '9') || c == '_'; }

bool IsTypeSuffix(char c) {
  return c == '%' || c == '&' || c == '!' || c == '#' || c == '@' || c == '$';
}

const char* SuffixType(char c) {
  switch (c) {
    case '%':
      return "Integer";
    case '&':
      return "Long";
    case '!':
      return "Single";
    case '#':
      return "Double";
    case '@':
      return "Currency";
    default:
      return "String";
  }
}

// A cursor over one statement.
class Scanner {
 public:
  explicit Scanner(std::string_view text) : text_(text) {}

  void SkipBlanks() {
    while (pos_ < text_.size() && IsBlankChar(text_[pos_])) ++pos_;
  }
  bool AtEnd() const { return pos_ >= text_.size(); }
  char Peek() const { return AtEnd() ? '\0' : text_[pos_]; }
  void Advance() { ++pos_; }
  size_t pos() const { return pos_; }
  std::string_view Rest() const { return text_.substr(pos_); }

  // A word: letters, digits, underscores, optionally one type suffix; or a
  // bracketed name "[...]" kept with its brackets.
  std::string Word() {
    SkipBlanks();
    const size_t start = pos_;
    if (Peek() == '[') {
      while (!AtEnd() && Peek() != ']') ++pos_;
      if (!AtEnd()) ++pos_;
      return std::string(text_.substr(start, pos_ - start));
    }
    while (!AtEnd() && IsWordChar(static_cast<unsigned char>(Peek()))) ++pos_;
    if (pos_ > start && IsTypeSuffix(Peek())) ++pos_;
    return std::string(text_.substr(start, pos_ - start));
  }

  // Reads "(...)" with nested parentheses and strings; false when the
  // closing parenthesis is missing.
  bool Parenthesized(std::string* inner) {
    SkipBlanks();
    if (Peek() != '(') return false;
    const size_t start = ++pos_;
    int depth = 1;
    bool in_string = false;
    for (; pos_ < text_.size(); ++pos_) {
      const char c = text_[pos_];
      if (c == '"') in_string = !in_string;
      if (in_string) continue;
      if (c == '(') ++depth;
      if (c == ')' && --depth == 0) {
        *inner = std::string(text_.substr(start, pos_ - start));
        ++pos_;
        return true;
      }
    }
    return false;
  }

 private:
  std::string_view text_;
  size_t pos_ = 0;
};

// Splits at a separator outside strings and parentheses.
std::vector<std::string> SplitOutside(std::string_view text, char separator) {
  std::vector<std::string> parts;
  bool in_string = false;
  int depth = 0;
  size_t start = 0;
  for (size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (c == '"') in_string = !in_string;
    if (in_string) continue;
    if (c == '(') ++depth;
    if (c == ')') --depth;
    if (c == separator && depth == 0) {
      // ":=" is a named argument, not a statement separator.
      if (separator == ':' && i + 1 < text.size() && text[i + 1] == '=') continue;
      parts.emplace_back(text.substr(start, i - start));
      start = i + 1;
    }
  }
  parts.emplace_back(text.substr(start));
  return parts;
}

size_t FindOutsideStrings(std::string_view text, char wanted) {
  bool in_string = false;
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '"') in_string = !in_string;
    if (!in_string && text[i] == wanted) return i;
  }
  return std::string_view::npos;
}

// "As Type" at the start of text: the type, blanks squeezed out at the ends.
std::string AsClause(std::string_view text) {
  const std::string trimmed = TrimBlanks(text);
  if (trimmed.size() > 3 && vb::UCase(trimmed.substr(0, 3)) == "AS ") {
    return TrimBlanks(std::string_view(trimmed).substr(3));
  }
  return std::string();
}

std::string StripSuffix(std::string* name) {
  if (!name->empty() && IsTypeSuffix(name->back())) {
    const std::string type = SuffixType(name->back());
    name->pop_back();
    return type;
  }
  return std::string();
}

bool ParseParameter(std::string_view text, ParsedParameter* parameter) {
  Scanner scan(text);
  parameter->passing = "ByRef";
  std::string word;
  for (;;) {
    word = scan.Word();
    const std::string upper = vb::UCase(word);
    if (upper == "OPTIONAL") {
      parameter->optional = true;
    } else if (upper == "BYVAL" || upper == "BYREF") {
      parameter->passing = upper == "BYVAL" ? "ByVal" : "ByRef";
    } else if (upper == "PARAMARRAY") {
      parameter->param_array = true;
    } else {
      break;
    }
  }
  if (word.empty()) return false;
  std::string suffix_type = StripSuffix(&word);
  parameter->name = word;
  bool is_array = false;
  scan.SkipBlanks();
  if (scan.Peek() == '(') {
    std::string bounds;
    if (!scan.Parenthesized(&bounds)) return false;
    is_array = true;
  }
  std::string_view rest = scan.Rest();
  const size_t equals = FindOutsideStrings(rest, '=');
  if (equals != std::string_view::npos) {
    parameter->has_default = true;
    parameter->default_value = TrimBlanks(rest.substr(equals + 1));
    rest = rest.substr(0, equals);
  }
  std::string type = AsClause(rest);
  if (type.empty() && !TrimBlanks(rest).empty()) return false;
  if (type.empty()) type = suffix_type.empty() ? "Variant" : suffix_type;
  parameter->type = is_array ? type + "()" : type;
  return true;
}

bool ParseParameterList(std::string_view inner, std::vector<ParsedParameter>* parameters) {
  if (TrimBlanks(inner).empty()) return true;
  for (const std::string& piece : SplitOutside(inner, ',')) {
    ParsedParameter parameter;
    if (!ParseParameter(piece, &parameter)) return false;
    parameters->push_back(std::move(parameter));
  }
  return true;
}

bool IsProcedureEnd(const std::string& segment) {
  const std::string upper = vb::UCase(TrimBlanks(segment));
  Scanner scan(upper);
  if (scan.Word() != "END") return false;
  const std::string what = scan.Word();
  scan.SkipBlanks();
  return scan.AtEnd() && (what == "SUB" || what == "FUNCTION" || what == "PROPERTY");
}

// Reads a procedure or event head; false when the segment is none.
bool ParseHead(const std::string& segment, ParsedStatement* out) {
  Scanner scan(segment);
  out->scope = "Public";
  std::string upper;
  for (;;) {
    upper = vb::UCase(scan.Word());
    if (upper == "PUBLIC") {
      out->scope = "Public";
    } else if (upper == "PRIVATE") {
      out->scope = "Private";
    } else if (upper == "FRIEND") {
      out->scope = "Friend";
    } else if (upper != "STATIC") {
      break;
    }
  }
  if (upper == "SUB" || upper == "FUNCTION" || upper == "EVENT") {
    out->keyword = upper == "SUB" ? "Sub" : upper == "EVENT" ? "Event" : "Function";
  } else if (upper == "PROPERTY") {
    const std::string form = vb::UCase(scan.Word());
    if (form != "GET" && form != "LET" && form != "SET") return false;
    out->keyword = "Property";
    out->property_form = form == "GET" ? "Get " : form == "LET" ? "Let " : "Set ";
  } else {
    return false;
  }
  std::string name = scan.Word();
  if (name.empty()) {
    // "Sub" followed by no name: not a head VB accepts; keep it visible.
    out->malformed = true;
    return true;
  }
  const std::string suffix_type = StripSuffix(&name);
  out->name = name;
  scan.SkipBlanks();
  if (scan.Peek() == '(') {
    std::string inner;
    if (!scan.Parenthesized(&inner) || !ParseParameterList(inner, &out->parameters)) {
      out->malformed = true;
    }
  }
  const bool returns = out->keyword == "Function" || out->property_form == "Get ";
  if (returns) {
    std::string type = AsClause(scan.Rest());
    if (type.empty()) type = suffix_type.empty() ? "Variant" : suffix_type;
    out->return_type = type;
  }
  return true;
}

}  // namespace

std::string StripComment(std::string_view statement) {
  const size_t quote = FindOutsideStrings(statement, '\'');
  std::string code = TrimBlanks(statement.substr(0, quote));
  const std::string upper = vb::UCase(code.substr(0, 4));
  if (upper == "REM" && code.size() == 3) return std::string();
  if (upper == "REM " || upper == "REM\t") return std::string();
  return code;
}

namespace {

bool IsOneOf(std::string_view word, std::initializer_list<std::string_view> upper_words) {
  for (std::string_view upper : upper_words) {
    if (EqualsIgnoringAsciiCase(word, upper)) return true;
  }
  return false;
}

// The next run of word characters from `*pos`, after blanks; empty when
// another character comes first.
std::string_view NextWord(std::string_view statement, size_t* pos) {
  size_t start = *pos;
  while (start < statement.size() && IsBlankChar(statement[start])) ++start;
  size_t end = start;
  while (end < statement.size() && IsWordChar(static_cast<unsigned char>(statement[end]))) ++end;
  *pos = end;
  return statement.substr(start, end - start);
}

// Most statements of a module are plain code. Without a ':' a statement
// has one segment; it can only be a procedure head or event when, behind
// any scope words, its word is Sub, Function, Event or Property, and only a
// procedure end when it is End followed by Sub, Function or Property. Any
// other statement is kOther, or kBlank when it is empty, a comment or Rem.
// The words are read as the full parse reads them, less a type suffix, so
// a statement is only ever sent on to the full parse when in doubt.
// Returns nullopt when the full parse must decide.
std::optional<StatementKind> KindOfPlainStatement(std::string_view statement) {
  if (statement.find(':') != std::string_view::npos) return std::nullopt;
  size_t pos = 0;
  while (pos < statement.size() && IsBlankChar(statement[pos])) ++pos;
  if (pos == statement.size() || statement[pos] == '\'') return StatementKind::kBlank;
  const std::string_view first = NextWord(statement, &pos);
  if (EqualsIgnoringAsciiCase(first, "END")) {
    if (IsOneOf(NextWord(statement, &pos), {"SUB", "FUNCTION", "PROPERTY"})) return std::nullopt;
    return StatementKind::kOther;
  }
  if (EqualsIgnoringAsciiCase(first, "REM")) {
    const char next = pos < statement.size() ? statement[pos] : ' ';
    if (IsBlankChar(next) || next == '\'') return StatementKind::kBlank;
  }
  std::string_view word = first;
  while (IsOneOf(word, {"PUBLIC", "PRIVATE", "FRIEND", "STATIC"})) word = NextWord(statement, &pos);
  if (IsOneOf(word, {"SUB", "FUNCTION", "EVENT", "PROPERTY"})) return std::nullopt;
  return StatementKind::kOther;
}

}  // namespace

ParsedStatement ParseStatement(std::string_view statement) {
  if (const std::optional<StatementKind> kind = KindOfPlainStatement(statement)) {
    ParsedStatement out;
    out.kind = *kind;
    return out;
  }
  return ParseStatementFully(statement);
}

ParsedStatement ParseStatementFully(std::string_view statement) {
  ParsedStatement out;
  const std::string code = StripComment(statement);
  if (code.empty()) {
    out.kind = StatementKind::kBlank;
    return out;
  }
  const std::vector<std::string> segments = SplitOutside(code, ':');
  if (ParseHead(segments.front(), &out)) {
    out.kind = out.keyword == "Event" ? StatementKind::kEvent : StatementKind::kProcedure;
    return out;
  }
  out = ParsedStatement();
  for (const std::string& segment : segments) {
    if (IsProcedureEnd(segment)) {
      out.kind = StatementKind::kProcedureEnd;
      break;
    }
  }
  return out;
}

bool IsValidIdentifier(std::string_view name) {
  if (name.empty() || name.size() > 255) return false;
  if (!IsLetter(static_cast<unsigned char>(name[0]))) return false;
  for (char c : name) {
    if (!IsWordChar(static_cast<unsigned char>(c))) return false;
  }
  return true;
}

}  // namespace folioscope
