#include "infra/text_encoding.h"

#include <cstdint>

namespace folioscope {

namespace {

// Code points of the bytes 0x80..0x9F.
constexpr uint16_t kHigh[32] = {0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

void AppendUtf8(std::string& out, uint32_t cp) {
  if (cp < 0x80) {
    out += static_cast<char>(cp);
  } else if (cp < 0x800) {
    out += static_cast<char>(0xC0 | (cp >> 6));
    out += static_cast<char>(0x80 | (cp & 0x3F));
  } else {
    out += static_cast<char>(0xE0 | (cp >> 12));
    out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (cp & 0x3F));
  }
}

int ByteOfCodePoint(uint32_t cp) {
  if (cp < 0x80 || (cp >= 0xA0 && cp <= 0xFF)) return static_cast<int>(cp);
  for (int i = 0; i < 32; ++i)
    if (kHigh[i] == cp) return 0x80 + i;
  return -1;
}

}  // namespace

uint32_t CodePointOfCp1252(unsigned char byte) {
  return byte >= 0x80 && byte < 0xA0 ? kHigh[byte - 0x80] : byte;
}

std::string Cp1252ToUtf8(std::string_view text) {
  std::string out;
  out.reserve(text.size() + text.size() / 8);
  for (unsigned char c : text) {
    if (c < 0x80) {
      out += static_cast<char>(c);
    } else if (c < 0xA0) {
      AppendUtf8(out, kHigh[c - 0x80]);
    } else {
      AppendUtf8(out, c);
    }
  }
  return out;
}

namespace {

// The code point at `text[i]` and its length in bytes; `length` is 0 when
// the bytes there are no well-formed sequence.
uint32_t DecodeUtf8At(std::string_view text, size_t i, size_t* length) {
  const unsigned char c = static_cast<unsigned char>(text[i]);
  uint32_t cp = 0;
  size_t len = 0;
  if (c < 0x80) {
    cp = c;
    len = 1;
  } else if ((c & 0xE0) == 0xC0) {
    cp = c & 0x1F;
    len = 2;
  } else if ((c & 0xF0) == 0xE0) {
    cp = c & 0x0F;
    len = 3;
  } else if ((c & 0xF8) == 0xF0) {
    cp = c & 0x07;
    len = 4;
  }
  bool ok = len > 0 && i + len <= text.size();
  for (size_t k = 1; ok && k < len; ++k) {
    const unsigned char cc = static_cast<unsigned char>(text[i + k]);
    if ((cc & 0xC0) != 0x80) ok = false;
    cp = (cp << 6) | (cc & 0x3F);
  }
  *length = ok ? len : 0;
  return cp;
}

}  // namespace

std::string Utf8ToCp1252(std::string_view text) {
  uint32_t unrepresentable = 0;
  return Utf8ToCp1252(text, &unrepresentable);
}

std::string Utf8ToCp1252(std::string_view text, uint32_t* unrepresentable) {
  *unrepresentable = 0;
  std::string out;
  out.reserve(text.size());
  size_t i = 0;
  while (i < text.size()) {
    size_t len = 0;
    const uint32_t cp = DecodeUtf8At(text, i, &len);
    if (len == 0) {
      out += text[i];
      ++i;
      continue;
    }
    const int b = ByteOfCodePoint(cp);
    if (b < 0 && *unrepresentable == 0) *unrepresentable = cp;
    out += b < 0 ? '?' : static_cast<char>(b);
    i += len;
  }
  return out;
}

bool IsUtf8OfCp1252Text(std::string_view text) {
  size_t i = 0;
  while (i < text.size()) {
    size_t len = 0;
    const uint32_t cp = DecodeUtf8At(text, i, &len);
    if (len == 0 || ByteOfCodePoint(cp) < 0) return false;
    i += len;
  }
  return true;
}

std::string Utf8OfCodePoint(uint32_t code_point) {
  std::string out;
  if (code_point < 0x10000) {
    AppendUtf8(out, code_point);
  } else {
    out += static_cast<char>(0xF0 | (code_point >> 18));
    out += static_cast<char>(0x80 | ((code_point >> 12) & 0x3F));
    out += static_cast<char>(0x80 | ((code_point >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (code_point & 0x3F));
  }
  return out;
}

namespace {

char AsciiLower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; }

}  // namespace

bool EqualsIgnoringAsciiCase(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (size_t i = 0; i < a.size(); ++i) {
    if (AsciiLower(a[i]) != AsciiLower(b[i])) return false;
  }
  return true;
}

}  // namespace folioscope
