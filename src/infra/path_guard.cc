#include "infra/path_guard.h"

#include <array>
#include <vector>

#include "infra/file_system.h"

namespace folioscope {

namespace {

constexpr size_t kMaxNameLength = 255;
constexpr size_t kMaxShownLength = 120;

bool IsControl(char c) { return static_cast<unsigned char>(c) < 0x20; }

bool IsSeparator(char c) { return c == '/' || c == '\\'; }

char AsciiUpper(char c) { return (c >= 'a' && c <= 'z') ? static_cast<char>(c - 'a' + 'A') : c; }

// The stem the device test looks at: the name up to its first dot, trailing
// blanks dropped ("con .txt" opens the console too), in upper case.
std::string DeviceStem(std::string_view name) {
  std::string stem(name.substr(0, name.find('.')));
  while (!stem.empty() && stem.back() == ' ') stem.pop_back();
  for (char& c : stem) c = AsciiUpper(c);
  return stem;
}

// COM and LPT take a digit, or a superscript one, two or three (Windows-1252
// B9, B2, B3), which Windows reserves as well.
bool IsPortDigit(char c) {
  const auto u = static_cast<unsigned char>(c);
  return (c >= '0' && c <= '9') || u == 0xB9 || u == 0xB2 || u == 0xB3;
}

bool IsDeviceName(std::string_view name) {
  static constexpr std::array<std::string_view, 6> kDevices = {"CON", "PRN",    "AUX",
                                                               "NUL", "CONIN$", "CONOUT$"};
  const std::string stem = DeviceStem(name);
  for (std::string_view device : kDevices) {
    if (stem == device) return true;
  }
  return stem.size() == 4 && (stem.starts_with("COM") || stem.starts_with("LPT")) &&
         IsPortDigit(stem[3]);
}

bool OnlyDots(std::string_view name) { return name.find_first_not_of('.') == std::string::npos; }

std::vector<std::string_view> SplitAtSeparators(std::string_view relative) {
  std::vector<std::string_view> parts;
  size_t start = 0;
  for (size_t i = 0; i <= relative.size(); ++i) {
    if (i == relative.size() || IsSeparator(relative[i])) {
      parts.push_back(relative.substr(start, i - start));
      start = i + 1;
    }
  }
  return parts;
}

// The folder without separators at its end, but a root ("/", "C:\\") kept
// whole: "C:" alone would be the current folder of drive C.
std::string WithoutTrailingSeparators(std::string base) {
  auto is_root = [&] { return base.size() == 1 || (base.size() == 3 && base[1] == ':'); };
  while (base.size() > 1 && IsSeparator(base.back()) && !is_root()) base.pop_back();
  return base.empty() ? std::string(".") : base;
}

// True when a link among the parts below `base` points nowhere: the file
// system would let a write through it create its target, wherever it is.
bool HasDanglingLink(const std::string& base, const std::vector<std::string_view>& parts) {
  std::string prefix = base;
  for (std::string_view part : parts) {
    prefix = JoinPath(prefix, part);
    const EntryKind kind = KindOfEntry(prefix);
    if (kind == EntryKind::kMissing) return false;  // nothing further exists
    if (kind == EntryKind::kDanglingLink) return true;
  }
  return false;
}

}  // namespace

bool IsSafeFileName(std::string_view name) {
  if (name.empty() || name.size() > kMaxNameLength) return false;
  for (char c : name) {
    if (IsControl(c) || IsSeparator(c)) return false;
    if (std::string_view("<>:\"|?*").find(c) != std::string_view::npos) return false;
  }
  if (OnlyDots(name)) return false;
  if (name.back() == '.' || name.back() == ' ') return false;
  return !IsDeviceName(name);
}

bool IsSafeRelativePath(std::string_view relative) {
  if (relative.empty()) return false;
  for (std::string_view part : SplitAtSeparators(relative)) {
    if (!IsSafeFileName(part)) return false;
  }
  return true;
}

std::optional<std::string> ResolveInside(const std::string& base, std::string_view relative) {
  if (!IsSafeRelativePath(relative)) return std::nullopt;
  const std::vector<std::string_view> parts = SplitAtSeparators(relative);
  std::string joined = base;
  for (std::string_view part : parts) joined = JoinPath(joined, part);
  const std::string base_path = WithoutTrailingSeparators(base);
  if (HasDanglingLink(base_path, parts)) return std::nullopt;
  if (!LiesStrictlyBelow(base_path, joined)) return std::nullopt;
  return joined;
}

std::string PrintableName(std::string_view name) {
  std::string shown(name.substr(0, kMaxShownLength));
  for (char& c : shown) {
    if (IsControl(c)) c = '?';
  }
  if (name.size() > kMaxShownLength) shown += "...";
  return shown;
}

}  // namespace folioscope
