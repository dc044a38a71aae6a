#include "cli/arguments.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace folioscope {
namespace {

TEST(Arguments, TypedTextReachesTheComponentInWindows1252) {
  struct Case {
    std::vector<const char*> typed;  // UTF-8, as a terminal hands them over
    std::vector<std::string> converted;
    const char* error;  // empty when the conversion succeeds
  } cases[] = {
      {{"folioscope", "--module", "CB\xC3\274cher", "--member", "Z\xC3\xA4hle"},
       {"folioscope", "--module", "CB\374cher", "--member", "Z\xE4hle"},
       ""},
      {{"--option", "ReportStdTitle=B\xC3\274cher \xE2\x80\x93 \xE2\x82\xAC"},
       {"--option", "ReportStdTitle=B\374cher \x96 \x80"},
       ""},
      {{"raw\xFC.vbp"}, {"raw\xFC.vbp"}, ""},  // a raw byte expanded by the shell stays
      {{"ok", "CB\xE6\x97\xA5"},
       {},
       "the argument \"CB\xE6\x97\xA5\" holds the character \"\xE6\x97\xA5\" (U+65E5), which "
       "Windows-1252 cannot hold"},
  };
  for (const Case& c : cases) {
    std::vector<std::string> converted;
    std::string error;
    const bool ok =
        ArgumentsInCp1252(static_cast<int>(c.typed.size()), c.typed.data(), &converted, &error);
    EXPECT_EQ(error, c.error);
    EXPECT_EQ(ok, error.empty());
    if (ok) {
      EXPECT_EQ(converted, c.converted);
    }
  }
}

}  // namespace
}  // namespace folioscope
