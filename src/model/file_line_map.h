// Where a module's code lines stand in its file. The IDE hides the file's
// header and every Attribute line, so code line k is not file line k; the
// map keeps one entry per run of lines that follow each other in the file.
#ifndef FOLIOSCOPE_MODEL_FILE_LINE_MAP_H_
#define FOLIOSCOPE_MODEL_FILE_LINE_MAP_H_

#include <cstdint>
#include <vector>

namespace folioscope {

class FileLineMap {
 public:
  // Records that code line `code_line` is file line `file_line`. Calls come
  // in rising order of both.
  void Add(int32_t code_line, int32_t file_line);

  // The file line of `code_line`; lines past the last one recorded continue
  // its run. 0 for a line below 1 or an empty map.
  int32_t FileLine(int32_t code_line) const;

 private:
  struct Run {
    int32_t first_code_line;
    int32_t shift;  // file line minus code line
  };
  std::vector<Run> runs_;
};

}  // namespace folioscope

#endif  // FOLIOSCOPE_MODEL_FILE_LINE_MAP_H_
