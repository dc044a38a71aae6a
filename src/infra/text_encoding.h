// Windows-1252 <-> UTF-8, used only at the terminal and JSON boundaries of
// the host. The component itself handles Windows-1252 bytes throughout.
#ifndef FOLIOSCOPE_INFRA_TEXT_ENCODING_H_
#define FOLIOSCOPE_INFRA_TEXT_ENCODING_H_

#include <string>
#include <string_view>

namespace folioscope {

// Every byte maps to one code point; the five bytes undefined in
// Windows-1252 (81 8D 8F 90 9D) map to the C1 controls of the same value.
std::string Cp1252ToUtf8(std::string_view text);

// Code points without a Windows-1252 byte become '?'; malformed UTF-8
// bytes are taken as Windows-1252 bytes.
std::string Utf8ToCp1252(std::string_view text);

// ASCII letters compare without case, every other byte exactly: the rule
// for registry key and value names and for VB keywords.
bool EqualsIgnoringAsciiCase(std::string_view a, std::string_view b);

}  // namespace folioscope

#endif  // FOLIOSCOPE_INFRA_TEXT_ENCODING_H_
