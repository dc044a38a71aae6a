#include "cli/coverage_formats.h"

#include <gtest/gtest.h>

#include <string>

namespace folioscope {
namespace {

ProjectCoverage Sample() {
  ProjectCoverage p;
  p.name = "Kontor";
  p.modules = {{"CKonto", "CKonto.cls", {3, 3, 4, 2, 1, 1, 0}, {}},
               {"modGr\xF6\xDF"
                "e",
                "modGroesse.bas",
                {2, 0, 1, 0, 1, 0, 1},
                {{"Rechne",
                  "Index au\xDF"
                  "erhalb des g\xFCltigen Bereichs (9, CParam.GetParam)"}}},
               {"frmLeer", "frmLeer.frm", {}, {}}};
  for (const auto& m : p.modules) p.total.Add(m.counts);
  return p;
}

TEST(CoverageFormats, TableAlignsColumnsAndEndsWithTheTotal) {
  EXPECT_EQ(
      "Module    Members  Summary  Parameters  Returns  Documented\n"
      "CKonto          3      3/3         2/4      1/1      75.0 %\n"
      "modGröße        2      0/2         0/1      0/1       0.0 %\n"
      "frmLeer         0      0/0         0/0      0/0     100.0 %\n"
      "-----------------------------------------------------------\n"
      "Total           5      3/5         2/5      1/2      50.0 %\n",
      CoverageTable(Sample()));
}

TEST(CoverageFormats, SharesRoundDownAndPickTheBadgeColour) {
  const struct {
    double share;
    const char* text;
    const char* badge_text;
    const char* colour;
  } kShares[] = {
      {100.0, "100.0", ">100%<", "#4c1"},  {99.99, "99.9", ">99%<", "#4c1"},
      {90.0, "90.0", ">90%<", "#4c1"},     {200.0 / 3, "66.6", ">66%<", "#dfb317"},
      {89.96, "89.9", ">89%<", "#97ca00"}, {40.0, "40.0", ">40%<", "#fe7d37"},
      {39.9, "39.9", ">39%<", "#e05d44"},  {0.0, "0.0", ">0%<", "#e05d44"},
  };
  for (const auto& s : kShares) {
    EXPECT_EQ(s.text, ShareText(s.share)) << s.share;
    const std::string badge = CoverageBadge(s.share);
    EXPECT_NE(std::string::npos, badge.find(s.badge_text)) << s.share;
    EXPECT_NE(std::string::npos, badge.find(std::string("fill=\"") + s.colour)) << s.share;
  }
}

TEST(CoverageFormats, JsonCarriesTheNotesAsUtf8) {
  const nlohmann::ordered_json json = CoverageJson(Sample());
  EXPECT_EQ("modGröße", json["modules"][1]["name"]);
  EXPECT_EQ("Index außerhalb des gültigen Bereichs (9, CParam.GetParam)",
            json["modules"][1]["notes"][0]["text"]);
  EXPECT_EQ(12, json["total"]["documentable"]);
}

}  // namespace
}  // namespace folioscope
