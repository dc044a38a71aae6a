#include "infra/file_system.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "infra/test_folder.h"
#include "infra/text_encoding.h"
#include "infra/vb_runtime.h"

namespace folioscope {
namespace {

namespace fs = std::filesystem;

TEST(FileHelpers, ExistenceTestsReadAndWrite) {
  TestFolder folder;
  fs::create_directories(folder.path() / "sub");
  folder.Write("empty.txt", "");
  folder.Write("data.bin", std::string("\xE4\x00\xFF", 3));
  CFileSystem files;
  const std::string d = folder.path().string();
  EXPECT_TRUE(files.IsOrdnerVorhanden(d + "/sub"));
  EXPECT_FALSE(files.IsOrdnerVorhanden(d + "/sub/"));
  EXPECT_FALSE(files.IsOrdnerVorhanden(d + "\\sub\\"));
  EXPECT_FALSE(files.IsOrdnerVorhanden(d + "/data.bin"));
  EXPECT_FALSE(files.IsDateiVorhanden(d + "/empty.txt"));  // empty counts as absent
  EXPECT_FALSE(files.IsDateiVorhanden(d + "/sub"));
  EXPECT_TRUE(files.IsDateiVorhanden(d + "/data.bin"));
  EXPECT_TRUE(files.IsDateiVorhanden(d + "/*.bin"));
  EXPECT_FALSE(files.IsDateiVorhanden(d + "/*.htm"));
  EXPECT_EQ(ReadFileText(d + "/data.bin"), std::string("\xE4\x00\xFF", 3));
  EXPECT_EQ(ReadFileText(d + "/empty.txt"), "");
  try {
    ReadFileText(d + "/missing");
    FAIL();
  } catch (const vb::RuntimeError& e) {
    EXPECT_EQ(e.number(), vb::kFileNotFound);
  }
  WriteTextFile(d + "/page.htm", "a", false);
  WriteTextFile(d + "/page.htm", "b", true);
  EXPECT_EQ(ReadFileText(d + "/page.htm"), "a\r\nb\r\n");
  WriteTextFile(d + "/page.htm", "c", false);
  EXPECT_EQ(ReadFileText(d + "/page.htm"), "c\r\n");
  try {
    WriteTextFile(d + "/nofolder/page.htm", "x", false);
    FAIL();
  } catch (const vb::RuntimeError& e) {
    EXPECT_EQ(e.number(), vb::kPathNotFound);
  }
}

TEST(TextEncoding, Windows1252RoundTrip) {
  std::string all;
  for (int b = 0; b < 256; ++b) all += static_cast<char>(b);
  EXPECT_EQ(Utf8ToCp1252(Cp1252ToUtf8(all)), all);
  EXPECT_EQ(Cp1252ToUtf8("\x80\xFC"), "\xE2\x82\xAC\xC3\xBC");
  struct Case {
    const char* utf8;
    const char* cp1252;
    uint32_t unrepresentable;  // first code point without a byte
    bool lossless;             // IsUtf8OfCp1252Text
  } cases[] = {
      {"Z\xC3\xA4hle \xE2\x80\x93 \xE2\x82\xAC", "Z\xE4hle \x96 \x80", 0, true},
      {"\xE2\x98\x83 \xE6\x97\xA5", "? ?", 0x2603, false},
      {"\xF0\x9F\x98\x80", "?", 0x1F600, false},
      {"raw\xFC", "raw\xFC", 0, false},  // not UTF-8: the byte is kept
      {"", "", 0, true},
  };
  for (const Case& c : cases) {
    uint32_t unrepresentable = 1;
    EXPECT_EQ(Utf8ToCp1252(c.utf8, &unrepresentable), c.cp1252) << c.utf8;
    EXPECT_EQ(unrepresentable, c.unrepresentable) << c.utf8;
    EXPECT_EQ(IsUtf8OfCp1252Text(c.utf8), c.lossless) << c.utf8;
  }
  EXPECT_EQ(Utf8OfCodePoint(0x1F600), "\xF0\x9F\x98\x80");
}

}  // namespace
}  // namespace folioscope
