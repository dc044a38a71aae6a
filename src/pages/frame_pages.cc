#include "pages/frame_pages.h"

#include <string>

#include "infra/vb_runtime.h"

namespace folioscope {

namespace {

void ApplyDictionary(std::string& page, vb::Dictionary& dictionary, int32_t count) {
  for (int32_t i = 0; i < count; ++i) {
    vb::ReplaceAll(page, dictionary.KeyAt(i).ToText(), dictionary.ItemAt(i));
  }
}

}  // namespace

std::string IndexPageText(CRessource& res, const SourceProject& project) {
  std::string page = res.Index();
  ApplyDictionary(page, res.PlaceHolder(), res.PlaceholderCount());
  // The language texts are deliberately not applied to the frame page.
  vb::ReplaceAll(page, "&&&FS_Index_AnwendungsName&&&",
                 project.Name + " Version " + project.Version);
  return page;
}

std::string LogoPageText(CRessource& res, const std::string& std_title) {
  std::string page = res.Logo();
  ApplyDictionary(page, res.PlaceHolder(), res.PlaceholderCount());
  // The user's title goes in before the language texts so that it wins;
  // without one the language's own heading fills the placeholder.
  if (!std_title.empty()) vb::ReplaceAll(page, "&&&FS_Logo_CodeFolioscope&&&", std_title);
  ApplyDictionary(page, res.SpecificLanguage(), res.SpecificLanguageCount());
  return page;
}

}  // namespace folioscope
