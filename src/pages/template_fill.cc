#include "pages/template_fill.h"

#include <array>
#include <memory>
#include <string>
#include <unordered_map>

#include "infra/dictionary.h"
#include "infra/vb_runtime.h"

namespace folioscope {

namespace {

constexpr std::string_view kTokenMark = "&&&";

// A key "&&&Name&&&" with a non-empty Name free of '&'.
bool IsWholeToken(std::string_view key) {
  const size_t mark = kTokenMark.size();
  return key.size() > 2 * mark && key.substr(0, mark) == kTokenMark &&
         key.substr(key.size() - mark) == kTokenMark &&
         key.substr(mark, key.size() - 2 * mark).find('&') == std::string_view::npos;
}

void ReplaceOneByOne(std::string& text, const std::vector<TokenReplacement>& replacements) {
  for (const auto& r : replacements) vb::ReplaceAll(text, r.key, r.value);
}

// What the one-pass fill knows about a list of replacements: whether it may
// be used at all (every key a whole token, no value holding "&&&", so no
// replacement can make a new run of three '&'), which characters the token
// names use, and each name's value (the first entry's, as the one-by-one
// fill would have it).
class TokenTable {
 public:
  TokenTable() = default;
  explicit TokenTable(const std::vector<TokenReplacement>& replacements) { Reset(replacements); }

  // Builds the table for `replacements` anew, keeping the room of the last
  // build, so a fill that runs for every page allocates nothing here.
  void Reset(const std::vector<TokenReplacement>& replacements) {
    usable_ = false;
    names_.clear();
    by_name_.clear();
    name_char_.fill(false);
    names_.reserve(replacements.size());
    for (const auto& r : replacements) {
      if (!IsWholeToken(r.key) || r.value.find(kTokenMark) != std::string_view::npos) return;
      const std::string_view name =
          r.key.substr(kTokenMark.size(), r.key.size() - 2 * kTokenMark.size());
      for (char c : name) name_char_[static_cast<unsigned char>(c)] = true;
      names_.push_back({name, r.value});
    }
    // A page's own handful of tokens is searched in a list; the report
    // set's dictionaries are worth a hash.
    if (names_.size() > kListedNames) {
      by_name_.reserve(names_.size());
      for (const TokenReplacement& n : names_) by_name_.emplace(n.key, n.value);
    }
    usable_ = true;
  }

  bool usable() const { return usable_; }
  bool IsNameChar(char c) const { return name_char_[static_cast<unsigned char>(c)]; }
  const std::string_view* ValueOf(std::string_view name) const {
    if (names_.size() <= kListedNames) {
      for (const TokenReplacement& n : names_) {
        if (n.key == name) return &n.value;
      }
      return nullptr;
    }
    auto it = by_name_.find(name);
    return it == by_name_.end() ? nullptr : &it->second;
  }

 private:
  static constexpr size_t kListedNames = 16;

  bool usable_ = false;
  std::vector<TokenReplacement> names_;  // key is the token name here
  std::array<bool, 256> name_char_{};
  std::unordered_map<std::string_view, std::string_view> by_name_;
};

// Puts the start positions of the runs of exactly three '&' into `marks`;
// false when a longer run exists.
bool FindTokenMarks(const std::string& text, std::vector<size_t>& marks) {
  marks.clear();
  for (size_t i = text.find('&'); i != std::string::npos; i = text.find('&', i)) {
    size_t end = i;
    while (end < text.size() && text[end] == '&') ++end;
    if (end - i > kTokenMark.size()) return false;
    if (end - i == kTokenMark.size()) marks.push_back(i);
    i = end;
  }
  return true;
}

// The buffers of the one-pass fill, kept per thread from one fill to the
// next: the mark positions, and the text being built, which takes over the
// room of the text it replaced.
struct FillScratch {
  std::vector<size_t> marks;
  std::string out;
};

FillScratch& Scratch() {
  thread_local FillScratch scratch;
  return scratch;
}

// The one-pass fill. Its result equals the one-by-one fill when the table
// is usable and
//  - every run of '&' in the text is shorter than three or exactly three
//    long, and the three-runs pair up as openers and closers of tokens; and
//  - the text between one token and the next holds a character that no key
//    name contains, so no key can ever match across two tokens, whichever of
//    them are replaced first.
// Under these conditions every key occurrence, before and after any of the
// replacements, is one of the paired tokens, and the order of the entries
// cannot matter. Returns false, leaving `text` alone, when a condition fails.
bool ReplaceInOnePass(std::string& text, const TokenTable& table) {
  if (!table.usable()) return false;
  FillScratch& scratch = Scratch();
  if (!FindTokenMarks(text, scratch.marks)) return false;
  const std::vector<size_t>& marks = scratch.marks;
  if (marks.empty()) return true;
  if (marks.size() % 2 != 0) return false;
  for (size_t k = 1; k + 1 < marks.size(); k += 2) {
    bool separated = false;
    for (size_t i = marks[k] + kTokenMark.size(); i < marks[k + 1] && !separated; ++i)
      separated = !table.IsNameChar(text[i]);
    if (!separated) return false;
  }

  std::string& out = scratch.out;
  out.clear();
  out.reserve(text.size());
  size_t copied = 0;
  for (size_t k = 0; k < marks.size(); k += 2) {
    const size_t name_start = marks[k] + kTokenMark.size();
    const std::string_view name(text.data() + name_start, marks[k + 1] - name_start);
    const std::string_view* value = table.ValueOf(name);
    if (value == nullptr) continue;
    out.append(text, copied, marks[k] - copied);
    out.append(*value);
    copied = marks[k + 1] + kTokenMark.size();
  }
  if (copied == 0) return true;
  out.append(text, copied, std::string::npos);
  text.swap(out);
  return true;
}

// The entries of a pass over one dictionary, copied out with their token
// table, kept until the dictionary changes: pages fill many small templates
// (one per parameter row) from the same two dictionaries.
class PreparedPass {
 public:
  // Rebuilds from entries 0 .. count - 1 unless the dictionary, the count and
  // the prefix for resource-file keys are those of the last build.
  void Prepare(const vb::Dictionary& entries, int32_t count, const std::string& file_prefix) {
    if (built_ && revision_ == entries.Revision() && count_ == count && prefix_ == file_prefix)
      return;
    keys_.clear();
    values_.clear();
    for (int32_t i = 0; i < count; ++i) {
      keys_.push_back(entries.KeyAt(i).ToText());
      const std::string& item = entries.ItemAt(i);
      values_.push_back(!file_prefix.empty() && IsResourceFileKey(keys_.back()) ? file_prefix + item
                                                                                : item);
    }
    replacements_.clear();
    for (size_t i = 0; i < keys_.size(); ++i) replacements_.push_back({keys_[i], values_[i]});
    table_ = std::make_unique<TokenTable>(replacements_);
    built_ = true;
    revision_ = entries.Revision();
    count_ = count;
    prefix_ = file_prefix;
  }

  void Fill(std::string& text) const {
    if (!ReplaceInOnePass(text, *table_)) ReplaceOneByOne(text, replacements_);
  }

 private:
  bool built_ = false;
  uint64_t revision_ = 0;
  int32_t count_ = 0;
  std::string prefix_;
  std::vector<std::string> keys_;
  std::vector<std::string> values_;
  std::vector<TokenReplacement> replacements_;  // views of keys_ and values_
  std::unique_ptr<TokenTable> table_;
};

}  // namespace

void ReplaceEachInOrder(std::string& text, const std::vector<TokenReplacement>& replacements) {
  thread_local TokenTable table;
  table.Reset(replacements);
  if (!ReplaceInOnePass(text, table)) ReplaceOneByOne(text, replacements);
}

bool IsResourceFileKey(const std::string& key) { return vb::Right(key, 8) == "_File&&&"; }

std::string ResourceFilePrefix(int32_t save_mode, bool chm_mode,
                               const std::string& report_set_path) {
  if (save_mode >= 0 || chm_mode) return "";
  return report_set_path;
}

void FillPlaceHolders(std::string& text, CRessource& res, const std::string& file_prefix) {
  vb::Dictionary& holders = res.PlaceHolder();
  const int32_t count = res.PlaceholderCount();
  if (count <= 0) return;
  // A count beyond the dictionary fails at its first missing entry, after
  // the entries before it did their work: the one-by-one loop shows that.
  if (count > holders.Count()) {
    for (int32_t i = 0; i < count; ++i) {
      const std::string key = holders.KeyAt(i).ToText();
      const std::string& item = holders.ItemAt(i);
      vb::ReplaceAll(text, key,
                     !file_prefix.empty() && IsResourceFileKey(key) ? file_prefix + item : item);
    }
    return;
  }
  thread_local PreparedPass pass;
  pass.Prepare(holders, count, file_prefix);
  pass.Fill(text);
}

void FillSpecificLanguage(std::string& text, CRessource& res) {
  vb::Dictionary& language = res.SpecificLanguage();
  const int32_t count = res.SpecificLanguageCount();
  if (count <= 0) return;
  if (count > language.Count()) {
    for (int32_t i = 0; i < count; ++i)
      vb::ReplaceAll(text, language.KeyAt(i).ToText(), language.ItemAt(i));
    return;
  }
  thread_local PreparedPass pass;
  pass.Prepare(language, count, "");
  pass.Fill(text);
}

std::string LanguageText(CRessource& res, const std::string& key) {
  return res.SpecificLanguage().Item(key);
}

std::string FillTocItem(std::string item, const std::string& caption, const std::string& file) {
  vb::ReplaceAll(item, "&&&TOCCaption&&&", caption);
  vb::ReplaceAll(item, "&&&TOCFile&&&", file);
  return item;
}

}  // namespace folioscope
