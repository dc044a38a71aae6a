#include "cli/arguments.h"

#include <cstdint>
#include <cstdio>

#include "infra/text_encoding.h"

namespace folioscope {

bool ArgumentsInCp1252(int argc, const char* const* argv, std::vector<std::string>* converted,
                       std::string* error) {
  converted->clear();
  for (int i = 0; i < argc; ++i) {
    uint32_t unrepresentable = 0;
    converted->push_back(Utf8ToCp1252(argv[i], &unrepresentable));
    if (unrepresentable != 0) {
      char code[16];
      std::snprintf(code, sizeof code, "U+%04X", static_cast<unsigned>(unrepresentable));
      *error = std::string("the argument \"") + argv[i] + "\" holds the character \"" +
               Utf8OfCodePoint(unrepresentable) + "\" (" + code +
               "), which Windows-1252 cannot hold";
      return false;
    }
  }
  return true;
}

}  // namespace folioscope
