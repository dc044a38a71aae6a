// The built-in copy of the formatter's keyword list: the bytes that
// CCodeFormat writes to sfn.dat in the application folder when that file is
// missing. Plain Windows-1252 text, one entry per line, CR LF line ends.
#ifndef FOLIOSCOPE_FORMAT_KEYWORD_RESOURCE_H_
#define FOLIOSCOPE_FORMAT_KEYWORD_RESOURCE_H_

#include <string_view>

namespace folioscope {

// The resource's bytes, exactly as they are written to sfn.dat.
std::string_view KeywordResource();

}  // namespace folioscope

#endif  // FOLIOSCOPE_FORMAT_KEYWORD_RESOURCE_H_
