// Filling report-set templates: the placeholder pass over the PlaceHolder
// and SpecificLanguage dictionaries, single language texts and the
// table-of-contents entry of a page. The page file names live in
// chm/help_topics.h.
//
// A placeholder is a whole token "&&&Name&&&"; filling is a plain,
// case-sensitive replace-all, dictionary entry by dictionary entry in
// insertion order. PlaceHolder keys ending in "_File&&&" name resource files
// of the report set: a preview page puts the report-set folder in front of
// them so the browser loads them from the set itself, a page written to disk
// uses the copies next to it and gets no prefix.
#ifndef FOLIOSCOPE_PAGES_TEMPLATE_FILL_H_
#define FOLIOSCOPE_PAGES_TEMPLATE_FILL_H_

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "reportsets/ressource.h"

namespace folioscope {

// One entry of a placeholder pass.
struct TokenReplacement {
  std::string_view key;
  std::string_view value;
};

// Replaces every occurrence of each key by its value, entry by entry in the
// given order: exactly what one plain replace-all per entry gives, including
// texts whose replacements create or destroy other keys' occurrences. When
// every key is a whole token "&&&Name&&&" and the text's tokens stand apart,
// the text is scanned once and tokens are looked up; otherwise each key is
// searched in turn.
void ReplaceEachInOrder(std::string& text, const std::vector<TokenReplacement>& replacements);

// True for a PlaceHolder key naming a resource file (last 8 characters
// "_File&&&").
bool IsResourceFileKey(const std::string& key);

// The prefix for resource-file keys: empty while pages are written to disk
// (a save or a help-file build is running), else the report-set folder.
std::string ResourceFilePrefix(int32_t save_mode, bool chm_mode,
                               const std::string& report_set_path);

// Replaces every PlaceHolder key (entries 0 .. PlaceholderCount - 1) in
// `text`; resource-file keys get `file_prefix` in front of their value.
void FillPlaceHolders(std::string& text, CRessource& res, const std::string& file_prefix);

// Replaces every SpecificLanguage key (entries 0 .. SpecificLanguageCount - 1)
// in `text` by its text.
void FillSpecificLanguage(std::string& text, CRessource& res);

// The report language's text stored under `key`. Like every dictionary read,
// an absent key is added with an empty text.
std::string LanguageText(CRessource& res, const std::string& key);

// A table-of-contents item template with caption and file filled in.
std::string FillTocItem(std::string item, const std::string& caption, const std::string& file);

}  // namespace folioscope

#endif  // FOLIOSCOPE_PAGES_TEMPLATE_FILL_H_
