#include "infra/os_path.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "infra/file_system.h"
#include "infra/test_folder.h"

namespace folioscope {
namespace {

namespace fs = std::filesystem;

// On disk (bytes as the file system holds them): a folder and a file named
// in UTF-8, a file named with a raw Windows-1252 byte, a name that exists in
// both forms, and one with characters Windows-1252 lacks.
const char* const kOnDisk[] = {
    "Pr\xC3\274fung/frmPr\xC3\274fung.frm", "raw\xFC.bas", "both\xC3\xA4", "both\xE4",
    "\xE6\x97\xA5\xE6\x9C\xAC.txt",         "plain.txt",
};

TEST(OsPath, ComponentPathsFindTheirFilesAndNamesComeBack) {
  TestFolder folder;
  for (const char* name : kOnDisk) folder.Write(name, "x");
  const std::string base = folder.path().string() + "/";
  struct Case {
    const char* component;  // Windows-1252, relative to the folder
    const char* os;         // what the file system is asked for
  } cases[] = {
      {"Pr\374fung/frmPr\374fung.frm", "Pr\xC3\274fung/frmPr\xC3\274fung.frm"},
      {"Pr\374fung\\neu\x80.htm", "Pr\xC3\274fung/neu\xE2\x82\xAC.htm"},  // new file
      {"raw\xFC.bas", "raw\xFC.bas"},                                     // found by its raw bytes
      {"both\xE4", "both\xC3\xA4"},  // UTF-8 wins when both exist
      {"\xE6\x97\xA5\xE6\x9C\xAC.txt", "\xE6\x97\xA5\xE6\x9C\xAC.txt"},  // as listed
      {"plain.txt", "plain.txt"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(OsPath(base + c.component), base + c.os) << c.component;
  }

  std::vector<std::string> names;
  for (const FolderEntry& e : ListFolder(base)) {
    names.push_back(e.name + (e.is_folder ? "/" : ""));
    // Every listed name leads back to its entry, but for the two that share
    // one Windows-1252 name: both lead to the UTF-8 one.
    if (e.name != "both\xE4") {
      EXPECT_EQ(OsPath(base + e.name), e.os_path) << e.name;
    }
  }
  std::sort(names.begin(), names.end());
  const std::vector<std::string> expected = {"Pr\374fung/", "both\xE4",
                                             "both\xE4",    "plain.txt",
                                             "raw\xFC.bas", "\xE6\x97\xA5\xE6\x9C\xAC.txt"};
  EXPECT_EQ(names, expected);
  EXPECT_EQ(PathFromOs("/home/j\xC3\xB6rg/\xFC/\xE6\x97\xA5"), "/home/j\xF6rg/\xFC/\xE6\x97\xA5");
}

TEST(OsPath, FileHelpersGoThroughTheConversion) {
  TestFolder folder;
  for (const char* name : kOnDisk) folder.Write(name, "x");
  const std::string d = folder.path().string() + "/Pr\374fung";
  WriteTextFile(d + "/Seite\xE4.htm", "\xE4", false);
  EXPECT_TRUE(fs::exists(folder.path() / "Pr\xC3\274fung/Seite\xC3\xA4.htm"));
  EXPECT_EQ(ReadFileText(d + "/Seite\xE4.htm"), "\xE4\r\n");  // the bytes stay as written
  CFileSystem files;
  EXPECT_TRUE(files.IsOrdnerVorhanden(d));
  EXPECT_TRUE(files.IsDateiVorhanden(d + "/FRMPR\xDC*.FRM"));  // wildcards fold umlauts too
  EXPECT_TRUE(files.IsDateiVorhanden(folder.path().string() + "/raw\xFC.bas"));
  EXPECT_TRUE(IsPlainFile(d + "/frmPr\374fung.frm"));
  EXPECT_TRUE(IsSameFile(d + "/frmPr\374fung.frm", d + "/../Pr\374fung/frmPr\374fung.frm"));
  CopyFileOver(d + "/Seite\xE4.htm", d + "/Kopie\xF6.htm");
  EXPECT_TRUE(fs::exists(folder.path() / "Pr\xC3\274fung/Kopie\xC3\xB6.htm"));
}

}  // namespace
}  // namespace folioscope
