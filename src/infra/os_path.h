// Where the component's paths meet the file system.
//
// The component's paths and names are Windows-1252 bytes, as on Windows,
// where the ANSI file functions take them unchanged. A POSIX file system
// holds names as UTF-8 (what a Git checkout, an unzip with a UTF-8 locale
// and every file manager make), so there each path is converted here, and
// only here, on its way to the OS, and each name read from a folder listing
// on its way back. Page contents never pass through here: they stay
// Windows-1252 bytes.
//
// A name whose bytes are not UTF-8 on disk (a Windows-1252 byte, as an old
// ZIP or Samba share leaves it) is still found: a part of the path that
// does not exist in its UTF-8 form but does exist with its raw bytes is
// taken as it stands.
#ifndef FOLIOSCOPE_INFRA_OS_PATH_H_
#define FOLIOSCOPE_INFRA_OS_PATH_H_

#include <string>
#include <string_view>
#include <vector>

namespace folioscope {

// The bytes the OS gets for a component path (either separator). On POSIX
// backslashes become '/' and Windows-1252 becomes UTF-8, part by part, except
// for parts that exist on disk only by their raw bytes. A part that does not
// exist yet (a page about to be written) gets its UTF-8 form.
std::string OsPath(std::string_view path);

// A name or path as the OS gave it, in the component's Windows-1252 form:
// each part that is UTF-8 of Windows-1252 text is converted, any other part
// (not UTF-8, or holding a character Windows-1252 lacks) keeps its bytes, so
// that OsPath() leads back to the same entry.
std::string PathFromOs(std::string_view os_path);

// One entry of a folder listing.
struct FolderEntry {
  std::string name;     // Windows-1252, as PathFromOs() gives it
  std::string os_path;  // the entry's path for the OS
  bool is_folder = false;
};

// The entries of `folder` (a component path), without "." and "..", in the
// order the file system gives them. Empty when the folder cannot be read.
std::vector<FolderEntry> ListFolder(const std::string& folder);

}  // namespace folioscope

#endif  // FOLIOSCOPE_INFRA_OS_PATH_H_
