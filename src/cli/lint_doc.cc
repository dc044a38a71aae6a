#include "cli/lint_doc.h"

#include "lint_doc_text.h"

namespace folioscope {

namespace {

// The lines of `text`, without their line ends.
std::vector<std::string_view> Lines(std::string_view text) {
  std::vector<std::string_view> lines;
  while (!text.empty()) {
    const size_t end = text.find('\n');
    std::string_view line = text.substr(0, end);
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    lines.push_back(line);
    if (end == std::string_view::npos) break;
    text.remove_prefix(end + 1);
  }
  return lines;
}

// The body of the fenced block that starts at or after line `i`; leaves `i`
// behind its closing fence.
std::string FencedBlock(const std::vector<std::string_view>& lines, size_t& i) {
  while (i < lines.size() && lines[i].substr(0, 3) != "```") ++i;
  std::string body;
  for (++i; i < lines.size() && lines[i].substr(0, 3) != "```"; ++i) {
    body.append(lines[i]);
    body += '\n';
  }
  ++i;
  return body;
}

}  // namespace

std::string LintDocEntry::ShortDescription() const {
  const size_t end = description.find(". ");
  std::string first = end == std::string::npos ? description : description.substr(0, end + 1);
  for (char& c : first) {
    if (c == '\n') c = ' ';
  }
  while (!first.empty() && (first.back() == ' ' || first.back() == '\n')) first.pop_back();
  return first;
}

std::vector<LintDocEntry> ParseLintDoc(std::string_view markdown) {
  const std::vector<std::string_view> lines = Lines(markdown);
  std::vector<LintDocEntry> entries;
  size_t i = 0;
  while (i < lines.size()) {
    if (lines[i].substr(0, 4) != "### ") {
      ++i;
      continue;
    }
    LintDocEntry entry;
    entry.id = std::string(lines[i].substr(4));
    for (++i; i < lines.size() && lines[i] != "Bad:"; ++i) {
      if (entry.description.empty() && lines[i].empty()) continue;
      entry.description.append(lines[i]);
      entry.description += '\n';
    }
    while (!entry.description.empty() && entry.description.back() == '\n')
      entry.description.pop_back();
    entry.bad = FencedBlock(lines, i);
    entry.expected = FencedBlock(lines, i);
    entry.good = FencedBlock(lines, i);
    entries.push_back(std::move(entry));
  }
  return entries;
}

std::string_view BuiltInLintDoc() { return kLintDocText; }

}  // namespace folioscope
