#include "cli/progress_bar.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

namespace folioscope {
namespace {

// Everything the bar writes, through a memory stream.
class Capture {
 public:
  Capture() : file_(open_memstream(&data_, &size_)) {}
  ~Capture() {
    std::fclose(file_);
    std::free(data_);
  }
  std::FILE* file() { return file_; }
  std::string Text() {
    std::fflush(file_);
    return std::string(data_, size_);
  }

 private:
  char* data_ = nullptr;
  size_t size_ = 0;
  std::FILE* file_;
};

TEST(ProgressBarTest, RenderFitsTheWidthAndShowsStepNameAndTime) {
  struct Case {
    int width;
    int32_t current, total;
    std::string name;
    int64_t seconds;
    std::string text;
  };
  const Case cases[] = {
      {40, 0, 4, "", 0, "[.............] 0/4  0:00"},
      {40, 2, 4, "modKasse", 65, "[######.......] 2/4 modKasse 1:05"},
      {40, 4, 4, "CBon", 3600, "[#############] 4/4 CBon 60:00"},
      {40, 9, 4, "CBon", 1, "[#############] 9/4 CBon 0:01"},  // never overfills
      {30, 1, 2, "EinSehrLangerModulname", 5, "[####.....] 1/2 EinSehrL 0:05"},
      {30, 1, 2,
       "Gr\xC3\xBC\xC3\x9F"
       "e",
       5,
       "[####.....] 1/2 Gr\xC3\xBC\xC3\x9F"
       "e 0:05"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    const std::string text = ProgressBar::Render(c.width, c.current, c.total, c.name, c.seconds);
    EXPECT_EQ(text, c.text);
  }
}

TEST(ProgressBarTest, RedrawsInPlaceRestoresAfterMessagesAndClearsAtTheEnd) {
  Capture out;
  std::chrono::steady_clock::time_point now{};
  ProgressBar bar(
      out.file(), 40, [](int32_t icon) { return icon != 1; }, [&] { return now; });
  int32_t total = 3, step = 1;
  std::string name = "modA";
  bool praefix = true;
  bar.OnReportStart(total);
  now += std::chrono::seconds(2);
  bar.OnReportWorks(step, name, praefix);
  const std::string drawn = out.Text();
  EXPECT_EQ(drawn,
            "\r[.............] 0/3  0:00\x1b[K\r"
            "\r[####.........] 1/3 modA 0:02\x1b[K\r");

  // A dropped message changes nothing; a printed one shorter than the bar
  // gets the bar's rest wiped on its line before the bar comes back.
  std::string quiet = "leise";
  int32_t progress_icon = 1;
  bar.Message(quiet, progress_icon);
  EXPECT_EQ(out.Text(), drawn);
  std::string text = "kurz";
  int32_t failure_icon = 3;
  bar.Message(text, failure_icon);
  EXPECT_EQ(out.Text().substr(drawn.size()),
            "\x1b[1A\r\x1b[4C\x1b[K\x1b[1B\r"
            "\r[####.........] 1/3 modA 0:02\x1b[K\r");

  const size_t before_end = out.Text().size();
  bar.Finish();
  bar.Finish();
  EXPECT_EQ(out.Text().substr(before_end), "\r\x1b[K");
}

}  // namespace
}  // namespace folioscope
