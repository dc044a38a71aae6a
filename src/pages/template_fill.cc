#include "pages/template_fill.h"

#include <string>

#include "infra/dictionary.h"
#include "infra/vb_runtime.h"

namespace folioscope {

bool IsResourceFileKey(const std::string& key) { return vb::Right(key, 8) == "_File&&&"; }

std::string ResourceFilePrefix(int32_t save_mode, bool chm_mode,
                               const std::string& report_set_path) {
  if (save_mode >= 0 || chm_mode) return "";
  return report_set_path;
}

void FillPlaceHolders(std::string& text, CRessource& res, const std::string& file_prefix) {
  vb::Dictionary& holders = res.PlaceHolder();
  const int32_t count = res.PlaceholderCount();
  for (int32_t i = 0; i < count; ++i) {
    const std::string key = holders.KeyAt(i).ToText();
    const std::string& item = holders.ItemAt(i);
    if (!file_prefix.empty() && IsResourceFileKey(key)) {
      vb::ReplaceAll(text, key, file_prefix + item);
    } else {
      vb::ReplaceAll(text, key, item);
    }
  }
}

void FillSpecificLanguage(std::string& text, CRessource& res) {
  vb::Dictionary& language = res.SpecificLanguage();
  const int32_t count = res.SpecificLanguageCount();
  for (int32_t i = 0; i < count; ++i) {
    vb::ReplaceAll(text, language.KeyAt(i).ToText(), language.ItemAt(i));
  }
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
