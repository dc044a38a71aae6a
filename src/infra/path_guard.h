// Path guard: keeps the names that come from outside (module and member
// names of a project, file names of a report set, the ReportPath setting)
// from reaching a file outside the folder they belong to.
//
// The rules are those of the strictest file system we write to (Windows), so
// that a report written on Linux and copied to Windows, or written there,
// names the same files, and are applied the same way everywhere. Both '/'
// and '\\' count as separators in names, whatever the platform.
#ifndef FOLIOSCOPE_INFRA_PATH_GUARD_H_
#define FOLIOSCOPE_INFRA_PATH_GUARD_H_

#include <optional>
#include <string>
#include <string_view>

namespace folioscope {

// True when `name` can stand as one file name in a folder: not empty, at most
// 255 bytes, no separator, no control character (NUL included), none of
// < > : " | ? * (so no drive letter, stream name or wildcard), not made of
// dots only, no trailing dot or blank (Windows drops them, so "a.htm." would
// be "a.htm"), and not a device name (CON, PRN, AUX, NUL, CONIN$, CONOUT$,
// COM0-9, LPT0-9, with or without extension, in any case).
bool IsSafeFileName(std::string_view name);

// True when `relative` names something below a folder by words alone:
// split at '/' and '\\', every part is a safe file name (so "..", ".",
// empty parts, absolute paths and drive letters are refused). Looks at no
// file.
bool IsSafeRelativePath(std::string_view relative);

// The path of `relative` inside the folder `base`, or nothing when it would
// lead anywhere else. `relative` must pass IsSafeRelativePath, and the
// joined path must stay below `base` once symbolic links are followed: a
// link below `base` that points out of it, or points nowhere (writing
// through it would create its target), is refused. The result is `base`,
// the platform separator and the parts joined with it, links unresolved.
std::optional<std::string> ResolveInside(const std::string& base, std::string_view relative);

// `name` as it can be shown in a message: every control character is made
// '?', and a name longer than 120 bytes is cut with "...".
std::string PrintableName(std::string_view name);

}  // namespace folioscope

#endif  // FOLIOSCOPE_INFRA_PATH_GUARD_H_
