#include "reportsets/profile_ini.h"

#include <fstream>
#include <sstream>
#include <utility>
#include <vector>

#include "infra/os_path.h"

namespace folioscope {
namespace {

struct IniSection {
  std::string name;
  std::vector<std::pair<std::string, std::string>> entries;
};

std::string TrimBlanksAndTabs(const std::string& s) {
  const size_t first = s.find_first_not_of(" \t");
  if (first == std::string::npos) return std::string();
  const size_t last = s.find_last_not_of(" \t");
  return s.substr(first, last - first + 1);
}

bool SameName(const std::string& a, const std::string& b) {
  if (a.size() != b.size()) return false;
  for (size_t i = 0; i < a.size(); ++i) {
    char x = a[i], y = b[i];
    if (x >= 'A' && x <= 'Z') x = static_cast<char>(x - 'A' + 'a');
    if (y >= 'A' && y <= 'Z') y = static_cast<char>(y - 'A' + 'a');
    if (x != y) return false;
  }
  return true;
}

std::string Unquoted(const std::string& value) {
  if (value.size() >= 2 && (value.front() == '"' || value.front() == '\'') &&
      value.back() == value.front()) {
    return value.substr(1, value.size() - 2);
  }
  return value;
}

// The file's sections in file order; a missing file has none.
std::vector<IniSection> ParseIniFile(const std::string& file_name) {
  std::vector<IniSection> sections;
  std::ifstream in(OsPath(file_name), std::ios::binary);
  if (!in) return sections;
  std::string line;
  while (std::getline(in, line)) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    const std::string trimmed = TrimBlanksAndTabs(line);
    if (trimmed.empty() || trimmed[0] == ';') continue;
    if (trimmed[0] == '[') {
      const size_t close = trimmed.find(']');
      sections.push_back({TrimBlanksAndTabs(trimmed.substr(
                              1, close == std::string::npos ? std::string::npos : close - 1)),
                          {}});
      continue;
    }
    if (sections.empty()) continue;
    const size_t eq = trimmed.find('=');
    if (eq == std::string::npos) {
      sections.back().entries.emplace_back(trimmed, std::string());
    } else {
      sections.back().entries.emplace_back(TrimBlanksAndTabs(trimmed.substr(0, eq)),
                                           Unquoted(TrimBlanksAndTabs(trimmed.substr(eq + 1))));
    }
  }
  return sections;
}

// Writes `text` and a NUL, cut to fit `size`.
int32_t WriteValue(const std::string& text, std::string& buffer, int32_t size) {
  if (size <= 0) return 0;
  const int32_t length = std::min<int32_t>(static_cast<int32_t>(text.size()), size - 1);
  if (buffer.size() < static_cast<size_t>(size)) buffer.resize(static_cast<size_t>(size), ' ');
  buffer.replace(0, static_cast<size_t>(length), text, 0, static_cast<size_t>(length));
  buffer[static_cast<size_t>(length)] = '\0';
  return length;
}

// Writes each name with its NUL and a final NUL; cut lists end in two NULs.
int32_t WriteNameList(const std::vector<std::string>& names, std::string& buffer, int32_t size) {
  std::string list;
  for (const std::string& name : names) {
    list += name;
    list += '\0';
  }
  if (size <= 0) return 0;
  if (buffer.size() < static_cast<size_t>(size)) buffer.resize(static_cast<size_t>(size), ' ');
  if (size == 1) {
    buffer[0] = '\0';
    return 0;
  }
  if (static_cast<int32_t>(list.size()) + 1 <= size) {
    buffer.replace(0, list.size(), list);
    buffer[list.size()] = '\0';
    if (list.empty() && size >= 2) buffer[1] = '\0';
    return static_cast<int32_t>(list.size());
  }
  const size_t kept = static_cast<size_t>(size - 2);
  buffer.replace(0, kept, list, 0, kept);
  buffer[kept] = '\0';
  buffer[kept + 1] = '\0';
  return size - 2;
}

}  // namespace

int32_t GetPrivateProfileStringA(const std::string* section, const std::string* key,
                                 const std::string& default_value, std::string& buffer,
                                 int32_t size, const std::string& file_name) {
  const std::vector<IniSection> sections = ParseIniFile(file_name);
  if (section == nullptr) {
    std::vector<std::string> names;
    for (const IniSection& s : sections) names.push_back(s.name);
    return WriteNameList(names, buffer, size);
  }
  std::string fallback = default_value;
  while (!fallback.empty() && fallback.back() == ' ') fallback.pop_back();
  for (const IniSection& s : sections) {
    if (!SameName(s.name, *section)) continue;
    if (key == nullptr) {
      std::vector<std::string> names;
      for (const auto& entry : s.entries) names.push_back(entry.first);
      return WriteNameList(names, buffer, size);
    }
    for (const auto& entry : s.entries) {
      if (SameName(entry.first, *key)) return WriteValue(entry.second, buffer, size);
    }
    break;
  }
  return WriteValue(fallback, buffer, size);
}

}  // namespace folioscope
