#include "infra/os_path.h"

#ifdef _WIN32
#include <filesystem>
#include <system_error>
#else
#include <dirent.h>
#include <sys/stat.h>
#endif

#include "infra/file_system.h"
#include "infra/text_encoding.h"

namespace folioscope {

#ifdef _WIN32

// The ANSI functions take Windows-1252 paths as they are.
std::string OsPath(std::string_view path) { return NativePath(path); }

std::string PathFromOs(std::string_view os_path) { return std::string(os_path); }

std::vector<FolderEntry> ListFolder(const std::string& folder) {
  namespace fs = std::filesystem;
  std::vector<FolderEntry> entries;
  std::error_code ec;
  for (fs::directory_iterator it(folder, ec), end; !ec && it != end; it.increment(ec)) {
    std::error_code kind_ec;
    entries.push_back(
        {it->path().filename().string(), it->path().string(), it->is_directory(kind_ec)});
  }
  return entries;
}

#else

namespace {

bool HasHighByte(std::string_view s) {
  for (unsigned char c : s)
    if (c >= 0x80) return true;
  return false;
}

bool EntryExists(const std::string& os_path) {
  struct stat st {};
  return ::lstat(os_path.c_str(), &st) == 0;
}

// The on-disk form of one path part below `os_prefix`: UTF-8, unless only
// the raw bytes exist.
std::string PartOnDisk(const std::string& os_prefix, std::string_view part) {
  if (!HasHighByte(part)) return std::string(part);
  std::string utf8 = Cp1252ToUtf8(part);
  if (EntryExists(os_prefix + utf8) || !EntryExists(os_prefix + std::string(part))) return utf8;
  return std::string(part);
}

// Calls `convert` on each '/'-separated part of `path` and joins the results.
template <typename Convert>
std::string MapParts(std::string_view path, Convert convert) {
  std::string out;
  size_t from = 0;
  while (true) {
    const size_t slash = path.find('/', from);
    const size_t end = slash == std::string_view::npos ? path.size() : slash;
    out += convert(out, path.substr(from, end - from));
    if (slash == std::string_view::npos) return out;
    out += '/';
    from = slash + 1;
  }
}

}  // namespace

std::string OsPath(std::string_view path) {
  std::string native = NativePath(path);
  if (!HasHighByte(native)) return native;
  // Most paths exist in their UTF-8 form or are new: one look settles them.
  std::string whole = Cp1252ToUtf8(native);
  if (EntryExists(whole)) return whole;
  return MapParts(native, PartOnDisk);
}

std::string PathFromOs(std::string_view os_path) {
  if (!HasHighByte(os_path)) return std::string(os_path);
  return MapParts(os_path, [](const std::string&, std::string_view part) {
    return IsUtf8OfCp1252Text(part) ? Utf8ToCp1252(part) : std::string(part);
  });
}

std::vector<FolderEntry> ListFolder(const std::string& folder) {
  std::vector<FolderEntry> entries;
  std::string os_folder = OsPath(folder.empty() ? std::string(".") : folder);
  DIR* dir = ::opendir(os_folder.c_str());
  if (dir == nullptr) return entries;
  if (os_folder.back() != '/') os_folder += '/';
  while (const dirent* d = ::readdir(dir)) {
    const std::string name = d->d_name;
    if (name == "." || name == "..") continue;
    FolderEntry entry{PathFromOs(name), os_folder + name, d->d_type == DT_DIR};
    // The listing's own type saves a look per entry; links and file systems
    // that give no type are looked at.
    if (d->d_type == DT_UNKNOWN || d->d_type == DT_LNK) {
      struct stat st {};
      entry.is_folder = ::stat(entry.os_path.c_str(), &st) == 0 && S_ISDIR(st.st_mode);
    }
    entries.push_back(std::move(entry));
  }
  ::closedir(dir);
  return entries;
}

#endif

}  // namespace folioscope
