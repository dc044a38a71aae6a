#include "reportsets/profile_ini.h"

#include <string>

#include <gtest/gtest.h>

#include "infra/test_progress.h"
#include "reportsets/test_support.h"

namespace folioscope {
namespace {

class ProfileIni : public ::testing::Test {
 protected:
  void SetUp() override {
    WriteRes(app_, "t.ini",
             "; comment line\r\n"
             "[First]\r\n"
             "Name = Standard  \r\n"
             "Quoted=\"  with blanks  \"\r\n"
             "Single='x'\r\n"
             "Half=\"open\r\n"
             "Path=Std\\Sub\r\n"
             "\r\n"
             "  [ second ]  \n"
             "KEY=upper\n");
    file_ = Res(app_) + "/t.ini";
  }
  // The value as the report-set code reads it: up to the first NUL.
  std::string Get(const std::string& section, const std::string& key, int32_t size = 200,
                  int32_t* returned = nullptr) {
    std::string buffer(static_cast<size_t>(size), ' ');
    const int32_t n = GetPrivateProfileStringA(&section, &key, "Unbekannt", buffer, size, file_);
    if (returned) *returned = n;
    return buffer.substr(0, buffer.find('\0'));
  }
  TestFolder app_;
  std::string file_;
};

TEST_F(ProfileIni, ValuesAreTrimmedUnquotedAndFoundWithoutRegardToCase) {
  EXPECT_EQ(Get("First", "Name"), "Standard");
  EXPECT_EQ(Get("FIRST", "name"), "Standard");
  EXPECT_EQ(Get("First", "Quoted"), "  with blanks  ");
  EXPECT_EQ(Get("First", "Single"), "x");
  EXPECT_EQ(Get("First", "Half"), "\"open");
  EXPECT_EQ(Get("First", "Path"), "Std\\Sub");
  EXPECT_EQ(Get("Second", "key"), "upper");
}

TEST_F(ProfileIni, MissingSectionKeyOrFileGiveTheDefault) {
  int32_t n = 0;
  EXPECT_EQ(Get("First", "Nope", 200, &n), "Unbekannt");
  EXPECT_EQ(n, 9);
  EXPECT_EQ(Get("Third", "Name"), "Unbekannt");
  file_ = Res(app_) + "/missing.ini";
  EXPECT_EQ(Get("First", "Name"), "Unbekannt");
}

TEST_F(ProfileIni, ValueWritesNulAndKeepsTheRestOfTheBuffer) {
  const std::string section = "First", key = "Name";
  std::string buffer(20, ' ');
  EXPECT_EQ(GetPrivateProfileStringA(&section, &key, "", buffer, 20, file_), 8);
  EXPECT_EQ(buffer, std::string("Standard\0", 9) + std::string(11, ' '));
  // Too small: cut to size - 1 characters and a NUL; nothing beyond size.
  std::string small(10, '#');
  EXPECT_EQ(GetPrivateProfileStringA(&section, &key, "", small, 5, file_), 4);
  EXPECT_EQ(small, std::string("Stan\0#####", 10));
}

TEST_F(ProfileIni, SectionListEndsInTwoNulsAndIsCutToFit) {
  std::string buffer(30, ' ');
  EXPECT_EQ(GetPrivateProfileStringA(nullptr, nullptr, "Unbekannt", buffer, 30, file_), 13);
  EXPECT_EQ(buffer.substr(0, 15), std::string("First\0second\0\0", 14) + " ");
  // Cut: size - 2 characters of the list, then two NULs.
  std::string cut(12, ' ');
  EXPECT_EQ(GetPrivateProfileStringA(nullptr, nullptr, "", cut, 10, file_), 8);
  EXPECT_EQ(cut, std::string("First\0se\0\0  ", 12));
  // The key names of one section, in the same form.
  const std::string section = "second";
  std::string keys(10, ' ');
  EXPECT_EQ(GetPrivateProfileStringA(&section, nullptr, "", keys, 10, file_), 4);
  EXPECT_EQ(keys.substr(0, 6), std::string("KEY\0\0 ", 6));
}

}  // namespace
}  // namespace folioscope
