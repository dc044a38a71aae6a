// File helpers: existence tests, whole-file reads and the page-file writer.
// With os_path.h and file_stamp.h this is the file layer under the platform:
// the only code that hands paths to the OS's file functions.
//
// Paths are Windows-1252 byte strings built by the component with
// kPathSeparator. File names read from report-set files use backslashes;
// NativePath() turns them into this platform's separators. Every function
// here hands its paths to the OS through OsPath() (os_path.h).
#ifndef FOLIOSCOPE_INFRA_FILE_SYSTEM_H_
#define FOLIOSCOPE_INFRA_FILE_SYSTEM_H_

#include <string>
#include <string_view>

namespace folioscope {

#ifdef _WIN32
constexpr char kPathSeparator = '\\';
constexpr const char* kPathSeparatorText = "\\";
#else
constexpr char kPathSeparator = '/';
constexpr const char* kPathSeparatorText = "/";
#endif

// The path with this platform's separators: on POSIX every backslash becomes
// '/'. The bytes stay Windows-1252; OsPath() gives what the OS takes.
std::string NativePath(std::string_view path);

// Joins with exactly one separator between the parts.
std::string JoinPath(std::string_view folder, std::string_view name);

// CFileSystem: the two existence tests. They never raise an error.
class CFileSystem {
 public:
  // True when the first entry matching `path` (wildcards * and ? honoured in
  // the last component) is a folder. A path ending in a separator matches
  // nothing and gives false.
  bool IsOrdnerVorhanden(const std::string& path) const;

  // True when the first entry matching `path` is a file whose size (low 32
  // bits) is not zero. An empty file and a folder count as absent.
  bool IsDateiVorhanden(const std::string& path) const;
};

// Plain questions about one path; false when it cannot be looked at.
// PathExists: any entry (a dangling link too). IsPlainFile: a regular file
// of any size, links followed. IsSameFile: both name one existing file.
bool PathExists(const std::string& path);
bool IsPlainFile(const std::string& path);
bool IsSameFile(const std::string& a, const std::string& b);

// The whole file as one byte string. A missing file raises run-time error
// 53, an unreadable one 75. An empty file gives "".
std::string ReadFileText(const std::string& path);

// The page-file writer: writes `text` and CR LF, replacing the file (or
// appending when `append` is set). A missing folder raises 76, any other
// failure 75.
void WriteTextFile(const std::string& path, std::string_view text, bool append);

// Writes `bytes` as the file's whole content, through a temporary file in the
// same folder and a rename, so readers never see a half-written file.
// Returns false on failure.
bool WriteFileAtomically(const std::string& path, std::string_view bytes);

// Deletes the file; false when it is not there or cannot be deleted.
bool RemoveFile(const std::string& path);

// Creates one folder level, like VB's MkDir: a missing parent raises 76,
// any other failure 75. An existing folder is left alone.
void MakeFolder(const std::string& path);

// Creates the folder and every missing folder above it. True when the
// folder exists afterwards or already did.
bool CreateFolders(const std::string& path);

// The path without its last part ("a/b/c" gives "a/b", "c" gives ""), and
// the last part without its extension ("a/Name.cls" gives "Name"), each
// taken apart at this platform's separators.
std::string ParentFolder(const std::string& path);
std::string PathStem(const std::string& path);

// What lies at `path` when links are not followed: nothing (or nothing that
// can be looked at), a link whose target does not exist, or anything else.
enum class EntryKind { kMissing, kDanglingLink, kPresent };
EntryKind KindOfEntry(const std::string& path);

// True when `path`, links followed, lies strictly below the folder `base`.
// Parts that do not exist yet are taken as written.
bool LiesStrictlyBelow(const std::string& base, const std::string& path);

// Copies a file, overwriting the target. A missing source raises 53; a
// failed write 75.
void CopyFileOver(const std::string& source, const std::string& target);

}  // namespace folioscope

#endif  // FOLIOSCOPE_INFRA_FILE_SYSTEM_H_
