// Windows-1252 <-> UTF-8, used at the terminal, argument and JSON
// boundaries of the host and where the POSIX file system meets the
// component's paths. The component itself handles Windows-1252 bytes
// throughout.
#ifndef FOLIOSCOPE_INFRA_TEXT_ENCODING_H_
#define FOLIOSCOPE_INFRA_TEXT_ENCODING_H_

#include <cstdint>
#include <string>
#include <string_view>

namespace folioscope {

// Every byte maps to one code point; the five bytes undefined in
// Windows-1252 (81 8D 8F 90 9D) map to the C1 controls of the same value.
std::string Cp1252ToUtf8(std::string_view text);

// The code point of one Windows-1252 byte, by the same mapping.
uint32_t CodePointOfCp1252(unsigned char byte);

// Code points without a Windows-1252 byte become '?'; malformed UTF-8
// bytes are taken as Windows-1252 bytes.
std::string Utf8ToCp1252(std::string_view text);

// As above, and sets `*unrepresentable` to the first code point that has no
// Windows-1252 byte (0 when every one has).
std::string Utf8ToCp1252(std::string_view text, uint32_t* unrepresentable);

// True when `text` is well-formed UTF-8 whose every code point has a
// Windows-1252 byte, so that it converts both ways without loss.
bool IsUtf8OfCp1252Text(std::string_view text);

// The UTF-8 bytes of one code point.
std::string Utf8OfCodePoint(uint32_t code_point);

// ASCII letters compare without case, every other byte exactly: the rule
// for registry key and value names and for VB keywords.
bool EqualsIgnoringAsciiCase(std::string_view a, std::string_view b);

}  // namespace folioscope

#endif  // FOLIOSCOPE_INFRA_TEXT_ENCODING_H_
