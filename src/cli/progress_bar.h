// A one-line progress bar on a terminal, driven by the progress channel's
// OnReportStart / OnReportWorks events: a bar, the step count, the name of
// the module being written and the elapsed time, redrawn in place.
//
// The host's console listener prints channel messages as lines on the same
// terminal; when one arrives while the bar is shown, the bar's leftovers on
// the message's line are wiped and the bar is drawn again below it. Finish()
// clears the bar. Writes go to the FILE given at construction (stderr).
#ifndef FOLIOSCOPE_CLI_PROGRESS_BAR_H_
#define FOLIOSCOPE_CLI_PROGRESS_BAR_H_

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <string>

#include "infra/fs_communicator.h"

namespace folioscope {

class ProgressBar : public CFSCommunicatorEvents {
 public:
  using Clock = std::function<std::chrono::steady_clock::time_point()>;

  // `width`: terminal columns. `message_printed` tells whether the console
  // listener printed a message with this icon (it drops some when quiet).
  ProgressBar(std::FILE* out, int width, std::function<bool(int32_t)> message_printed,
              Clock clock = std::chrono::steady_clock::now);

  void Message(std::string& Desc, int32_t& IconIndex) override;
  void OnReportStart(int32_t& Count) override;
  void OnReportWorks(int32_t& CurrentValue, std::string& Description, bool& StdPraefix) override;

  // Clears the bar (no-op when none is shown).
  void Finish();

  // The bar's text for a state (no control sequences); exposed for tests.
  static std::string Render(int width, int32_t current, int32_t total, const std::string& name_utf8,
                            int64_t elapsed_seconds);

 private:
  void Draw();

  std::FILE* out_;
  int width_;
  std::function<bool(int32_t)> message_printed_;
  Clock clock_;
  std::chrono::steady_clock::time_point start_;
  int32_t total_ = 0;
  int32_t current_ = 0;
  std::string name_;          // UTF-8
  size_t shown_columns_ = 0;  // columns of the bar on screen, 0 when hidden
};

// Columns of the terminal behind `fd`, or 0 when it is not a terminal.
int TerminalColumns(int fd);

}  // namespace folioscope

#endif  // FOLIOSCOPE_CLI_PROGRESS_BAR_H_
