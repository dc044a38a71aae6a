// Visual Basic runtime rules that the report algorithms depend on.
//
// Every string here is a byte string in the ANSI code page (Windows-1252):
// one byte is one VB character, so lengths and 1-based positions are byte
// counts. Functions that VB raises run-time errors from (Left, Right, Mid,
// checked Long arithmetic) throw vb::RuntimeError with VB's number and
// German description; callers trap it at their procedure boundary and hand
// it to CErrorHandler.
#ifndef FOLIOSCOPE_INFRA_VB_RUNTIME_H_
#define FOLIOSCOPE_INFRA_VB_RUNTIME_H_

#include <cstdint>
#include <exception>
#include <string>
#include <string_view>
#include <vector>

namespace vb {

// Error numbers of the VB runtime used by the component.
enum ErrorNumber : int32_t {
  kInvalidProcedureCall = 5,  // "Ungültiger Prozeduraufruf oder ungültiges Argument"
  kOverflow = 6,
  kOutOfMemory = 7,
  kSubscriptOutOfRange = 9,
  kFileNotFound = 53,
  kFileAlreadyOpen = 55,
  kPathFileAccessError = 75,
  kPathNotFound = 76,
  kKeyAlreadyAssociated = 457,
};

// vbObjectError: the base of errors raised by the component's own classes.
constexpr int32_t kObjectError = static_cast<int32_t>(0x80040000u);

// The German runtime text of a VB error number (Windows-1252 bytes), or
// "Anwendungs- oder objektdefinierter Fehler" for numbers without one.
std::string ErrorDescription(int32_t number);

// A trapped VB run-time error: number, description and source, like VB's Err.
class RuntimeError : public std::exception {
 public:
  RuntimeError(int32_t number, std::string description, std::string source = "");
  explicit RuntimeError(int32_t number);  // description from ErrorDescription()

  int32_t number() const { return number_; }
  const std::string& description() const { return description_; }
  const std::string& source() const { return source_; }
  const char* what() const noexcept override { return description_.c_str(); }

 private:
  int32_t number_;
  std::string description_;
  std::string source_;
};

// Raises run-time error `number` with its runtime description.
[[noreturn]] void Raise(int32_t number, std::string_view source = "");

// --- Strings -------------------------------------------------------------

// Trim, LTrim, RTrim remove blanks (0x20) only; tabs stay.
std::string Trim(std::string_view s);
std::string LTrim(std::string_view s);
std::string RTrim(std::string_view s);

// 1-based InStr: position of `needle` in `haystack` at or after `start`
// (1-based), 0 when absent. An empty needle gives `start` (VB's rule);
// start < 1 raises error 5.
int32_t InStr(std::string_view haystack, std::string_view needle);
int32_t InStr(int32_t start, std::string_view haystack, std::string_view needle);

// Left/Right take at most `length` characters; a negative length raises 5.
std::string Left(std::string_view s, int64_t length);
std::string Right(std::string_view s, int64_t length);
// Mid from 1-based `start` (start < 1 raises 5), to the end or for `length`
// characters (negative raises 5).
std::string Mid(std::string_view s, int64_t start);
std::string Mid(std::string_view s, int64_t start, int64_t length);

// LCase / UCase of Windows-1252 text; the length never changes.
std::string LCase(std::string_view s);
std::string UCase(std::string_view s);
// InStr(LCase(haystack), needle) without building the lower-case copy: the
// doc-comment scans search every line of every member this way.
int32_t InStrLCase(std::string_view haystack, std::string_view needle);

// Replace every occurrence of `find` by `with`, case-sensitively, from the
// first character (VB Replace with default arguments). An empty `find`
// returns the text unchanged.
std::string Replace(std::string_view text, std::string_view find, std::string_view with);
// In-place form for building pages in one buffer.
void ReplaceAll(std::string& text, std::string_view find, std::string_view with);

// VB Split: the parts between delimiters, in order. An empty text gives an
// empty array (VB's UBound -1); an empty delimiter gives the whole text.
std::vector<std::string> Split(std::string_view text, std::string_view delimiter);

// --- Numbers -------------------------------------------------------------

// Checked 32-bit Long arithmetic: overflow raises error 6.
int32_t AddLong(int32_t a, int32_t b);
int32_t SubLong(int32_t a, int32_t b);
int32_t MulLong(int32_t a, int32_t b);
// Conversion of a wider value to Long; out of range raises error 6.
int32_t CLng(int64_t value);

// CStr of a Long: decimal, "-" for negatives, no grouping.
std::string CStr(int64_t value);

// Format(value, "#,##0") with the given digit-group separator (the user's
// regional settings choose it; Germany uses ".").
std::string FormatGrouped(int64_t value, std::string_view group_separator);

// IsNumeric on a string as VB's runtime judges it for the values we meet:
// optional blanks, an optional sign, digits with at most one decimal point,
// an optional exponent. Returns true and the value when it reads as a number.
bool IsNumeric(std::string_view text, double* value = nullptr);

}  // namespace vb

#endif  // FOLIOSCOPE_INFRA_VB_RUNTIME_H_
