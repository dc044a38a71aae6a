#include "infra/vb_runtime.h"

#include <gtest/gtest.h>

namespace vb {
namespace {

int32_t ErrorOf(void (*f)()) {
  try {
    f();
  } catch (const RuntimeError& e) {
    return e.number();
  }
  return 0;
}

TEST(VbStrings, TrimRemovesBlanksOnly) {
  EXPECT_EQ(Trim("  a b  "), "a b");
  EXPECT_EQ(Trim("\ta\t"), "\ta\t");
  EXPECT_EQ(LTrim("  a "), "a ");
  EXPECT_EQ(RTrim("  a "), "  a");
  EXPECT_EQ(Trim("   "), "");
}

TEST(VbStrings, InStrIsOneBased) {
  EXPECT_EQ(InStr("abcabc", "c"), 3);
  EXPECT_EQ(InStr(4, "abcabc", "c"), 6);
  EXPECT_EQ(InStr("abc", "x"), 0);
  EXPECT_EQ(InStr("abc", ""), 1);
  EXPECT_EQ(InStr("", "a"), 0);
  EXPECT_EQ(InStr(9, "abc", "a"), 0);
  EXPECT_EQ(ErrorOf([] { InStr(0, "abc", "a"); }), kInvalidProcedureCall);
}

TEST(VbStrings, LeftRightMidRaiseFiveOnNegativeLengths) {
  EXPECT_EQ(Left("abc", 2), "ab");
  EXPECT_EQ(Left("abc", 9), "abc");
  EXPECT_EQ(Right("abc", 2), "bc");
  EXPECT_EQ(Mid("abcdef", 3), "cdef");
  EXPECT_EQ(Mid("abcdef", 3, 2), "cd");
  EXPECT_EQ(Mid("abc", 7, 2), "");
  EXPECT_EQ(ErrorOf([] { Left("abc", -1); }), kInvalidProcedureCall);
  EXPECT_EQ(ErrorOf([] { Right("", -3); }), kInvalidProcedureCall);
  EXPECT_EQ(ErrorOf([] { Mid("abc", 0); }), kInvalidProcedureCall);
  EXPECT_EQ(ErrorOf([] { Mid("abc", 1, -1); }), kInvalidProcedureCall);
}

TEST(VbStrings, CaseMappingKeepsLengthAndCoversWindows1252) {
  EXPECT_EQ(LCase("'/// <SUMMARY>\xC4\xD6\xDC\xD7"), "'/// <summary>\xE4\xF6\xFC\xD7");
  EXPECT_EQ(UCase("\xE4\xDF"), "\xC4\xDF");
}

// InStrLCase must answer exactly what InStr(LCase(h), n) answers, for
// needles in any case and haystacks with every byte.
TEST(VbStrings, InStrLCaseEqualsInStrOfTheLowerCaseCopy) {
  const std::vector<std::string> haystacks = {
      "", "a", "'/// <SUMMARY>", "x<Summary>y<summary>", "\xC4\xC4\xE4", "\x9F\xFF", "<sum"};
  const std::vector<std::string> needles = {"",     "<summary>", "<Summary>", "\xE4", "\xC4",
                                            "\xFF", "y<s",       "<sum",      "<summ"};
  for (const std::string& h : haystacks) {
    for (const std::string& n : needles) {
      EXPECT_EQ(InStrLCase(h, n), InStr(LCase(h), n)) << h << " / " << n;
    }
  }
}

TEST(VbStrings, ReplaceAndSplit) {
  EXPECT_EQ(Replace("a&&&X&&&b&&&X&&&", "&&&X&&&", "1"), "a1b1");
  EXPECT_EQ(Replace("aaa", "aa", "b"), "ba");
  EXPECT_EQ(Replace("abc", "", "x"), "abc");
  EXPECT_EQ(Split("a\\b\\", "\\"), (std::vector<std::string>{"a", "b", ""}));
  EXPECT_TRUE(Split("", "\\").empty());
}

TEST(VbNumbers, CheckedLongArithmeticRaisesOverflow) {
  EXPECT_EQ(AddLong(2147483646, 1), 2147483647);
  EXPECT_EQ(ErrorOf([] { AddLong(2147483647, 1); }), kOverflow);
  EXPECT_EQ(ErrorOf([] { SubLong(-2147483647 - 1, 1); }), kOverflow);
  EXPECT_EQ(ErrorOf([] { MulLong(65536, 65536); }), kOverflow);
  EXPECT_EQ(FormatGrouped(1234567, "."), "1.234.567");
  EXPECT_EQ(FormatGrouped(0, "."), "0");
  EXPECT_EQ(FormatGrouped(-1000, "."), "-1.000");
  double v = 0;
  EXPECT_TRUE(IsNumeric(" 0 ", &v));
  EXPECT_TRUE(IsNumeric("-1.5e3", &v));
  EXPECT_EQ(v, -1500);
  EXPECT_FALSE(IsNumeric("Standard"));
  EXPECT_FALSE(IsNumeric(""));
}

TEST(VbErrors, GermanDescriptions) {
  EXPECT_EQ(RuntimeError(6).description(),
            "\xDC"
            "berlauf");
  EXPECT_EQ(RuntimeError(9).description(),
            "Index au\xDF"
            "erhalb des g\xFCltigen Bereichs");
  EXPECT_EQ(RuntimeError(457).description(),
            "Dieser Schl\xFCssel ist bereits einem Element dieser Auflistung zugeordnet");
}

}  // namespace
}  // namespace vb
