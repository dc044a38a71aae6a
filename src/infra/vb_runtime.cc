#include "infra/vb_runtime.h"

#include <algorithm>
#include <cstdlib>
#include <limits>

namespace vb {

std::string ErrorDescription(int32_t number) {
  switch (number) {
    case kInvalidProcedureCall:
      return "Ung\xFCltiger Prozeduraufruf oder ung\xFCltiges Argument";
    case kOverflow:
      return "\xDC"
             "berlauf";
    case kOutOfMemory:
      return "Nicht gen\xFCgend Speicher";
    case kSubscriptOutOfRange:
      return "Index au\xDF"
             "erhalb des g\xFCltigen Bereichs";
    case kFileNotFound:
      return "Datei nicht gefunden";
    case kFileAlreadyOpen:
      return "Datei bereits ge\xF6"
             "ffnet";
    case kPathFileAccessError:
      return "Fehler beim Zugriff auf Pfad/Datei";
    case kPathNotFound:
      return "Pfad nicht gefunden";
    case kKeyAlreadyAssociated:
      return "Dieser Schl\xFCssel ist bereits einem Element dieser Auflistung zugeordnet";
    default:
      return "Anwendungs- oder objektdefinierter Fehler";
  }
}

RuntimeError::RuntimeError(int32_t number, std::string description, std::string source)
    : number_(number), description_(std::move(description)), source_(std::move(source)) {}

RuntimeError::RuntimeError(int32_t number)
    : number_(number), description_(ErrorDescription(number)) {}

void Raise(int32_t number, std::string_view source) {
  throw RuntimeError(number, ErrorDescription(number), std::string(source));
}

std::string LTrim(std::string_view s) {
  size_t b = 0;
  while (b < s.size() && s[b] == ' ') ++b;
  return std::string(s.substr(b));
}

std::string RTrim(std::string_view s) {
  size_t e = s.size();
  while (e > 0 && s[e - 1] == ' ') --e;
  return std::string(s.substr(0, e));
}

std::string Trim(std::string_view s) {
  size_t b = 0, e = s.size();
  while (b < e && s[b] == ' ') ++b;
  while (e > b && s[e - 1] == ' ') --e;
  return std::string(s.substr(b, e - b));
}

int32_t InStr(std::string_view haystack, std::string_view needle) {
  return InStr(1, haystack, needle);
}

int32_t InStr(int32_t start, std::string_view haystack, std::string_view needle) {
  if (start < 1) Raise(kInvalidProcedureCall);
  if (haystack.empty()) return 0;
  if (needle.empty()) return start;
  if (static_cast<size_t>(start) > haystack.size()) return 0;
  size_t p = haystack.find(needle, static_cast<size_t>(start - 1));
  return p == std::string_view::npos ? 0 : static_cast<int32_t>(p + 1);
}

std::string Left(std::string_view s, int64_t length) {
  if (length < 0) Raise(kInvalidProcedureCall);
  return std::string(s.substr(0, static_cast<size_t>(std::min<int64_t>(length, s.size()))));
}

std::string Right(std::string_view s, int64_t length) {
  if (length < 0) Raise(kInvalidProcedureCall);
  size_t n = static_cast<size_t>(std::min<int64_t>(length, s.size()));
  return std::string(s.substr(s.size() - n));
}

std::string Mid(std::string_view s, int64_t start) {
  if (start < 1) Raise(kInvalidProcedureCall);
  if (static_cast<uint64_t>(start) > s.size()) return std::string();
  return std::string(s.substr(static_cast<size_t>(start - 1)));
}

std::string Mid(std::string_view s, int64_t start, int64_t length) {
  if (start < 1 || length < 0) Raise(kInvalidProcedureCall);
  if (static_cast<uint64_t>(start) > s.size()) return std::string();
  return std::string(s.substr(static_cast<size_t>(start - 1), static_cast<size_t>(length)));
}

namespace {

// Windows-1252 letters with a case partner: A-Z, the Latin-1 capitals
// C0..DE except the multiplication sign D7, and S/OE/Z with caron/ligature.
unsigned char LowerByte(unsigned char c) {
  if (c >= 'A' && c <= 'Z') return c + 32;
  if (c >= 0xC0 && c <= 0xDE && c != 0xD7) return c + 32;
  switch (c) {
    case 0x8A:
      return 0x9A;
    case 0x8C:
      return 0x9C;
    case 0x8E:
      return 0x9E;
    case 0x9F:
      return 0xFF;
    default:
      return c;
  }
}

unsigned char UpperByte(unsigned char c) {
  if (c >= 'a' && c <= 'z') return c - 32;
  if (c >= 0xE0 && c <= 0xFE && c != 0xF7) return c - 32;
  switch (c) {
    case 0x9A:
      return 0x8A;
    case 0x9C:
      return 0x8C;
    case 0x9E:
      return 0x8E;
    case 0xFF:
      return 0x9F;
    default:
      return c;
  }
}

}  // namespace

std::string LCase(std::string_view s) {
  std::string r(s);
  for (char& c : r) c = static_cast<char>(LowerByte(static_cast<unsigned char>(c)));
  return r;
}

int32_t InStrLCase(std::string_view haystack, std::string_view needle) {
  if (haystack.empty()) return 0;
  if (needle.empty()) return 1;
  if (needle.size() > haystack.size()) return 0;
  const size_t last_start = haystack.size() - needle.size();
  // A first byte without a case partner ('<' of every tag) is found by a
  // plain search, and only its places are compared further.
  const char first = needle[0];
  const unsigned char first_byte = static_cast<unsigned char>(first);
  const bool first_is_caseless =
      LowerByte(first_byte) == first_byte && UpperByte(first_byte) == first_byte;
  for (size_t p = 0; p <= last_start; ++p) {
    if (first_is_caseless) {
      p = haystack.find(first, p);
      if (p == std::string_view::npos || p > last_start) return 0;
    }
    size_t k = 0;
    while (k < needle.size() && LowerByte(static_cast<unsigned char>(haystack[p + k])) ==
                                    static_cast<unsigned char>(needle[k])) {
      ++k;
    }
    if (k == needle.size()) return static_cast<int32_t>(p + 1);
  }
  return 0;
}

std::string UCase(std::string_view s) {
  std::string r(s);
  for (char& c : r) c = static_cast<char>(UpperByte(static_cast<unsigned char>(c)));
  return r;
}

void ReplaceAll(std::string& text, std::string_view find, std::string_view with) {
  if (find.empty()) return;
  size_t p = text.find(find);
  if (p == std::string::npos) return;
  std::string out;
  out.reserve(text.size() + (with.size() > find.size() ? with.size() - find.size() : 0) * 4);
  size_t from = 0;
  while (p != std::string::npos) {
    out.append(text, from, p - from);
    out.append(with);
    from = p + find.size();
    p = text.find(find, from);
  }
  out.append(text, from, std::string::npos);
  text.swap(out);
}

std::string Replace(std::string_view text, std::string_view find, std::string_view with) {
  std::string r(text);
  ReplaceAll(r, find, with);
  return r;
}

std::vector<std::string> Split(std::string_view text, std::string_view delimiter) {
  std::vector<std::string> parts;
  if (text.empty()) return parts;
  if (delimiter.empty()) {
    parts.emplace_back(text);
    return parts;
  }
  size_t from = 0;
  while (true) {
    size_t p = text.find(delimiter, from);
    if (p == std::string_view::npos) {
      parts.emplace_back(text.substr(from));
      return parts;
    }
    parts.emplace_back(text.substr(from, p - from));
    from = p + delimiter.size();
  }
}

int32_t CLng(int64_t value) {
  if (value < std::numeric_limits<int32_t>::min() || value > std::numeric_limits<int32_t>::max())
    Raise(kOverflow);
  return static_cast<int32_t>(value);
}

int32_t AddLong(int32_t a, int32_t b) { return CLng(static_cast<int64_t>(a) + b); }
int32_t SubLong(int32_t a, int32_t b) { return CLng(static_cast<int64_t>(a) - b); }
int32_t MulLong(int32_t a, int32_t b) { return CLng(static_cast<int64_t>(a) * b); }

std::string CStr(int64_t value) { return std::to_string(value); }

std::string FormatGrouped(int64_t value, std::string_view group_separator) {
  uint64_t magnitude = value < 0 ? 0 - static_cast<uint64_t>(value) : static_cast<uint64_t>(value);
  std::string digits = std::to_string(magnitude);
  std::string out;
  int count = 0;
  for (size_t i = digits.size(); i-- > 0;) {
    out.insert(out.begin(), digits[i]);
    if (++count % 3 == 0 && i > 0) out.insert(0, group_separator);
  }
  if (value < 0) out.insert(out.begin(), '-');
  return out;
}

bool IsNumeric(std::string_view text, double* value) {
  std::string t = Trim(text);
  while (!t.empty() && (t.front() == '\t')) t.erase(t.begin());
  if (t.empty()) return false;
  size_t i = 0;
  if (t[i] == '+' || t[i] == '-') ++i;
  bool digits = false, dot = false;
  for (; i < t.size(); ++i) {
    char c = t[i];
    if (c >= '0' && c <= '9') {
      digits = true;
    } else if (c == '.' && !dot) {
      dot = true;
    } else {
      break;
    }
  }
  if (!digits) return false;
  if (i < t.size() && (t[i] == 'e' || t[i] == 'E')) {
    size_t j = i + 1;
    if (j < t.size() && (t[j] == '+' || t[j] == '-')) ++j;
    size_t k = j;
    while (k < t.size() && t[k] >= '0' && t[k] <= '9') ++k;
    if (k == j) return false;
    i = k;
  }
  if (i != t.size()) return false;
  if (value) *value = std::strtod(t.c_str(), nullptr);
  return true;
}

}  // namespace vb
