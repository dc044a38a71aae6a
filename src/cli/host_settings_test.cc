#include "cli/host_settings.h"

#include <gtest/gtest.h>

#include "cli/host.h"
#include "infra/registry.h"
#include "infra/test_folder.h"

namespace folioscope {
namespace {

TEST(HostSettings, OptionsOverHiveOverDefaultsAndWritesReachOnlyTheHive) {
  TestFolder folder;
  const std::string path = (folder.path() / "settings.reg").string();
  {
    GlobalOptions none;
    std::string error;
    auto store = MakeHostSettings(path, none, &error);
    ASSERT_TRUE(store) << error;
    CRegistry(store.get()).SaveRegWord(kHkeyCurrentUser, kConfigKey, "ShowModulePath", 1);
    CRegistry(store.get()).SaveRegWord(kHkeyCurrentUser, kConfigKey, "LNR", 3);
  }
  GlobalOptions options;
  options.set = "Mine";
  options.options = {"lnr=7"};
  std::string error;
  auto store = MakeHostSettings(path, options, &error);
  ASSERT_TRUE(store) << error;
  CRegistry reg(store.get());
  auto& layered = dynamic_cast<LayeredSettings&>(*store);
  EXPECT_EQ("Mine", reg.ReadRegString(kHkeyCurrentUser, kCurrentReportKey, "ReportPath", ""));
  EXPECT_EQ("Deutsch",
            reg.ReadRegString(kHkeyCurrentUser, kCurrentReportKey, "ReportLanguage", ""));
  EXPECT_EQ(1, reg.ReadRegWord(kHkeyCurrentUser, kConfigKey, "ShowModulePath", 0));
  EXPECT_EQ(7, reg.ReadRegWord(kHkeyCurrentUser, kConfigKey, "LNR", 0));
  EXPECT_EQ(SettingSource::kHive, layered.Source(kHkeyCurrentUser, kConfigKey, "ShowModulePath"));
  // A key known only to the defaults still exists: a missing value gives Default.
  EXPECT_EQ(5, reg.ReadRegWord(kHkeyCurrentUser, kConfigKey, "NoSuchValue", 5));
  EXPECT_EQ(0, reg.ReadRegWord(kHkeyCurrentUser, "Software\\Nowhere", "X", 5));
  // The component's write goes to the hive and wins over the option.
  reg.SaveRegWord(kHkeyCurrentUser, kConfigKey, "LNR", 0);
  EXPECT_EQ(0, reg.ReadRegWord(kHkeyCurrentUser, kConfigKey, "LNR", 9));
  EXPECT_EQ("", CRegistry(&layered.hive())
                    .ReadRegString(kHkeyCurrentUser, kCurrentReportKey, "ReportPath", ""))
      << "options never reach the hive";
}

// What a fresh installation shows: the switches a user finds on, the
// chosen report set; every other switch is off.
TEST(HostSettings, DefaultsOfAFreshHive) {
  TestFolder folder;
  std::string error;
  auto store = MakeHostSettings((folder.path() / "fresh.reg").string(), GlobalOptions(), &error);
  ASSERT_TRUE(store) << error;
  CRegistry reg(store.get());
  const std::pair<const char*, int32_t> words[] = {{"ShowModulePath", 0},
                                                   {"ShowModuleRelativePath", 1},
                                                   {"ShowLOCForModuls", 1},
                                                   {"ShowLOCForProjects", 1},
                                                   {"ShowHelpContextID", 1},
                                                   {"ShowVBInternDescription", 1},
                                                   {"ToolBarPublicValue", 1},
                                                   {"ToolBarFriendValue", 1},
                                                   {"ToolBarPrivateValue", 1},
                                                   {"DelFilesAfterCHMCompiling", 0},
                                                   {"LNR", 0}};
  for (const auto& [name, expected] : words) {
    EXPECT_EQ(expected, reg.ReadRegWord(kHkeyCurrentUser, kConfigKey, name, -1)) << name;
  }
  EXPECT_EQ("Standard", reg.ReadRegString(kHkeyCurrentUser, kCurrentReportKey, "ReportPath", ""));
}

TEST(HostSettings, MalformedOptionsAreUsageErrors) {
  const std::pair<std::string, std::string> cases[] = {{"Bogus=1", "unknown setting"},
                                                       {"LNR=abc", "32-bit whole number"},
                                                       {"LNR=4294967296", "32-bit whole number"},
                                                       {"LNR", "expected NAME=VALUE"}};
  for (const auto& [option, message] : cases) {
    GlobalOptions options;
    options.options = {option};
    std::string error;
    EXPECT_FALSE(MakeHostSettings("/nonexistent/r.reg", options, &error)) << option;
    EXPECT_NE(std::string::npos, error.find(message)) << error;
  }
}

}  // namespace
}  // namespace folioscope
