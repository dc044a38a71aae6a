// FileStamp: what identifies one state of a file on disk, so that a cache
// of a file's parsed contents can tell whether the file changed since it
// was read (the settings hive, the formatter's keyword list).
//
// Two stamps are equal when the file is the same file (device and inode)
// with the same size and the same modification and status-change times.
// The Windows C runtime keeps those times in whole seconds only; a change
// within the same second is still seen there when it changes the size.
#ifndef FOLIOSCOPE_INFRA_FILE_STAMP_H_
#define FOLIOSCOPE_INFRA_FILE_STAMP_H_

#include <cstdint>
#include <string>

namespace folioscope {

struct FileStamp {
  bool exists = false;
  bool folder = false;
  uint64_t device = 0;
  uint64_t inode = 0;
  int64_t size = 0;
  int64_t modified_seconds = 0;
  int64_t modified_nanoseconds = 0;
  int64_t changed_seconds = 0;
  int64_t changed_nanoseconds = 0;

  bool operator==(const FileStamp&) const = default;
};

// The stamp of the file at `path` (a name as the component holds it, see
// os_path.h); the stamp of no file (exists false) when it cannot be read.
FileStamp StampOfFile(const std::string& path);

}  // namespace folioscope

#endif  // FOLIOSCOPE_INFRA_FILE_STAMP_H_
