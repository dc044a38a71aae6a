#include "format/code_format.h"

#include <map>
#include <mutex>
#include <unordered_set>
#include <vector>

#include "format/keyword_resource.h"
#include "infra/error_handler.h"
#include "infra/file_stamp.h"
#include "infra/file_system.h"
#include "infra/platform.h"
#include "infra/vb_runtime.h"

namespace folioscope {

// The keyword list as loaded from sfn.dat: the entries in file order, and a
// set of the same entries for the whole-word lookups.
struct CCodeFormat::KeywordTable {
  std::vector<std::string> entries;
  std::unordered_set<std::string> lookup;
};

namespace {

constexpr const char* kModule = "CCodeFormat";
constexpr const char* kCrLf = "\r\n";
constexpr const char* kKeywordFileName = "sfn.dat";

constexpr const char* kDefaultSourceColor = "#000000";
constexpr const char* kDefaultKeywordColor = "#000066";
constexpr const char* kDefaultCommentColor = "#009900";
constexpr const char* kDefaultBackgroundColor = "#FFFFFF";
constexpr const char* kDefaultSourceFont = "Courier New";

// Splits a file's text into lines as sequential text input reads them: CR LF,
// a lone CR or a lone LF ends a line; a last line without an end counts.
std::vector<std::string> SplitInputLines(std::string_view text) {
  std::vector<std::string> lines;
  size_t start = 0;
  size_t i = 0;
  while (i < text.size()) {
    char c = text[i];
    if (c != '\r' && c != '\n') {
      ++i;
      continue;
    }
    lines.emplace_back(text.substr(start, i - start));
    i += (c == '\r' && i + 1 < text.size() && text[i + 1] == '\n') ? 2 : 1;
    start = i;
  }
  if (start < text.size()) lines.emplace_back(text.substr(start));
  return lines;
}

// Parsed keyword files, shared by every formatter of the process while the
// file stays unchanged (a formatter is made per code example).
template <typename Table>
class KeywordCache {
 public:
  std::shared_ptr<const Table> Find(const std::string& path, const FileStamp& stamp) {
    std::lock_guard<std::mutex> lock(mutex_);
    auto it = entries_.find(path);
    if (it == entries_.end() || !(it->second.stamp == stamp)) return nullptr;
    return it->second.table;
  }
  void Store(const std::string& path, const FileStamp& stamp, std::shared_ptr<const Table> table) {
    std::lock_guard<std::mutex> lock(mutex_);
    entries_[path] = Entry{stamp, std::move(table)};
  }

 private:
  struct Entry {
    FileStamp stamp;
    std::shared_ptr<const Table> table;
  };
  std::mutex mutex_;
  std::map<std::string, Entry> entries_;
};

template <typename Table>
KeywordCache<Table>& Cache() {
  static KeywordCache<Table> cache;
  return cache;
}

std::string FontElement(const std::string& color) { return "<FONT COLOR=" + color + ">"; }

}  // namespace

// --- Creation and the keyword list ------------------------------------------

CCodeFormat::CCodeFormat() : keywords_(std::make_shared<KeywordTable>()) { LoadKeywords(); }

std::string CCodeFormat::KeywordFilePath() {
  return JoinPath(CurrentPlatform().ApplicationFolder(), kKeywordFileName);
}

void CCodeFormat::LoadKeywords() {
  Trap(kModule, "LoadKeywords", [&] {
    const std::string path = KeywordFilePath();
    // A formatter is made for every code example. One look at the file
    // answers both questions while it is there as it should be (a plain,
    // non-empty file); only otherwise the existence test of the file system
    // decides about restoring it.
    FileStamp stamp = CurrentPlatform().StampOfFile(path);
    const bool in_place =
        stamp.exists && !stamp.folder && (static_cast<uint64_t>(stamp.size) & 0xFFFFFFFFu) != 0;
    if (!in_place) {
      if (!file_system_.IsDateiVorhanden(path)) RestoreSourceFile();
      stamp = CurrentPlatform().StampOfFile(path);
    }
    if (stamp.exists) {
      if (auto cached = Cache<KeywordTable>().Find(path, stamp)) {
        keywords_ = std::move(cached);
        return;
      }
    }
    auto table = std::make_shared<KeywordTable>();
    table->entries = SplitInputLines(ReadFileText(path));
    table->lookup.insert(table->entries.begin(), table->entries.end());
    if (stamp.exists) Cache<KeywordTable>().Store(path, stamp, table);
    keywords_ = std::move(table);
  });
}

void CCodeFormat::RestoreSourceFile() {
  Trap(kModule, "RestoreSourceFile", [&] {
    const std::string folder = CurrentPlatform().ApplicationFolder();
    if (!file_system_.IsOrdnerVorhanden(folder)) {
      if (!CreateFolders(folder)) vb::Raise(vb::kPathNotFound);
    }
    std::string_view bytes = KeywordResource();
    if (!WriteFileAtomically(KeywordFilePath(), bytes)) vb::Raise(vb::kPathFileAccessError);
  });
}

// --- Execution ----------------------------------------------------------------

int32_t CCodeFormat::ExecuteMember(SourceMember& MemberContent, int32_t& StartLine,
                                   int32_t& Endline, bool& AsFullHTMLDocument) {
  Trap(kModule, "ExecuteMember",
       [&] { Execute(MemberContent.CodeLines, StartLine, Endline, AsFullHTMLDocument); });
  return 0;
}

int32_t CCodeFormat::ExecuteModule(SourceModule& ModuleContent, int32_t& StartLine,
                                   int32_t& Endline) {
  Trap(kModule, "ExecuteModule",
       [&] { Execute(ModuleContent.CodeLines, StartLine, Endline, /*full_document=*/true); });
  return 0;
}

void CCodeFormat::ApplyDefaults() {
  if (SourceColor.empty()) SourceColor = kDefaultSourceColor;
  if (KeywordColor.empty()) KeywordColor = kDefaultKeywordColor;
  if (CommentColor.empty()) CommentColor = kDefaultCommentColor;
  if (BackgroundColor.empty()) BackgroundColor = kDefaultBackgroundColor;
  if (SourceFont.empty()) SourceFont = kDefaultSourceFont;
}

void CCodeFormat::Execute(vb::Dictionary& lines, int32_t& StartLine, int32_t& Endline,
                          bool full_document) {
  ApplyDefaults();
  std::string text = BuildHeader(full_document);
  if (Endline == 0) Endline = vb::SubLong(lines.Count(), 1);
  for (int64_t n = StartLine; n <= Endline; ++n) {
    // Copied: reading a later key may add it and move the entries.
    std::string line = lines.Item(static_cast<int32_t>(n));
    text += ConvertToHTML(line);
  }
  text += BuildFooter(full_document);
  formated_code_ = std::move(text);
}

std::string CCodeFormat::BuildHeader(bool full_document) const {
  if (!full_document) {
    return FontElement(SourceColor) + "<FONT style='font-family: Courier New;'><PRE>";
  }
  return std::string("<html>") + kCrLf + "<head>" + kCrLf + "<title></title>" + kCrLf + "</head>" +
         kCrLf + "<BODY BGCOLOR='" + BackgroundColor +
         "' style='BORDER-BOTTOM: 0px; BORDER-LEFT: 0px; BORDER-RIGHT: 0px; BORDER-TOP: 0px; "
         "MARGIN : 0px; padding-left: 18px;'>" +
         kCrLf + FontElement(SourceColor) + "<p style='font-family: Courier New;'><PRE>";
}

std::string CCodeFormat::BuildFooter(bool full_document) {
  std::string footer = "</PRE>";
  if (full_document) footer += std::string("</body>") + kCrLf + "</html>";
  return footer;
}

// --- One line -------------------------------------------------------------------

std::string CCodeFormat::EscapeBrackets(std::string_view text) {
  std::string out(text);
  vb::ReplaceAll(out, "<", "&#60;");
  vb::ReplaceAll(out, ">", "&#62;");
  return out;
}

int32_t CCodeFormat::ZeichenZaehlen(std::string_view text, int64_t first, int64_t last,
                                    char zeichen) {
  int32_t count = 0;
  Trap(kModule, "ZeichenZaehlen", [&] {
    for (int64_t i = first; i <= last && i <= static_cast<int64_t>(text.size()); ++i) {
      if (text[static_cast<size_t>(i - 1)] == zeichen) count = vb::AddLong(count, 1);
    }
  });
  return count;
}

// The apostrophe that starts the comment: the first one with an even number
// of double quotes in front of it, a quote in column 1 not counted.
int32_t CCodeFormat::GetCommentPos(const std::string& line) {
  int32_t result = 0;
  Trap(kModule, "GetCommentPos", [&] {
    int32_t quotes = 0;
    int64_t counted_to = 1;  // column 1 never counts
    int32_t p = vb::InStr(line, "'");
    while (p > 0) {
      quotes += ZeichenZaehlen(line, counted_to + 1, p, '"');
      counted_to = p;
      if (quotes % 2 == 0) {
        result = p;
        return;
      }
      p = vb::InStr(p + 1, line, "'");
    }
  });
  return result;
}

bool CCodeFormat::IsKeyword(const std::string& word) {
  bool found = false;
  Trap(kModule, "IsKeyword", [&] { found = keywords_->lookup.count(vb::Trim(word)) != 0; });
  return found;
}

std::string CCodeFormat::MarkKeywords(const std::string& line) {
  // The blank that ends a word is written before the word, so each line
  // gains one leading blank and a trailing blank moves to the front.
  std::string word;
  std::string result;
  bool in_string = false;
  bool string_seen = false;
  const size_t length = line.size();
  for (size_t i = 0; i < length; ++i) {
    const char c = line[i];
    bool ended = false;
    if (c == '"') {
      in_string = !in_string;
      if (in_string) string_seen = true;
    }
    if (in_string) {
      word += c;
    } else {
      if (c != ' ') {
        word += c;
      } else {
        result += ' ';
        ended = true;
      }
      if (i + 1 == length) {
        result += ' ';
        ended = true;
      }
    }
    if (!ended) continue;
    const std::string trimmed = vb::Trim(word);
    if (string_seen) {
      result += word;
      string_seen = false;
    } else if (trimmed.size() == 1) {
      result += word;
    } else if (!trimmed.empty() && IsKeyword(word)) {
      result += FontElement(KeywordColor) + trimmed + "</FONT>";
    } else if (!trimmed.empty()) {
      result += word;
    }
    word.clear();
  }
  return result;
}

std::string CCodeFormat::ConvertToHTML(const std::string& source_line) {
  std::string converted;
  Trap(kModule, "ConvertToHTML", [&] {
    std::string line = source_line;
    std::string comment_part;
    const int32_t p = GetCommentPos(line);
    if (p > 0) {
      std::string comment = EscapeBrackets(vb::Mid(line, p));
      // A comment in column 1 gets the blank that every code line begins with.
      if (p == 1) comment.insert(0, " ");
      comment_part = FontElement(CommentColor) + comment + "<BR></FONT>";
      line = vb::Left(line, p - 1);
    }
    line = EscapeBrackets(line);

    std::string result = MarkKeywords(line);
    if (line.empty()) result += FontElement(SourceColor) + "&#160;" + "</FONT>";
    result += comment_part.empty() ? std::string("<BR>") : comment_part;
    converted = std::move(result);
  });
  return converted;
}

}  // namespace folioscope
