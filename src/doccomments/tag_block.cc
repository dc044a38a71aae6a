#include "doccomments/tag_block.h"

#include "infra/fs_communicator.h"
#include "infra/platform.h"
#include "infra/vb_runtime.h"

namespace folioscope {
namespace doccomments {

namespace {

int64_t Len(std::string_view s) { return static_cast<int64_t>(s.size()); }

std::string WithoutBlanks(std::string_view s) {
  std::string out;
  for (char c : s) {
    if (c != ' ') out += c;
  }
  return out;
}

}  // namespace

// The prefix test of vb::Trim(line) without building the trimmed copy: the
// scans make it for every line, and most lines are no doc lines.
bool IsDocumentationLine(std::string_view line) {
  size_t first = line.find_first_not_of(' ');
  return first != std::string_view::npos && line.substr(first, kDocPrefix.size()) == kDocPrefix;
}

int32_t FindTagLine(vb::Dictionary& lines, std::string_view tag, int32_t first_key) {
  const int32_t n = lines.Count();
  for (int32_t i = first_key; i < n; ++i) {
    const std::string& line = lines.Item(i);
    if (IsDocumentationLine(line) && vb::InStrLCase(line, tag) > 0) return i;
  }
  return 0;
}

std::string TextBehindTag(std::string_view line, std::string_view open_tag) {
  int64_t p = vb::InStrLCase(line, open_tag);
  return vb::Trim(vb::Right(line, Len(line) - (p + Len(open_tag)) + 1));
}

std::string TextBeforeTag(std::string_view line, std::string_view close_tag) {
  int64_t p = vb::InStrLCase(line, close_tag);
  std::string front = vb::Left(line, p - 1);
  return vb::Trim(vb::Right(front, Len(front) - Len(kDocPrefix)));
}

std::string TextBehindTagEnd(std::string_view line, std::string_view open_tag, std::string* inner,
                             std::string* tag_end) {
  std::string rest = TextBehindTag(line, open_tag);
  int64_t q = vb::InStr(rest, ">");
  if (tag_end != nullptr) tag_end->clear();
  if (q == 0) return std::string();
  std::string raw = WithoutBlanks(vb::Trim(vb::Left(rest, q)));
  if (tag_end != nullptr) *tag_end = raw;
  *inner = vb::Mid(raw, 3, Len(raw) - 4);
  return vb::Trim(vb::Right(rest, Len(rest) - q));
}

std::string TakeLine(vb::Dictionary& lines, int32_t key, bool consume) {
  std::string line = lines.Item(key);
  if (consume) lines.SetItem(key, std::string());
  return line;
}

void JoinBlockWithBlanks(vb::Dictionary& lines, int32_t b, int32_t e, std::string_view close_tag,
                         const LineText& begin_text, const LineText& end_text, bool consume,
                         std::string& content) {
  if (e == b) {
    content = begin_text(vb::Trim(TakeLine(lines, b, consume)));
    content = vb::Trim(vb::Left(content, Len(content) - Len(close_tag)));
    return;
  }
  if (e == vb::AddLong(b, 1)) {
    content = begin_text(vb::Trim(TakeLine(lines, b, consume)));
    content += " ";
    content += end_text(vb::Trim(TakeLine(lines, e, consume)));
    return;
  }
  content = begin_text(vb::Trim(TakeLine(lines, b, consume)));
  for (int64_t i = int64_t{b} + 1; i <= int64_t{e} - 1; ++i) {
    std::string t = vb::Trim(TakeLine(lines, static_cast<int32_t>(i), consume));
    if (Len(t) >= Len(kDocPrefix)) t = vb::Trim(vb::Right(t, Len(t) - Len(kDocPrefix)));
    content += " ";
    content += t;
  }
  content += " ";
  content += end_text(vb::Trim(TakeLine(lines, e, consume)));
}

void CopyCodeLines(vb::Dictionary& from, vb::Dictionary& to) {
  const int32_t n = from.Count();
  for (int32_t i = 1; i <= n; ++i) to.Add(i, from.Item(i));
}

bool CopyCodeLinesIfTagged(vb::Dictionary& from, vb::Dictionary& to, std::string_view open,
                           std::string_view close) {
  const int32_t n = from.Count();
  bool tagged = false;
  int32_t first_doc = n + 1;
  int32_t last_doc = 0;
  for (int32_t i = 1; i <= n; ++i) {
    const std::string& line = from.Item(i);
    if (!IsDocumentationLine(line)) continue;
    if (first_doc > n) first_doc = i;
    last_doc = i;
    if (!tagged) tagged = vb::InStrLCase(line, open) > 0 || vb::InStrLCase(line, close) > 0;
  }
  if (!tagged) return false;
  // The first pass added any absent key, so these reads change nothing.
  to.Reserve(to.Count() + n + 1);  // the scans that follow add key 0
  for (int32_t i = 1; i <= n; ++i) {
    to.Add(i, i >= first_doc && i <= last_doc ? from.Item(i) : std::string());
  }
  return true;
}

// Windows-1252 texts: \xFC is u-umlaut; \337 (sharp s) and \366 (o-umlaut) are octal
// because a hex escape would swallow the letters that follow.
void ReportBlockScan(const TagPair& tags, const std::string& member_name, int32_t b, int32_t e,
                     bool diagnostic_mode) {
  const std::string word(tags.word);
  if (b >= 1 && e >= 1 && diagnostic_mode) {
    AddLog("***Ausgabe nur in der IDE***: Erfassung des " + word + "-Tag f\xFCr Member " +
               member_name + " erfolgreich beendet.",
           kIconProgress);
  }
  if (b > 0 && e == 0) {
    AddLog("F\xFCr Member " + member_name + " konnte kein schlie\337endes " + " " + word +
               "-Tag gefunden werden.",
           kIconFailure);
  }
  if (b == 0 && e >= 1) {
    AddLog("F\xFCr Member " + member_name + " konnte kein \366ffnendes " + " " + word +
               "-Tag gefunden werden.",
           kIconFailure);
  }
}

bool DiagnosticModeNow() { return CurrentPlatform().InDevelopmentEnvironment(); }

}  // namespace doccomments
}  // namespace folioscope
