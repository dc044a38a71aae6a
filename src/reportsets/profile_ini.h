// A reader for Windows initialisation files that answers like
// GetPrivateProfileStringA, for the report-set files that were written for it.
//
// Rules: section and key names compare without regard to ASCII case; values
// lose surrounding blanks and tabs and one pair of matching surrounding
// quotes (" or '); lines starting with ';' are comments. Results are written
// into a caller's buffer of `size` characters, never beyond it:
// - a value: the value and a NUL; a value of `size` characters or more is cut
//   to size - 1 characters and a NUL (returns size - 1);
// - no section (null): every section name with its NUL and one more NUL at
//   the end; when that does not fit, the list is cut to size - 2 characters
//   followed by two NULs (returns size - 2);
// - no key (null): the same for the key names of the section;
// - a missing section or key: the default (trailing blanks removed).
// The return value counts the characters written before the final NUL.
// Buffer characters after the written ones keep their previous content.
#ifndef FOLIOSCOPE_REPORTSETS_PROFILE_INI_H_
#define FOLIOSCOPE_REPORTSETS_PROFILE_INI_H_

#include <cstdint>
#include <string>

namespace folioscope {

int32_t GetPrivateProfileStringA(const std::string* section, const std::string* key,
                                 const std::string& default_value, std::string& buffer,
                                 int32_t size, const std::string& file_name);

}  // namespace folioscope

#endif  // FOLIOSCOPE_REPORTSETS_PROFILE_INI_H_
