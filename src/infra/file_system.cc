#include "infra/file_system.h"

#include <sys/stat.h>
#ifdef _WIN32
#include <io.h>
#include <windows.h>
#else
#include <fcntl.h>
#include <fnmatch.h>
#include <sys/uio.h>
#include <unistd.h>
#endif

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "infra/os_path.h"
#include "infra/vb_runtime.h"

namespace folioscope {

namespace fs = std::filesystem;

std::string NativePath(std::string_view path) {
  std::string p(path);
#ifndef _WIN32
  std::replace(p.begin(), p.end(), '\\', '/');
#endif
  return p;
}

std::string JoinPath(std::string_view folder, std::string_view name) {
  std::string p(folder);
  if (!p.empty() && p.back() != kPathSeparator && p.back() != '\\' && p.back() != '/')
    p += kPathSeparator;
  p.append(name);
  return p;
}

namespace {

// What an existence test learns about the first entry matching a path.
struct FirstEntry {
  bool found = false;
  bool folder = false;
  uint32_t size_low = 0;  // low 32 bits of the size, as FindFirstFile gives them
};

#ifdef _WIN32

// FindFirstFileA does the matching itself: wildcards in the last part, the
// first entry in the folder's own order.
FirstEntry FirstMatch(const std::string& path) {
  FirstEntry entry;
  if (path.empty() || path.back() == '\\' || path.back() == '/') return entry;
  WIN32_FIND_DATAA data;
  HANDLE find = ::FindFirstFileA(path.c_str(), &data);
  if (find == INVALID_HANDLE_VALUE) return entry;
  ::FindClose(find);
  entry.found = true;
  entry.folder = (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
  entry.size_low = data.nFileSizeLow;
  return entry;
}

#else

bool HasWildcard(std::string_view s) { return s.find_first_of("*?") != std::string_view::npos; }

FirstEntry EntryOf(const std::string& os_path) {
  FirstEntry entry;
  struct stat st {};
  if (::stat(os_path.c_str(), &st) != 0) return entry;
  entry.found = true;
  entry.folder = S_ISDIR(st.st_mode);
  entry.size_low = static_cast<uint32_t>(static_cast<uint64_t>(st.st_size) & 0xFFFFFFFFu);
  return entry;
}

// FindFirstFile's first match: the path itself, or the first directory entry
// (in name order, for a stable answer) that matches a wildcard last part,
// without case as on Windows.
FirstEntry FirstMatch(const std::string& raw) {
  if (raw.empty()) return {};
  std::string path = NativePath(raw);
  if (path.back() == '/' || raw.back() == '\\') return {};
  size_t slash = path.rfind('/');
  std::string last = slash == std::string::npos ? path : path.substr(slash + 1);
  if (!HasWildcard(last)) return EntryOf(OsPath(path));
  std::string folder = slash == std::string::npos ? "." : path.substr(0, slash + 1);
  const std::string pattern = vb::LCase(last);
  std::vector<std::pair<std::string, std::string> > matches;  // name, OS path
  for (FolderEntry& entry : ListFolder(folder)) {
    if (fnmatch(pattern.c_str(), vb::LCase(entry.name).c_str(), 0) == 0)
      matches.emplace_back(std::move(entry.name), std::move(entry.os_path));
  }
  if (matches.empty()) return {};
  std::sort(matches.begin(), matches.end());
  return EntryOf(matches.front().second);
}

#endif

}  // namespace

bool CFileSystem::IsOrdnerVorhanden(const std::string& path) const {
  FirstEntry entry = FirstMatch(path);
  return entry.found && entry.folder;
}

bool CFileSystem::IsDateiVorhanden(const std::string& path) const {
  FirstEntry entry = FirstMatch(path);
  return entry.found && !entry.folder && entry.size_low != 0;
}

bool PathExists(const std::string& path) {
  std::error_code ec;
  return fs::exists(fs::symlink_status(OsPath(path), ec));
}

bool IsPlainFile(const std::string& path) {
  std::error_code ec;
  return fs::is_regular_file(OsPath(path), ec);
}

bool IsSameFile(const std::string& a, const std::string& b) {
  std::error_code ec;
  return fs::equivalent(OsPath(a), OsPath(b), ec);
}

std::string ReadFileText(const std::string& path) {
  std::string native = OsPath(path);
  struct stat st {};
  if (::stat(native.c_str(), &st) != 0) vb::Raise(vb::kFileNotFound);
  if (S_ISDIR(st.st_mode)) vb::Raise(vb::kPathFileAccessError);
  std::FILE* f = std::fopen(native.c_str(), "rb");
  if (!f) vb::Raise(vb::kPathFileAccessError);
  std::string data;
  char buffer[65536];
  size_t n;
  while ((n = std::fread(buffer, 1, sizeof buffer, f)) > 0) data.append(buffer, n);
  bool failed = std::ferror(f) != 0;
  std::fclose(f);
  if (failed) vb::Raise(vb::kPathFileAccessError);
  return data;
}

#ifdef _WIN32

void WriteTextFile(const std::string& path, std::string_view text, bool append) {
  std::string native = OsPath(path);
  std::FILE* f = std::fopen(native.c_str(), append ? "ab" : "wb");
  if (!f) vb::Raise(errno == ENOENT ? vb::kPathNotFound : vb::kPathFileAccessError);
  bool ok = std::fwrite(text.data(), 1, text.size(), f) == text.size() &&
            std::fwrite("\r\n", 1, 2, f) == 2;
  ok = (std::fclose(f) == 0) && ok;
  if (!ok) vb::Raise(vb::kPathFileAccessError);
}

#else

namespace {

// Writes all of `parts` to `fd`, continuing after short writes.
bool WriteAllParts(int fd, iovec* parts, int count) {
  while (count > 0) {
    const ssize_t written = ::writev(fd, parts, count);
    if (written < 0) {
      if (errno == EINTR) continue;
      return false;
    }
    size_t left = static_cast<size_t>(written);
    while (count > 0 && left >= parts->iov_len) {
      left -= parts->iov_len;
      ++parts;
      --count;
    }
    if (count > 0) {
      parts->iov_base = static_cast<char*>(parts->iov_base) + left;
      parts->iov_len -= left;
    }
  }
  return true;
}

}  // namespace

// A report writes tens of thousands of pages: one open, one writev for the
// text and its line end, one close, with no stdio buffer in between.
void WriteTextFile(const std::string& path, std::string_view text, bool append) {
  const std::string native = OsPath(path);
  const int flags = O_WRONLY | O_CREAT | O_CLOEXEC | (append ? O_APPEND : O_TRUNC);
  const int fd = ::open(native.c_str(), flags, 0666);
  if (fd < 0) vb::Raise(errno == ENOENT ? vb::kPathNotFound : vb::kPathFileAccessError);
  static const char kLineEnd[] = "\r\n";
  iovec parts[2] = {{const_cast<char*>(text.data()), text.size()},
                    {const_cast<char*>(kLineEnd), 2}};
  bool ok = WriteAllParts(fd, parts, 2);
  ok = (::close(fd) == 0) && ok;
  if (!ok) vb::Raise(vb::kPathFileAccessError);
}

#endif

bool WriteFileAtomically(const std::string& path, std::string_view bytes) {
  std::string native = OsPath(path);
#ifdef _WIN32
  std::string temp = native + ".tmp" + std::to_string(::GetCurrentProcessId());
#else
  std::string temp = native + ".tmp" + std::to_string(::getpid());
#endif
  std::FILE* f = std::fopen(temp.c_str(), "wb");
  if (!f) return false;
  bool ok = std::fwrite(bytes.data(), 1, bytes.size(), f) == bytes.size();
  ok = (std::fflush(f) == 0) && ok;
#ifdef _WIN32
  ok = (::FlushFileBuffers(reinterpret_cast<HANDLE>(::_get_osfhandle(::_fileno(f)))) != 0) && ok;
  ok = (std::fclose(f) == 0) && ok;
  // rename() will not replace an existing file on Windows.
  if (ok && ::MoveFileExA(temp.c_str(), native.c_str(), MOVEFILE_REPLACE_EXISTING) != 0)
    return true;
#else
  ok = (::fsync(::fileno(f)) == 0) && ok;
  ok = (std::fclose(f) == 0) && ok;
  if (ok && std::rename(temp.c_str(), native.c_str()) == 0) return true;
#endif
  std::remove(temp.c_str());
  return false;
}

bool RemoveFile(const std::string& path) {
  std::error_code ec;
  return fs::remove(OsPath(path), ec);
}

void MakeFolder(const std::string& path) {
  std::error_code ec;
  const fs::path folder(OsPath(path));
  fs::create_directory(folder, ec);
  if (!ec) return;
  const fs::path parent = folder.parent_path();
  if (!parent.empty() && !fs::is_directory(parent)) vb::Raise(vb::kPathNotFound);
  vb::Raise(vb::kPathFileAccessError);
}

bool CreateFolders(const std::string& path) {
  std::error_code ec;
  fs::create_directories(OsPath(path), ec);
  return !ec;
}

std::string ParentFolder(const std::string& path) { return fs::path(path).parent_path().string(); }

std::string PathStem(const std::string& path) { return fs::path(path).stem().string(); }

EntryKind KindOfEntry(const std::string& path) {
  std::error_code ec;
  const fs::path os_path(OsPath(path));
  const fs::file_status own = fs::symlink_status(os_path, ec);
  if (ec || own.type() == fs::file_type::not_found) return EntryKind::kMissing;
  if (own.type() == fs::file_type::symlink && !fs::exists(os_path, ec))
    return EntryKind::kDanglingLink;
  return EntryKind::kPresent;
}

bool LiesStrictlyBelow(const std::string& base, const std::string& path) {
  std::error_code ec;
  const fs::path real_base = fs::weakly_canonical(fs::path(OsPath(base)), ec);
  if (ec) return false;
  const fs::path real_path = fs::weakly_canonical(fs::path(OsPath(path)), ec);
  if (ec) return false;
  auto b = real_base.begin();
  auto p = real_path.begin();
  for (; b != real_base.end(); ++b, ++p) {
    if (p == real_path.end() || *p != *b) return false;
  }
  return p != real_path.end();
}

void CopyFileOver(const std::string& source, const std::string& target) {
  std::string from = OsPath(source);
  std::string to = OsPath(target);
  std::error_code ec;
  if (!fs::is_regular_file(from, ec)) vb::Raise(vb::kFileNotFound);
  fs::copy_file(from, to, fs::copy_options::overwrite_existing, ec);
  if (ec) vb::Raise(vb::kPathFileAccessError);
}

}  // namespace folioscope
