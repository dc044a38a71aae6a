#include "doccomments/doc_findings.h"

namespace folioscope {
namespace doccomments {

namespace {

thread_local DocFindingSink* t_sink = nullptr;

bool IsAsciiLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool IsAsciiDigit(char c) { return c >= '0' && c <= '9'; }
bool IsHexDigit(char c) {
  return IsAsciiDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

// "<" at `at` opens "<!-- ... -->", "<name ...>" or "</name>".
bool StartsElement(std::string_view text, size_t at) {
  std::string_view rest = text.substr(at + 1);
  if (rest.substr(0, 3) == "!--") return rest.find("-->", 3) != std::string_view::npos;
  if (!rest.empty() && rest.front() == '/') rest.remove_prefix(1);
  if (rest.empty() || !IsAsciiLetter(rest.front())) return false;
  const size_t close = rest.find('>');
  return close != std::string_view::npos &&
         rest.substr(0, close).find('<') == std::string_view::npos;
}

// "&" at `at` opens "&name;", "&#123;" or "&#x1F;".
bool StartsEntity(std::string_view text, size_t at) {
  size_t i = at + 1;
  bool (*accepts)(char) = nullptr;
  if (i < text.size() && text[i] == '#') {
    ++i;
    accepts = &IsAsciiDigit;
    if (i < text.size() && (text[i] == 'x' || text[i] == 'X')) {
      ++i;
      accepts = &IsHexDigit;
    }
  } else {
    if (i >= text.size() || !IsAsciiLetter(text[i])) return false;
    accepts = [](char c) { return IsAsciiLetter(c) || IsAsciiDigit(c); };
  }
  const size_t first = i;
  while (i < text.size() && accepts(text[i])) ++i;
  return i > first && i < text.size() && text[i] == ';';
}

}  // namespace

DocFindingSink* FindingSink() { return t_sink; }

ScopedFindingSink::ScopedFindingSink(DocFindingSink* sink) : previous_(t_sink) { t_sink = sink; }

ScopedFindingSink::~ScopedFindingSink() { t_sink = previous_; }

void NoteReaderStart(const SourceMember& member, const TagPair& tags) {
  if (t_sink != nullptr) t_sink->StartReading(member, tags);
}

void NoteBlockScan(const TagPair& tags, int32_t b, int32_t e) {
  if (t_sink == nullptr) return;
  if (b > 0) t_sink->AtTagLine(b);
  if (b > 0 && e == 0) t_sink->Add({b, DocRule::kUnclosedTag, tags, ""});
  if (b == 0 && e > 0) t_sink->Add({e, DocRule::kUnopenedTag, tags, ""});
}

void NoteFinding(DocFinding finding) {
  if (t_sink == nullptr) return;
  if (finding.rule >= DocRule::kUnquotedName && !t_sink->WantsWarnings()) return;
  t_sink->Add(std::move(finding));
}

bool WarningsWanted() { return t_sink != nullptr && t_sink->WantsWarnings(); }

void NoteBlockText(const TagPair& tags, int32_t b, std::string_view text) {
  if (!WarningsWanted()) return;
  const size_t at = FindRawMarkup(text);
  if (at == std::string_view::npos) return;
  t_sink->Add({b, DocRule::kRawMarkup, tags, std::string(text.substr(at, 12))});
}

size_t FindRawMarkup(std::string_view text) {
  for (size_t i = text.find_first_of("<&"); i != std::string_view::npos;
       i = text.find_first_of("<&", i + 1)) {
    if (text[i] == '<' ? !StartsElement(text, i) : !StartsEntity(text, i)) return i;
  }
  return std::string_view::npos;
}

}  // namespace doccomments
}  // namespace folioscope
