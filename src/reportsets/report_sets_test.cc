#include "reportsets/report_sets.h"

#include <string>

#include <gtest/gtest.h>

#include "infra/platform.h"
#include "infra/recording_platform.h"
#include "infra/test_progress.h"
#include "infra/vb_runtime.h"
#include "reportsets/test_support.h"

namespace folioscope {
namespace {

class Catalogue : public ::testing::Test {
 protected:
  Catalogue() : platform_(app_.path().string()), scoped_(&platform_) {}

  TestFolder app_;
  RecordingPlatform platform_;
  ScopedPlatform scoped_;
  ProgressRecorder log_;
};

int32_t RaisedNumber(const std::function<void()>& f) {
  try {
    f();
  } catch (const vb::RuntimeError& e) {
    return e.number();
  }
  return 0;
}

TEST_F(Catalogue, SetsAreReachableByNumberNumericTextAndFolder) {
  MakeResFolder(app_, "Alpha");
  MakeResFolder(app_, "Beta");
  WriteRes(app_, "IndexComment.ini",
           "[Files]\r\nFile1=Alpha\\a.htm\r\n"
           "[Set1]\r\nName=Erstes Set\r\nPath=Alpha\r\nLanguages=Deutsch \\ English \r\n"
           "[Set2]\r\nName=Zweites\r\nPath=Beta\r\nLanguages=English\r\n");
  CReportSets sets;
  ASSERT_EQ(sets.Count(), 2);
  EXPECT_EQ(sets.Item(0).Name(), "Erstes Set");
  EXPECT_EQ(sets.Item(0).QuellPath(), "Alpha");
  EXPECT_EQ(&sets.Item(1), &sets.Item("Beta"));
  EXPECT_EQ(&sets.Item("0"), &sets.Item(0));
  EXPECT_EQ(&sets.Item(" 1 "), &sets.Item(1));
  const CLanguages& languages = sets.Item(0).Languages();
  ASSERT_EQ(languages.Count(), 2);
  EXPECT_EQ(languages.Item(0).Name(), "Deutsch");
  EXPECT_EQ(languages.Item(1).Name(), "English");
  EXPECT_EQ(languages.Item("English").Name(), "English");
  EXPECT_EQ(sets.Item(1).Languages().Count(), 1);
  EXPECT_EQ(sets.Item(1).Languages().Item(0).Name(), "English");
  EXPECT_EQ(RaisedNumber([&] { sets.Item(2); }), vb::kInvalidProcedureCall);
  EXPECT_EQ(RaisedNumber([&] { sets.Item("Gamma"); }), vb::kInvalidProcedureCall);
  EXPECT_TRUE(platform_.message_boxes.empty());
}

TEST_F(Catalogue, MissingFileOrSingleSectionGiveAnEmptyCatalogueSilently) {
  EXPECT_EQ(CReportSets().Count(), 0);
  MakeResFolder(app_, "Alpha");
  WriteRes(app_, "IndexComment.ini", "[Set1]\r\nName=A\r\nPath=Alpha\r\nLanguages=Deutsch\r\n");
  EXPECT_EQ(CReportSets().Count(), 0);
  EXPECT_TRUE(platform_.message_boxes.empty());
  EXPECT_TRUE(log_.messages.empty());
}

TEST_F(Catalogue, MissingSetFolderIsReportedAndLeavesNoGap) {
  MakeResFolder(app_, "Alpha");
  MakeResFolder(app_, "Gamma");
  WriteRes(app_, "IndexComment.ini",
           "[Files]\r\n"
           "[Set1]\r\nName=A\r\nPath=Alpha\r\nLanguages=Deutsch\r\n"
           "[Set2]\r\nName=Verloren\r\nPath=Beta\r\nLanguages=Deutsch\r\n"
           "[Set3]\r\nName=C\r\nPath=Gamma\r\nLanguages=English\r\n");
  CReportSets sets;
  ASSERT_EQ(sets.Count(), 2);
  EXPECT_EQ(sets.Item(1).QuellPath(), "Gamma");
  const std::string expected = MissingSetMessage("Verloren", Res(app_) + "/Beta");
  ASSERT_EQ(platform_.message_boxes.size(), 1u);
  EXPECT_EQ(platform_.message_boxes[0].text, expected);
  EXPECT_EQ(platform_.message_boxes[0].style, kMbCritical);
  EXPECT_EQ(platform_.message_boxes[0].title, "Quillon");
  ASSERT_EQ(log_.messages.size(), 1u);
  EXPECT_EQ(log_.messages[0].first, expected);
  EXPECT_EQ(log_.messages[0].second, kIconFailure);
}

TEST_F(Catalogue, SetPathsLeadingOutOfResAreLeftOut) {
  MakeResFolder(app_, "Alpha");
  std::filesystem::create_directories(app_.path().string() + "/Beta");  // beside Res, not in it
  WriteRes(app_, "IndexComment.ini",
           "[Files]\r\n"
           "[Set1]\r\nName=Raus\r\nPath=..\\Beta\r\nLanguages=Deutsch\r\n"
           "[Set2]\r\nName=Absolut\r\nPath=" +
               app_.path().string() +
               "/Beta\r\nLanguages=Deutsch\r\n"
               "[Set3]\r\nName=A\r\nPath=Alpha\r\nLanguages=English\r\n");
  CReportSets sets;
  ASSERT_EQ(sets.Count(), 1);
  EXPECT_EQ(sets.Item(0).QuellPath(), "Alpha");
  ASSERT_EQ(log_.messages.size(), 2u);
  EXPECT_EQ(log_.messages[0].first, RefusedSetMessage("Raus", "..\\Beta", Res(app_) + "/"));
  EXPECT_EQ(log_.messages[0].second, kIconFailure);
  EXPECT_NE(log_.messages[1].first.find("'Absolut'"), std::string::npos);
}

TEST_F(Catalogue, AnUnreadSetSectionPointsAtUnbekannt) {
  MakeResFolder(app_, "Alpha");
  WriteRes(app_, "IndexComment.ini",
           "[Files]\r\n[Set1]\r\nName=A\r\nPath=Alpha\r\nLanguages=Deutsch\r\n[Other]\r\n");
  CReportSets sets;
  EXPECT_EQ(sets.Count(), 1);
  ASSERT_EQ(platform_.message_boxes.size(), 1u);
  EXPECT_NE(platform_.message_boxes[0].text.find("Report-Set 'Unbekannt'"), std::string::npos);
  EXPECT_NE(platform_.message_boxes[0].text.find(Res(app_) + "/Unbekannt vorhanden"),
            std::string::npos);
}

TEST(CatalogueShipped, BuildTreeListsStandardWithBothLanguages) {
  RecordingPlatform platform(FOLIOSCOPE_BUILD_DIR);
  ScopedPlatform scoped(&platform);
  CReportSets sets;
  ASSERT_EQ(sets.Count(), 1);
  EXPECT_EQ(sets.Item("Standard").Name(), "Standard");
  EXPECT_EQ(sets.Item(0).Languages().Count(), 2);
  EXPECT_EQ(sets.Item(0).Languages().Item(1).Name(), "English");
  EXPECT_TRUE(platform.message_boxes.empty());
}

}  // namespace
}  // namespace folioscope
