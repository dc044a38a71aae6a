// The command line as the component reads it.
//
// A terminal hands over UTF-8; the component's names, paths, titles and
// passwords are Windows-1252 bytes. Every argument is converted once, before
// the options are parsed, so that "--module CB\xFCcher" typed in a UTF-8
// terminal finds the module and a password derives the same key as on
// Windows. Bytes that are not UTF-8 (a file name of raw Windows-1252 bytes,
// expanded by the shell) are kept as they are.
#ifndef FOLIOSCOPE_CLI_ARGUMENTS_H_
#define FOLIOSCOPE_CLI_ARGUMENTS_H_

#include <string>
#include <vector>

namespace folioscope {

// The arguments argv[0..argc) in Windows-1252. Returns false when one holds
// a character that Windows-1252 cannot hold; `error` (UTF-8) then names the
// argument and the character, as a '?' in its place would silently select
// something else.
bool ArgumentsInCp1252(int argc, const char* const* argv, std::vector<std::string>* converted,
                       std::string* error);

}  // namespace folioscope

#endif  // FOLIOSCOPE_CLI_ARGUMENTS_H_
