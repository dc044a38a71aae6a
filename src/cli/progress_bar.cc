#include "cli/progress_bar.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <utility>

#include "infra/text_encoding.h"

namespace folioscope {

namespace {

// Terminal columns of UTF-8 text: one per code point.
size_t Columns(const std::string& utf8) {
  size_t n = 0;
  for (unsigned char c : utf8) n += (c & 0xC0) != 0x80;
  return n;
}

// The first `columns` code points of UTF-8 text.
std::string TakeColumns(const std::string& utf8, size_t columns) {
  size_t n = 0;
  for (size_t i = 0; i < utf8.size(); ++i) {
    if ((static_cast<unsigned char>(utf8[i]) & 0xC0) != 0x80 && n++ == columns) {
      return utf8.substr(0, i);
    }
  }
  return utf8;
}

std::string Elapsed(int64_t seconds) {
  char buf[32];
  std::snprintf(buf, sizeof buf, "%lld:%02lld", static_cast<long long>(seconds / 60),
                static_cast<long long>(seconds % 60));
  return buf;
}

}  // namespace

ProgressBar::ProgressBar(std::FILE* out, int width, std::function<bool(int32_t)> message_printed,
                         Clock clock)
    : out_(out),
      width_(std::max(width, 20)),
      message_printed_(std::move(message_printed)),
      clock_(std::move(clock)),
      start_(clock_()) {}

std::string ProgressBar::Render(int width, int32_t current, int32_t total,
                                const std::string& name_utf8, int64_t elapsed_seconds) {
  const std::string count = " " + std::to_string(current) + "/" + std::to_string(total) + " ";
  const std::string time = " " + Elapsed(elapsed_seconds);
  // The last column stays free so that the terminal never wraps the bar.
  const int usable = std::max(width - 1, 10);
  const int bar_cells = std::clamp(usable / 3, 5, 30);
  const int filled =
      total > 0 ? static_cast<int>(int64_t{bar_cells} * std::clamp(current, 0, total) / total) : 0;
  std::string text = "[" + std::string(static_cast<size_t>(filled), '#') +
                     std::string(static_cast<size_t>(bar_cells - filled), '.') + "]" + count;
  const int room = usable - static_cast<int>(Columns(text) + time.size());
  if (room > 0) text += TakeColumns(name_utf8, static_cast<size_t>(room));
  text += time;
  return TakeColumns(text, static_cast<size_t>(usable));
}

void ProgressBar::OnReportStart(int32_t& Count) {
  total_ = Count;
  current_ = 0;
  name_.clear();
  start_ = clock_();
  Draw();
}

void ProgressBar::OnReportWorks(int32_t& CurrentValue, std::string& Description, bool&) {
  current_ = CurrentValue;
  name_ = Cp1252ToUtf8(Description);
  Draw();
}

void ProgressBar::Message(std::string& Desc, int32_t& IconIndex) {
  if (shown_columns_ == 0 || !message_printed_(IconIndex)) return;
  // The console listener printed the message over the bar, starting at the
  // bar's line. Wipe what is left of the bar behind the message's first
  // line, then draw the bar again on the fresh line below.
  std::string text = Cp1252ToUtf8(Desc);
  const size_t lines = 1 + static_cast<size_t>(std::count(text.begin(), text.end(), '\n'));
  const size_t first = Columns(text.substr(0, text.find_first_of("\r\n")));
  if (first < shown_columns_) {
    std::fprintf(out_, "\x1b[%zuA\r", lines);
    if (first > 0) std::fprintf(out_, "\x1b[%zuC", first);
    std::fprintf(out_, "\x1b[K\x1b[%zuB\r", lines);
  }
  shown_columns_ = 0;
  Draw();
}

void ProgressBar::Draw() {
  const auto elapsed = std::chrono::duration_cast<std::chrono::seconds>(clock_() - start_).count();
  const std::string text = Render(width_, current_, total_, name_, elapsed);
  std::fprintf(out_, "\r%s\x1b[K\r", text.c_str());
  std::fflush(out_);
  shown_columns_ = Columns(text);
}

void ProgressBar::Finish() {
  if (shown_columns_ == 0) return;
  std::fputs("\r\x1b[K", out_);
  std::fflush(out_);
  shown_columns_ = 0;
}

int TerminalColumns(int fd) {
  if (!::isatty(fd)) return 0;
  struct winsize ws {};
  if (::ioctl(fd, TIOCGWINSZ, &ws) == 0 && ws.ws_col > 0) return ws.ws_col;
  return 80;
}

}  // namespace folioscope
