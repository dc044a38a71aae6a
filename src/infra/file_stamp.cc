#include "infra/file_stamp.h"

#include <sys/stat.h>

#include "infra/os_path.h"

namespace folioscope {

FileStamp StampOfFile(const std::string& path) {
  FileStamp stamp;
  struct stat st {};
  if (::stat(OsPath(path).c_str(), &st) != 0) return stamp;
  stamp.exists = true;
  stamp.folder = (st.st_mode & S_IFMT) == S_IFDIR;
  stamp.device = static_cast<uint64_t>(st.st_dev);
  stamp.inode = static_cast<uint64_t>(st.st_ino);
  stamp.size = static_cast<int64_t>(st.st_size);
#ifdef _WIN32
  stamp.modified_seconds = static_cast<int64_t>(st.st_mtime);
  stamp.changed_seconds = static_cast<int64_t>(st.st_ctime);
#else
  stamp.modified_seconds = static_cast<int64_t>(st.st_mtim.tv_sec);
  stamp.modified_nanoseconds = static_cast<int64_t>(st.st_mtim.tv_nsec);
  stamp.changed_seconds = static_cast<int64_t>(st.st_ctim.tv_sec);
  stamp.changed_nanoseconds = static_cast<int64_t>(st.st_ctim.tv_nsec);
#endif
  return stamp;
}

}  // namespace folioscope
