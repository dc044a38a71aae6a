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
  EXPECT_EQ(Utf8ToCp1252("\xE2\x98\x83"), "?");  // no Windows-1252 byte
}

}  // namespace
}  // namespace folioscope
