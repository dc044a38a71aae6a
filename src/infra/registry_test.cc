#include "infra/registry.h"

#include <gtest/gtest.h>

#include "infra/recording_platform.h"

namespace folioscope {
namespace {

TEST(CRegistryTest, ReadDefaultsAndAsymmetries) {
  RecordingPlatform platform;
  ScopedPlatform scoped(&platform);
  CRegistry reg;
  const uint32_t cu = kHkeyCurrentUser;
  EXPECT_EQ(reg.ReadRegWord(cu, kConfigKey, "LNR", 5), 0);  // missing key: 0, not Default
  ASSERT_TRUE(reg.CreateRegKey(cu, kConfigKey));
  EXPECT_EQ(reg.ReadRegWord(cu, kConfigKey, "LNR", 5), 5);  // missing value: Default
  reg.SaveRegWord(cu, kConfigKey, "LNR", -1);
  EXPECT_EQ(reg.ReadRegWord(cu, kConfigKey, "lnr", 5), -1);
  reg.SaveRegString(cu, kConfigKey, "Title", "");
  EXPECT_EQ(reg.ReadRegString(cu, kConfigKey, "Title", "dflt"), "dflt");  // stored empty
  platform.registry.SetValue(cu, kConfigKey, "Nul", RegValue{kRegSz, std::string("ab\0cd", 5)});
  EXPECT_EQ(reg.ReadRegString(cu, kConfigKey, "Nul", ""), "ab");
  platform.registry.SetValue(cu, kConfigKey, "Exp", RegValue{kRegExpandSz, "x"});
  EXPECT_EQ(reg.ReadRegString(cu, kConfigKey, "Exp", ""), "");  // wrong type
  EXPECT_EQ(reg.ReadRegWord(cu, kConfigKey, "Title", 7), 0);    // a string read as word
  reg.SaveRegString(cu, kConfigKey, "Bin", "raw");
  EXPECT_EQ(platform.registry.QueryValue(cu, kConfigKey, "Bin")->data, "raw");  // no NUL
}

TEST(CRegistryTest, EnumerationsAreOneBasedAndPump) {
  RecordingPlatform platform;
  ScopedPlatform scoped(&platform);
  CRegistry reg;
  const uint32_t cu = kHkeyCurrentUser;
  reg.CreateRegKey(cu, kCurrentReportKey);
  reg.CreateRegKey(cu, std::string(kConfigKey) + "\\Zweiter");
  reg.SaveRegWord(cu, kConfigKey, "W", 1);
  reg.SaveRegString(cu, kConfigKey, "S", "s");
  platform.registry.SetValue(cu, kConfigKey, "B", RegValue{kRegBinary, "\x01"});
  platform.registry.SetValue(cu, kConfigKey, "E", RegValue{kRegExpandSz, "%x%"});
  EXPECT_EQ(reg.SubKeyCount(cu, kConfigKey), 2);
  EXPECT_EQ(reg.SubKeyName(cu, kConfigKey, 0), "");
  EXPECT_EQ(reg.SubKeyName(cu, kConfigKey, 2), "Zweiter");
  EXPECT_EQ(reg.SubKeyName(cu, kConfigKey, 3), "");
  EXPECT_EQ(reg.SubValueCount(cu, kConfigKey), 4);
  EXPECT_EQ(reg.SubValueName(cu, kConfigKey, 2), "S");
  const char* types[] = {"WRD", "UNI", "BIN", ""};
  for (int i = 0; i < 4; ++i) EXPECT_EQ(reg.SubValueType(cu, kConfigKey, i + 1), types[i]);
  EXPECT_EQ(reg.SubValueType(cu, kConfigKey, 5), "");
  EXPECT_EQ(reg.SubKeyCount(cu, "Software\\Fehlt"), 0);
  EXPECT_GT(platform.pump_count, 0);
}

}  // namespace
}  // namespace folioscope
