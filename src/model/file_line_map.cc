#include "model/file_line_map.h"

#include <algorithm>

namespace folioscope {

void FileLineMap::Add(int32_t code_line, int32_t file_line) {
  const int32_t shift = file_line - code_line;
  if (runs_.empty() || runs_.back().shift != shift) runs_.push_back({code_line, shift});
}

int32_t FileLineMap::FileLine(int32_t code_line) const {
  if (code_line < 1 || runs_.empty()) return 0;
  auto after =
      std::upper_bound(runs_.begin(), runs_.end(), code_line,
                       [](int32_t line, const Run& r) { return line < r.first_code_line; });
  if (after == runs_.begin()) return code_line + runs_.front().shift;
  return code_line + std::prev(after)->shift;
}

}  // namespace folioscope
