#include "infra/page_writer.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "infra/file_system.h"
#include "infra/test_folder.h"

namespace folioscope {
namespace {

namespace fs = std::filesystem;

class PageWriterTest : public ::testing::Test {
 protected:
  std::string Path(const std::string& name) const { return (dir_.path() / name).string(); }

  TestFolder dir_;
};

// Pages land in the order they were handed over, so a replace followed by
// appends to the same file gives what direct writes would, even when the
// limit lets only one page wait at a time.
TEST_F(PageWriterTest, WritesInOrderWithTheBytesOfADirectWrite) {
  for (size_t limit : {size_t{1}, PageWriter::kDefaultMaxPendingBytes}) {
    PageWriter writer(limit);
    const std::string big(100000, '\xFC');
    writer.Write(Path("a.htm"), "first", false, "P");
    writer.Write(Path("a.htm"), "second", true, "P");
    writer.Write(Path("b.htm"), big, false, "P");
    writer.Write(Path("a.htm"), "third", true, "P");
    for (int i = 0; i < 200; ++i) writer.Write(Path("n" + std::to_string(i)), "x", false, "P");
    EXPECT_TRUE(writer.Finish().empty());
    EXPECT_EQ(ReadFileText(Path("a.htm")), "first\r\nsecond\r\nthird\r\n");
    EXPECT_EQ(ReadFileText(Path("b.htm")), big + "\r\n");
    EXPECT_EQ(ReadFileText(Path("n199")), "x\r\n");
  }
}

// A page that cannot be written comes back with the error a direct write
// raises and the procedure that handed it over; the pages after it are
// still written, and each failure is given back once.
TEST_F(PageWriterTest, FailuresComeBackOnceWithErrorAndProcedure) {
  fs::create_directories(dir_.path() / "taken.htm");  // a folder where the page should go
  PageWriter writer;
  writer.Write(Path("nofolder/x.htm"), "x", false, "WriteMemberContentSite");
  writer.Write(Path("taken.htm"), "x", true, "WriteModulContentSite");
  writer.Write(Path("ok.htm"), "ok", false, "WriteMemberContentSite");
  std::vector<PageWriteFailure> failures = writer.Finish();
  ASSERT_EQ(failures.size(), 2u);
  EXPECT_EQ(failures[0].path, Path("nofolder/x.htm"));
  EXPECT_EQ(failures[0].procedure, "WriteMemberContentSite");
  EXPECT_EQ(failures[0].error.number(), vb::kPathNotFound);
  EXPECT_FALSE(failures[0].append);
  EXPECT_EQ(failures[1].procedure, "WriteModulContentSite");
  EXPECT_EQ(failures[1].error.number(), vb::kPathFileAccessError);
  EXPECT_TRUE(failures[1].append);
  EXPECT_EQ(ReadFileText(Path("ok.htm")), "ok\r\n");
  EXPECT_TRUE(writer.TakeFailures().empty());
  EXPECT_TRUE(writer.Finish().empty());
}

}  // namespace
}  // namespace folioscope
