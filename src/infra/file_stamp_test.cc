#include "infra/file_stamp.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "infra/test_folder.h"

namespace folioscope {
namespace {

namespace fs = std::filesystem;

// A cache keyed by the stamp must see every way a file is replaced: the
// same name rewritten in place, replaced by another file of the same size
// (a new inode), or removed; and must not see a mere second look.
TEST(FileStampTest, TellsEveryReplacementApart) {
  TestFolder folder;
  const std::string path = (folder.path() / "keywords.dat").string();
  EXPECT_FALSE(StampOfFile(path).exists);
  EXPECT_EQ(StampOfFile(path), FileStamp());

  folder.Write("keywords.dat", "Dim\r\n");
  const FileStamp first = StampOfFile(path);
  EXPECT_TRUE(first.exists);
  EXPECT_EQ(first.size, 5);
  EXPECT_EQ(StampOfFile(path), first);

  folder.Write("keywords.dat", "Dim\r\nSub\r\n");
  const FileStamp grown = StampOfFile(path);
  EXPECT_NE(grown, first);

  folder.Write("other.dat", "Set\r\nEnd\r\n");
  fs::rename(folder.path() / "other.dat", path);
  const FileStamp replaced = StampOfFile(path);
  EXPECT_EQ(replaced.size, grown.size);
  EXPECT_NE(replaced, grown);

  fs::remove(path);
  EXPECT_FALSE(StampOfFile(path).exists);
}

}  // namespace
}  // namespace folioscope
