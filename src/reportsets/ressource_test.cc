#include "reportsets/ressource.h"

#include <filesystem>
#include <fstream>
#include <map>
#include <string>

#include <gtest/gtest.h>

#include "infra/platform.h"
#include "infra/recording_platform.h"
#include "infra/registry.h"
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

}  // namespace
}  // namespace folioscope
