#include "pages/template_fill.h"

#include <array>
#include <string>

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

// The one-pass fill. Its result equals the one-by-one fill when
//  - every key is a whole token and no value contains "&&&", so no
//    replacement can make a new run of three '&';
//  - every run of '&' in the text is shorter than three or exactly three
//    long, and the three-runs pair up as openers and closers of tokens; and
//  - the text between one token and the next holds a character that no key
//    name contains, so no key can ever match across two tokens, whichever of
//    them are replaced first.
// Under these conditions every key occurrence, before and after any of the
// replacements, is one of the paired tokens, and the order of the entries
// cannot matter. Returns false, leaving `text` alone, when a condition fails.
bool ReplaceInOnePass(std::string& text, const std::vector<TokenReplacement>& replacements) {
  std::array<bool, 256> name_char{};
  for (const auto& r : replacements) {
    if (!IsWholeToken(r.key) || r.value.find(kTokenMark) != std::string_view::npos) return false;
    for (size_t i = kTokenMark.size(); i + kTokenMark.size() < r.key.size(); ++i)
      name_char[static_cast<unsigned char>(r.key[i])] = true;
  }

  // Start positions of the runs of exactly three '&'.
  std::vector<size_t> marks;
  for (size_t i = text.find('&'); i != std::string::npos; i = text.find('&', i)) {
    size_t end = i;
    while (end < text.size() && text[end] == '&') ++end;
    if (end - i > kTokenMark.size()) return false;
    if (end - i == kTokenMark.size()) marks.push_back(i);
    i = end;
  }
  if (marks.empty()) return true;
  if (marks.size() % 2 != 0) return false;
  for (size_t k = 1; k + 1 < marks.size(); k += 2) {
    const size_t from = marks[k] + kTokenMark.size();
    bool separated = false;
    for (size_t i = from; i < marks[k + 1] && !separated; ++i)
      separated = !name_char[static_cast<unsigned char>(text[i])];
    if (!separated) return false;
  }

  std::string out;
  out.reserve(text.size());
  size_t copied = 0;
  for (size_t k = 0; k < marks.size(); k += 2) {
    const size_t name_start = marks[k] + kTokenMark.size();
    const size_t token_end = marks[k + 1] + kTokenMark.size();
    const std::string_view name(text.data() + name_start, marks[k + 1] - name_start);
    for (const auto& r : replacements) {
      if (r.key.size() != name.size() + 2 * kTokenMark.size() ||
          r.key.substr(kTokenMark.size(), name.size()) != name)
        continue;
      out.append(text, copied, marks[k] - copied);
      out.append(r.value);
      copied = token_end;
      break;
    }
  }
  if (copied == 0) return true;
  out.append(text, copied, std::string::npos);
  text.swap(out);
  return true;
}

}  // namespace

void ReplaceEachInOrder(std::string& text, const std::vector<TokenReplacement>& replacements) {
  if (!ReplaceInOnePass(text, replacements)) ReplaceOneByOne(text, replacements);
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
  std::vector<TokenReplacement> replacements;
  std::vector<std::string> keys;      // Long keys as text
  std::vector<std::string> prefixed;  // resource-file values with the prefix
  keys.reserve(count);
  prefixed.reserve(count);
  replacements.reserve(count);
  for (int32_t i = 0; i < count; ++i) {
    const vb::DictKey& key = holders.KeyAt(i);
    std::string_view key_text = key.string_value();
    if (key.is_long()) key_text = keys.emplace_back(key.ToText());
    std::string_view value = holders.ItemAt(i);
    if (!file_prefix.empty() && IsResourceFileKey(std::string(key_text)))
      value = prefixed.emplace_back(file_prefix + holders.ItemAt(i));
    replacements.push_back({key_text, value});
  }
  ReplaceEachInOrder(text, replacements);
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
  std::vector<std::string> keys;  // Long keys as text
  std::vector<TokenReplacement> replacements;
  keys.reserve(count);
  replacements.reserve(count);
  for (int32_t i = 0; i < count; ++i) {
    const vb::DictKey& key = language.KeyAt(i);
    std::string_view key_text = key.string_value();
    if (key.is_long()) key_text = keys.emplace_back(key.ToText());
    replacements.push_back({key_text, language.ItemAt(i)});
  }
  ReplaceEachInOrder(text, replacements);
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
