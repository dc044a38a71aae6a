#include "pages/template_fill.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "infra/vb_runtime.h"

namespace folioscope {
namespace {

// What the fill must equal: one plain replace-all per entry, in order.
std::string OneByOne(std::string text, const std::vector<TokenReplacement>& replacements) {
  for (const auto& r : replacements) vb::ReplaceAll(text, r.key, r.value);
  return text;
}

std::string Filled(std::string text, const std::vector<TokenReplacement>& replacements) {
  ReplaceEachInOrder(text, replacements);
  return text;
}

TEST(ReplaceEachInOrder, TextsWhereOrderAndOverlapsMatter) {
  const std::vector<TokenReplacement> ab = {{"&&&A&&&", "1"}, {"&&&B&&&", "2"}};
  const std::vector<TokenReplacement> ba = {{"&&&B&&&", "2"}, {"&&&A&&&", "1"}};
  struct Case {
    std::string text;
    std::vector<TokenReplacement> replacements;
    std::string expected;
  };
  const std::vector<Case> cases = {
      {"<p>&&&A&&&</p><i>&&&B&&&</i>&&&C&&&", ab, "<p>1</p><i>2</i>&&&C&&&"},
      {"&&&A&&&&&&B&&&", ab, "12"},  // a six-run
      {"&&&A&&&B&&&", ab, "1B&&&"},  // A and B share a mark
      {"&&&A&&&B&&&", ba, "&&&A2"},
      {"&&&&A&&&", ab, "&1"},            // a four-run holds a token
      {"x &&&A&&& &&&", ab, "x 1 &&&"},  // an odd mark
      {"&&&A&&&B&&&A&&&", ab, "1B1"},
      {"&&&A&&&_&&&B&&&", ab, "1_2"},  // only name characters between two tokens
      {"&&&A&&& &amp; &&&B&&&", ab, "1 &amp; 2"},
      // A value that is itself a later key, and a value that forms one with the text.
      {"&&&A&&& &&&B&&&", {{"&&&A&&&", "&&&B&&&"}, {"&&&B&&&", "2"}}, "2 2"},
      {"&&&A&&&B&&&", {{"&&&A&&&", "&&&"}, {"&&&B&&&", "2"}}, "2"},
      {"&&&&&&", {{"&&&&&&", "x"}}, "x"},                          // an empty name
      {"1&&&A&&&1", {{"1", "&&&"}, {"&&&A&&&", "-"}}, "&&&-&&&"},  // a key that is no token
      {"&&&A&&&", {{"&&&a&&&", "lower"}}, "&&&A&&&"},              // keys are case-sensitive
      {"&&&A&&&x", {{"&&&A&&&", "&nbsp;&"}}, "&nbsp;&x"},
      {"", ab, ""},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(c.expected, Filled(c.text, c.replacements)) << c.text;
    EXPECT_EQ(OneByOne(c.text, c.replacements), c.expected) << c.text;
  }
}

// Random texts over a small alphabet rich in '&' against random entry lists:
// the fill must always equal the one-by-one result, whichever path it takes.
TEST(ReplaceEachInOrder, EqualsOneByOneOnRandomTexts) {
  std::mt19937 rng(20261123);
  const std::string alphabet = "&&&&AB_< x";
  const std::vector<std::string> names = {"A", "B", "AB", "A_B", "x", "B<"};
  const std::vector<std::string> values = {"",        "1", "&", "&&",    "&&&",
                                           "&&&A&&&", "A", "<", "&nbsp;"};
  auto pick = [&](size_t n) { return std::uniform_int_distribution<size_t>(0, n - 1)(rng); };
  for (int round = 0; round < 20000; ++round) {
    std::string text;
    const size_t length = pick(24);
    for (size_t i = 0; i < length; ++i) {
      if (pick(4) == 0) {
        text += "&&&" + names[pick(names.size())] + "&&&";
      } else {
        text += alphabet[pick(alphabet.size())];
      }
    }
    std::vector<std::string> keys;
    std::vector<TokenReplacement> replacements;
    keys.reserve(4);
    for (size_t n = pick(4) + 1; n > 0; --n) {
      keys.push_back(pick(8) == 0 ? names[pick(names.size())]
                                  : "&&&" + names[pick(names.size())] + "&&&");
      replacements.push_back({keys.back(), values[pick(values.size())]});
    }
    ASSERT_EQ(OneByOne(text, replacements), Filled(text, replacements)) << "text: " << text;
  }
}

}  // namespace
}  // namespace folioscope
