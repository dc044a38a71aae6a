#include "chm/help_compiler.h"

#include <algorithm>
#include <vector>

#include "infra/file_system.h"
#include "infra/os_path.h"
#include "infra/path_guard.h"
#include "infra/platform.h"
#include "infra/text_encoding.h"
#include "infra/vb_runtime.h"

namespace folioscope {

namespace {

// Lines without their line ends (CR LF or LF).
std::vector<std::string> SplitLines(std::string_view text) {
  std::vector<std::string> lines;
  size_t start = 0;
  while (start < text.size()) {
    size_t end = text.find('\n', start);
    if (end == std::string_view::npos) end = text.size();
    std::string line(text.substr(start, end - start));
    if (!line.empty() && line.back() == '\r') line.pop_back();
    lines.push_back(std::move(line));
    start = end + 1;
  }
  return lines;
}

// "[NAME]" gives "NAME" in upper case; any other line "".
std::string SectionName(const std::string& line) {
  const std::string t = vb::Trim(line);
  if (t.size() < 2 || t.front() != '[' || t.back() != ']') return "";
  return vb::UCase(t.substr(1, t.size() - 2));
}

// The file named by an "#include NAME" line, or "".
std::string IncludedName(const std::string& line) {
  const std::string t = vb::Trim(line);
  if (vb::LCase(vb::Left(t, 8)) != "#include") return "";
  return vb::Trim(t.substr(8));
}

std::string AliasTarget(const std::string& line) {
  const size_t eq = line.find('=');
  if (eq == std::string::npos) return "";
  return vb::Trim(line.substr(eq + 1));
}

bool ListedIn(const std::vector<std::string>& files, const std::string& name) {
  for (const std::string& f : files) {
    if (vb::LCase(f) == vb::LCase(name)) return true;
  }
  return false;
}

// The pages that the frame sets among `pages` show (their <frame src=...>).
std::vector<std::string> FramedPages(const std::string& folder,
                                     const std::vector<std::string>& pages) {
  std::vector<std::string> framed;
  for (const std::string& page : pages) {
    const std::string path = folder + "/" + ResolveFileName(folder, page);
    if (!IsPlainFile(path)) continue;
    const std::string text = ReadFileText(path);
    const std::string lower = vb::LCase(text);
    for (size_t at = lower.find("<frame"); at != std::string::npos;
         at = lower.find("<frame", at + 1)) {
      const size_t end = lower.find('>', at);
      const size_t src = lower.find("src=", at);
      if (src == std::string::npos || (end != std::string::npos && src > end)) continue;
      size_t start = src + 4;
      const char quote = start < text.size() ? text[start] : '\0';
      const bool quoted = quote == '"' || quote == '\'';
      if (quoted) ++start;
      size_t stop = start;
      while (stop < text.size() &&
             (quoted ? text[stop] != quote : text[stop] != ' ' && text[stop] != '>')) {
        ++stop;
      }
      framed.push_back(text.substr(start, stop - start));
    }
  }
  return framed;
}

bool IsAscii(std::string_view name) {
  return std::all_of(name.begin(), name.end(),
                     [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

// The "Local" pages of a contents or index file that chmcmd cannot find by
// itself: it looks a page named there up by the name's bytes, which for a
// name beyond ASCII are not the UTF-8 bytes on disk.
std::vector<std::string> SitemapPagesBeyondAscii(const std::string& folder,
                                                 const std::string& sitemap) {
  std::vector<std::string> pages;
  const std::string path = folder + "/" + ResolveFileName(folder, NativePath(sitemap));
  if (sitemap.empty() || !IsPlainFile(path)) return pages;
  const std::string text = ReadFileText(path);
  const std::string lower = vb::LCase(text);
  const std::string marker = "name=\"local\" value=\"";
  for (size_t at = lower.find(marker); at != std::string::npos; at = lower.find(marker, at + 1)) {
    const size_t start = at + marker.size();
    const size_t stop = text.find('"', start);
    if (stop == std::string::npos) break;
    const std::string page = text.substr(start, stop - start);
    if (!IsAscii(page)) pages.push_back(page);
  }
  return pages;
}

// `name` (relative to `folder`) as the file system holds it. chmcmd opens
// files by these bytes and stores them in the help file under them, which
// is the UTF-8 form the help viewer looks up for a link.
std::string OsFileName(const std::string& folder, const std::string& name) {
  if (IsAscii(name)) return name;
  const std::string os_folder = OsPath(folder) + "/";
  const std::string os_path = OsPath(folder + "/" + name);
  if (os_path.compare(0, os_folder.size(), os_folder) == 0) return os_path.substr(os_folder.size());
  return Cp1252ToUtf8(name);
}

// "KEY = value" with the value as OsFileName gives it.
std::string WithOsValue(const std::string& folder, const std::string& line) {
  const size_t eq = line.find('=');
  const std::string value = vb::Trim(line.substr(eq + 1));
  const std::string os_value = OsFileName(folder, value);
  if (os_value == value) return line;
  return line.substr(0, line.find(value, eq)) + os_value;
}

// The lower-case key of an "[OPTIONS]" line that names a file, else "".
std::string FileOptionKey(const std::string& section, const std::string& line) {
  if (section != "OPTIONS" || line.find('=') == std::string::npos) return "";
  const std::string key = vb::LCase(vb::Trim(line.substr(0, line.find('='))));
  const bool names_file = key == "compiled file" || key == "default topic" ||
                          key == "contents file" || key == "index file";
  return names_file ? key : "";
}

bool NamesAFile(const std::string& section, const std::string& line) {
  if (section == "ALIAS") return line.find('=') != std::string::npos;
  return !FileOptionKey(section, line).empty();
}

// The project lines with every file name in its file-system form: the
// [FILES] lines, alias targets and the file options of [OPTIONS]. Lines
// without such names, and names of ASCII only, stay as they are.
std::vector<std::string> WithOsFileNames(const std::string& folder,
                                         const std::vector<std::string>& lines) {
  std::vector<std::string> out;
  std::string section;
  for (const std::string& line : lines) {
    const std::string name = SectionName(line);
    if (!name.empty()) section = name;
    if (name.empty() && section == "FILES" && !vb::Trim(line).empty()) {
      const std::string listed = vb::Trim(line);
      const std::string os_name = OsFileName(folder, listed);
      out.push_back(os_name == listed ? line : os_name);
    } else if (name.empty() && NamesAFile(section, line)) {
      out.push_back(WithOsValue(folder, line));
    } else {
      out.push_back(line);
    }
  }
  return out;
}

// Adds to the [FILES] section of the project lines `out` (whose "[FILES]"
// line is at `files_header`, npos when there is none yet) every target of
// the output folder that `listed` lacks, once each, in order.
void ListUnlistedTargets(const std::string& folder, const std::vector<std::string>& listed,
                         const std::vector<std::string>& targets, size_t files_header,
                         std::vector<std::string>& out) {
  std::vector<std::string> missing;
  for (const std::string& target : targets) {
    // Only pages of the output folder go into the help file, whatever an
    // alias line or a frame set names.
    if (!ResolveInside(folder, target)) continue;
    if (!ListedIn(listed, target) && !ListedIn(missing, target)) missing.push_back(target);
  }
  if (missing.empty()) return;
  if (files_header == std::string::npos) {
    out.push_back("[FILES]");
    files_header = out.size() - 1;
  }
  out.insert(out.begin() + static_cast<std::ptrdiff_t>(files_header) + 1, missing.begin(),
             missing.end());
}

}  // namespace

std::string ResolveFileName(const std::string& folder, const std::string& name) {
  if (PathExists(folder + "/" + name)) return name;
  for (const FolderEntry& entry : CurrentPlatform().ListFolder(folder)) {
    if (vb::LCase(entry.name) == vb::LCase(name)) return entry.name;
  }
  return name;
}

std::string ChmcmdProjectText(const std::string& folder, std::string_view hhp) {
  std::vector<std::string> out;
  std::vector<std::string> listed;
  std::vector<std::string> targets;
  size_t files_header = std::string::npos;
  std::string section;
  for (const std::string& line : SplitLines(hhp)) {
    const std::string name = SectionName(line);
    if (!name.empty()) section = name;
    const std::string included = IncludedName(line);
    if ((section == "ALIAS" || section == "MAP") && !included.empty()) {
      const std::string path = folder + "/" + ResolveFileName(folder, NativePath(included));
      if (!PathExists(path)) continue;
      for (const std::string& inner : SplitLines(ReadFileText(path))) {
        if (section == "ALIAS" && !AliasTarget(inner).empty()) {
          targets.push_back(AliasTarget(inner));
        }
        out.push_back(inner);
      }
      continue;
    }
    if (section == "FILES" && name.empty() && !vb::Trim(line).empty()) {
      listed.push_back(vb::Trim(line));
    }
    if (section == "ALIAS" && name.empty() && !AliasTarget(line).empty()) {
      targets.push_back(AliasTarget(line));
    }
    const std::string key = FileOptionKey(section, line);
    if (key == "contents file" || key == "index file") {
      for (std::string& page : SitemapPagesBeyondAscii(folder, AliasTarget(line)))
        targets.push_back(std::move(page));
    }
    if (name == "FILES" && files_header == std::string::npos) files_header = out.size();
    out.push_back(line);
  }
  // chmcmd's own page scan does not follow frames: the pages that a listed
  // frame set shows are listed as well.
  for (const std::string& page : FramedPages(folder, listed)) {
    if (IsPlainFile(folder + "/" + ResolveFileName(folder, page))) {
      targets.push_back(page);
    }
  }
  ListUnlistedTargets(folder, listed, targets, files_header, out);
  std::string text;
  for (const std::string& line : WithOsFileNames(folder, out)) text += line + "\r\n";
  return text;
}

bool WildcardMatch(std::string_view name, std::string_view pattern) {
  // Iterative matcher with one backtracking point for the last '*'.
  size_t n = 0, p = 0, star = std::string_view::npos, mark = 0;
  auto lower = [](char c) { return vb::LCase(std::string(1, c))[0]; };
  while (n < name.size()) {
    if (p < pattern.size() && (pattern[p] == '?' || lower(pattern[p]) == lower(name[n]))) {
      ++n;
      ++p;
    } else if (p < pattern.size() && pattern[p] == '*') {
      star = p++;
      mark = n;
    } else if (star != std::string_view::npos) {
      p = star + 1;
      n = ++mark;
    } else {
      return false;
    }
  }
  while (p < pattern.size() && pattern[p] == '*') ++p;
  return p == pattern.size();
}

std::string ShellQuote(std::string_view text) {
  std::string quoted = "'";
  for (char c : text) {
    if (c == '\'') {
      quoted += "'\\''";
    } else {
      quoted += c;
    }
  }
  return quoted + "'";
}

}  // namespace folioscope
