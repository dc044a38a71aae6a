#include "reportsets/ressource.h"

#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "infra/error_handler.h"
#include "infra/platform.h"
#include "infra/recording_platform.h"
#include "infra/registry.h"
#include "infra/test_progress.h"
#include "infra/vb_runtime.h"
#include "reportsets/test_support.h"
#include "reportsets/winapi_crypt.h"

namespace folioscope {
namespace {

namespace fs = std::filesystem;

void ChooseSet(RecordingPlatform& platform, const std::string& path, const std::string& language) {
  CRegistry registry(&platform.registry);
  registry.SaveRegString(kHkeyCurrentUser, kCurrentReportKey, "ReportPath", path);
  registry.SaveRegString(kHkeyCurrentUser, kCurrentReportKey, "ReportLanguage", language);
}

TEST(CRessourceShipped, StandardSetLoadsInBothLanguages) {
  for (const std::string language : {"Deutsch", "English"}) {
    RecordingPlatform platform(FOLIOSCOPE_BUILD_DIR);
    ScopedPlatform scoped(&platform);
    ChooseSet(platform, "Standard", " " + language + " ");
    CRessource res;
    ASSERT_TRUE(res.Ready()) << language;
    EXPECT_TRUE(platform.message_boxes.empty());
    EXPECT_EQ(res.PlaceholderCount(), res.PlaceHolder().Count());
    EXPECT_EQ(res.SpecificLanguageCount(), res.SpecificLanguage().Count());
    EXPECT_EQ(res.PlaceHolder().Item("&&&FS_Allgemein_StyleSheet_File&&&"), "folioscope.css");
    EXPECT_EQ(res.SpecificLanguage().Item("&&&FS_ModulInhaltOben_CModul&&&"),
              language == "Deutsch" ? "Klassenmodul" : "Class module");
    EXPECT_NE(res.Index().find("FrameRechts"), std::string::npos);
    EXPECT_EQ(res.Index().rfind("<!DOCTYPE", 0), 0u);
    EXPECT_EQ(res.Name(), "");
  }
}

// A small set "Mini" in a scratch application folder: File<n> holds
// "<p>n</p>", Description.dat two languages.
class MiniSet : public ::testing::Test {
 protected:
  MiniSet() : platform_(app_.path().string()), scoped_(&platform_) {
    ChooseSet(platform_, "Mini", "English");
    std::string ini =
        "[Set1]\r\nName=Mini\r\nPath=Mini\r\nLanguages=Deutsch\\English\r\n[Mini]\r\n";
    for (int n = 1; n <= 28; ++n) {
      ini += "File" + std::to_string(n) + "=Mini\\f" + std::to_string(n) + ".htm\r\n";
      WriteEncrypted(app_, "Mini/f" + std::to_string(n) + ".htm",
                     "  <p>" + std::to_string(n) + "</p>  ");
    }
    ini_ = ini;
    WriteRes(app_, "IndexComment.ini", ini_);
    WriteDescription(kDescription);
  }
  void WriteDescription(const std::string& text) {
    WriteEncrypted(app_, "Mini/Description.dat", text);
  }
  void DropIniKey(const std::string& line) {
    ini_ = vb::Replace(ini_, line + "\r\n", "");
    WriteRes(app_, "IndexComment.ini", ini_);
  }
  std::string Base() const { return Res(app_) + "/"; }
  std::string FailureMessage(const std::string& list) const {
    return UnloadedFilesMessage(Base() + "Mini", list);
  }
  std::string Path(int n) const { return Base() + "Mini/f" + std::to_string(n) + ".htm\r\n"; }

  static constexpr const char* kDescription =
      "Kopf\r\n\\&&&FS_A_File&&& = a.css\r\n\\ &&&FS_Projekt_Title&&& = x = y \r\n\\}\r\n"
      "[[Deutsch]]\r\n\\&&&L&&& = Hallo\r\n\\}\r\n"
      "[[English]]\r\n\\&&&L&&& = Hello\r\n\\&&&M&&& =\r\n Two lines\r\n\\}\r\n";

  TestFolder app_;
  RecordingPlatform platform_;
  ScopedPlatform scoped_;
  std::string ini_;
};

TEST_F(MiniSet, LoadsTemplatesInKeyOrderAndParsesTheDescription) {
  CRessource res;
  ASSERT_TRUE(res.Ready());
  EXPECT_EQ(res.MemberInhaltOben(), "<p>5</p>");
  EXPECT_EQ(res.ModulInhaltUnten(), "<p>28</p>");
  EXPECT_EQ(res.IndexFrameLinksUnten(), "<p>3</p>");
  EXPECT_EQ(res.Logo(), "<p>10</p>");
  EXPECT_EQ(res.DDType(), "<p>27</p>");
  res.SetDDMemberUnten("neu");
  EXPECT_EQ(res.DDMemberUnten(), "neu");
  EXPECT_EQ(res.PlaceholderCount(), 2);
  EXPECT_EQ(res.PlaceHolder().KeyAt(0).string_value(), "&&&FS_A_File&&&");
  EXPECT_EQ(res.PlaceHolder().Item("&&&FS_Projekt_Title&&&"), "x = y");
  EXPECT_EQ(res.SpecificLanguageCount(), 2);
  EXPECT_EQ(res.SpecificLanguage().Item("&&&L&&&"), "Hello");
  EXPECT_EQ(res.SpecificLanguage().Item("&&&M&&&"), "Two lines");
  EXPECT_TRUE(platform_.message_boxes.empty());
}

TEST_F(MiniSet, UnknownOrEmptyLanguageFallsBackToTheFirstBlock) {
  for (const std::string language : {"Klingonisch", "", "english"}) {
    ChooseSet(platform_, "Mini", language);
    CRessource res;
    ASSERT_TRUE(res.Ready());
    EXPECT_EQ(res.SpecificLanguage().Item("&&&L&&&"), "Hallo") << language;
    EXPECT_EQ(res.SpecificLanguageCount(), 1);
  }
}

TEST_F(MiniSet, EmptyReportPathFailsWithoutMessage) {
  ChooseSet(platform_, "", "English");
  EXPECT_FALSE(CRessource().Ready());
  EXPECT_TRUE(platform_.message_boxes.empty());
}

TEST_F(MiniSet, MissingIniFileIsReported) {
  std::filesystem::remove(Res(app_) + "/IndexComment.ini");
  EXPECT_FALSE(CRessource().Ready());
  ASSERT_EQ(platform_.message_boxes.size(), 1u);
  EXPECT_EQ(platform_.message_boxes[0].text, MissingIniMessage(Res(app_) + "/IndexComment.ini"));
  EXPECT_EQ(platform_.message_boxes[0].style, kMbExclamation);
  EXPECT_EQ(platform_.message_boxes[0].title, "Quillon");
}

TEST_F(MiniSet, FailureListFollowsTheDeliberateEmptinessChecks) {
  // A missing key reads as the file "Unbekannt".
  DropIniKey("File3=Mini\\f3.htm");
  EXPECT_FALSE(CRessource().Ready());
  ASSERT_EQ(platform_.message_boxes.size(), 1u);
  EXPECT_EQ(platform_.message_boxes[0].text, FailureMessage(Base() + "Unbekannt\r\n"));
  platform_.message_boxes.clear();
  WriteRes(app_, "IndexComment.ini", ini_ + "File3=Mini\\f3.htm\r\n");

  // Empty menu node, entry and type entry pass on their own ...
  for (int n : {11, 12, 27}) WriteRes(app_, "Mini/f" + std::to_string(n) + ".htm", "");
  EXPECT_TRUE(CRessource().Ready());
  EXPECT_TRUE(platform_.message_boxes.empty());

  // ... while an empty menu head or enumeration entry names the files after it.
  WriteRes(app_, "Mini/f2.htm", "");
  WriteEncrypted(app_, "Mini/f26.htm", "   ");
  EXPECT_FALSE(CRessource().Ready());
  ASSERT_EQ(platform_.message_boxes.size(), 1u);
  EXPECT_EQ(platform_.message_boxes[0].text,
            FailureMessage(Path(2) + Path(11) + Path(12) + Path(26) + Path(27)));
}

TEST_F(MiniSet, EveryMissingFileOfAnUnknownSetIsListedInOneMessage) {
  ChooseSet(platform_, "Nirgends", "English");
  EXPECT_FALSE(CRessource().Ready());
  ASSERT_EQ(platform_.message_boxes.size(), 1u);
  std::string list;
  for (int i = 0; i < 28; ++i) list += Base() + "Unbekannt\r\n";
  EXPECT_EQ(platform_.message_boxes[0].text, UnloadedFilesMessage(Base() + "Nirgends", list));
}

TEST_F(MiniSet, EmptyDescriptionIsReported) {
  WriteDescription("   ");
  EXPECT_FALSE(CRessource().Ready());
  ASSERT_EQ(platform_.message_boxes.size(), 1u);
  EXPECT_EQ(platform_.message_boxes[0].text,
            MissingDescriptionMessage(Res(app_) + "/Mini/Description.dat"));
}

// Names in IndexComment.ini and the ReportPath setting never lead a read out
// of Res, whatever they hold; each refusal is logged and the set not loaded.
TEST_F(MiniSet, NamesLeadingOutOfResAreNeverRead) {
  ProgressRecorder log;
  // A decoy outside Res that would load fine if it were read.
  const fs::path app(app_.path().string());
  std::ofstream(app / "outside.htm", std::ios::binary)
      << CWinAPICrypt().EncryptString("<p>decoy</p>", kTemplatePassword);
  fs::create_directories(app / "Res" / "Mini" / "links");
  fs::create_symlink(app / "outside.htm", app / "Res" / "Mini" / "links" / "f9.htm");

  const std::string hostile[] = {"..\\outside.htm", "Mini\\..\\..\\outside.htm",
                                 app_.path().string() + "/outside.htm", "C:\\outside.htm",
                                 "Mini\\links\\f9.htm"};
  for (const std::string& name : hostile) {
    SCOPED_TRACE(name);
    log.messages.clear();
    platform_.message_boxes.clear();
    WriteRes(app_, "IndexComment.ini", vb::Replace(ini_, "File9=Mini\\f9.htm", "File9=" + name));
    CRessource res;
    EXPECT_FALSE(res.Ready());
    EXPECT_EQ(res.Projekt(), "");
    ASSERT_FALSE(log.messages.empty());
    EXPECT_EQ(log.messages[0].first, RefusedNameMessage(name, Base()));
    ASSERT_EQ(platform_.message_boxes.size(), 1u);  // the load failure lists it too
  }

  WriteRes(app_, "IndexComment.ini", ini_);
  for (const std::string path : {"..", "../Res/Mini", "Mini/../..", "/tmp", "CON"}) {
    SCOPED_TRACE(path);
    log.messages.clear();
    ChooseSet(platform_, path, "English");
    EXPECT_FALSE(CRessource().Ready());
    ASSERT_EQ(log.messages.size(), 1u);
    EXPECT_EQ(log.messages[0].second, kIconFailure);
    EXPECT_NE(log.messages[0].first.find("'" + path + "'"), std::string::npos);
  }
}

TEST_F(MiniSet, DuplicateKeyIsAFaultOfTheLoadStep) {
  const int64_t before = CErrorHandler::Instance().ReportCount();
  WriteDescription(
      "K\r\n\\&&&A&&& = 1\r\n\\&&&A&&& = 2\r\n\\}\r\n[[English]]\r\n\\&&&L&&& = x\r\n\\}");
  CRessource res;
  EXPECT_FALSE(res.Ready());
  EXPECT_EQ(CErrorHandler::Instance().ReportCount(), before + 1);
  EXPECT_NE(CErrorHandler::Instance().ReportText().find("457"), std::string::npos);
  EXPECT_NE(CErrorHandler::Instance().ReportText().find("GetRessourceDescription"),
            std::string::npos);
}

}  // namespace
}  // namespace folioscope
