#include "reportsets/report_sets.h"

#include <string>

#include <gtest/gtest.h>

#include "infra/platform.h"
#include "infra/recording_platform.h"
#include "infra/vb_runtime.h"
#include "reportsets/test_support.h"

namespace folioscope {
namespace {

class Catalogue : public ::testing::Test {
 protected:
  Catalogue() : platform_(app_.path()), scoped_(&platform_) {}

  ScratchAppFolder app_;
  RecordingPlatform platform_;
  ScopedPlatform scoped_;
  ProgressLog log_;
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
  app_.MakeFolder("Alpha");
  app_.MakeFolder("Beta");
  app_.WriteRes("IndexComment.ini",
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
  app_.MakeFolder("Alpha");
  app_.WriteRes("IndexComment.ini", "[Set1]\r\nName=A\r\nPath=Alpha\r\nLanguages=Deutsch\r\n");
  EXPECT_EQ(CReportSets().Count(), 0);
  EXPECT_TRUE(platform_.message_boxes.empty());
  EXPECT_TRUE(log_.logs.empty());
}

TEST_F(Catalogue, MissingSetFolderIsReportedAndLeavesNoGap) {
  app_.MakeFolder("Alpha");
  app_.MakeFolder("Gamma");
  app_.WriteRes("IndexComment.ini",
                "[Files]\r\n"
                "[Set1]\r\nName=A\r\nPath=Alpha\r\nLanguages=Deutsch\r\n"
                "[Set2]\r\nName=Verloren\r\nPath=Beta\r\nLanguages=Deutsch\r\n"
                "[Set3]\r\nName=C\r\nPath=Gamma\r\nLanguages=English\r\n");
  CReportSets sets;
  ASSERT_EQ(sets.Count(), 2);
  EXPECT_EQ(sets.Item(1).QuellPath(), "Gamma");
  const std::string expected =
      "Der Pfad zum Report-Set 'Verloren' konnte nicht gefunden werden. "
      "Bitte \xFC"
      "berpr\xFC"
      "fen Sie ob der Pfad: " +
      app_.res() +
      "/Beta vorhanden ist. Dieser ist zwingend "
      "erforderlich. Installieren Sie Quillon gegebenenfalls neu.";
  ASSERT_EQ(platform_.message_boxes.size(), 1u);
  EXPECT_EQ(platform_.message_boxes[0].text, expected);
  EXPECT_EQ(platform_.message_boxes[0].style, kMbCritical);
  EXPECT_EQ(platform_.message_boxes[0].title, "Quillon");
  ASSERT_EQ(log_.logs.size(), 1u);
  EXPECT_EQ(log_.logs[0], expected);
  EXPECT_EQ(log_.icons[0], kIconFailure);
}

TEST_F(Catalogue, SetPathsLeadingOutOfResAreLeftOut) {
  app_.MakeFolder("Alpha");
  std::filesystem::create_directories(app_.path() + "/Beta");  // beside Res, not in it
  app_.WriteRes("IndexComment.ini",
                "[Files]\r\n"
                "[Set1]\r\nName=Raus\r\nPath=..\\Beta\r\nLanguages=Deutsch\r\n"
                "[Set2]\r\nName=Absolut\r\nPath=" +
                    app_.path() +
                    "/Beta\r\nLanguages=Deutsch\r\n"
                    "[Set3]\r\nName=A\r\nPath=Alpha\r\nLanguages=English\r\n");
  CReportSets sets;
  ASSERT_EQ(sets.Count(), 1);
  EXPECT_EQ(sets.Item(0).QuellPath(), "Alpha");
  ASSERT_EQ(log_.logs.size(), 2u);
  EXPECT_EQ(log_.logs[0], "Der Pfad '..\\Beta' des Report-Sets 'Raus' f\xFChrt aus dem Ordner " +
                              app_.res() + "/ heraus. Das Report-Set wird nicht aufgenommen.");
  EXPECT_EQ(log_.icons[0], kIconFailure);
  EXPECT_NE(log_.logs[1].find("'Absolut'"), std::string::npos);
}

TEST_F(Catalogue, AnUnreadSetSectionPointsAtUnbekannt) {
  app_.MakeFolder("Alpha");
  app_.WriteRes("IndexComment.ini",
                "[Files]\r\n[Set1]\r\nName=A\r\nPath=Alpha\r\nLanguages=Deutsch\r\n[Other]\r\n");
  CReportSets sets;
  EXPECT_EQ(sets.Count(), 1);
  ASSERT_EQ(platform_.message_boxes.size(), 1u);
  EXPECT_NE(platform_.message_boxes[0].text.find("Report-Set 'Unbekannt'"), std::string::npos);
  EXPECT_NE(platform_.message_boxes[0].text.find(app_.res() + "/Unbekannt vorhanden"),
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
