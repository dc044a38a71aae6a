// The frame page "_Index.htm" and the heading page "Logo.htm" of a web
// report. Both are written during a whole-project save only; neither has a
// preview. Resource-file names go in unprefixed: the copies lie next to the
// pages.
#include <string>

#include "engine/folioscope.h"
#include "engine/object_required.h"
#include "infra/error_handler.h"
#include "infra/vb_runtime.h"

namespace folioscope {

namespace {

constexpr const char* kIndexFile = "_Index.htm";
constexpr const char* kLogoFile = "Logo.htm";

void ApplyDictionary(std::string& page, vb::Dictionary& dictionary, int32_t count) {
  for (int32_t i = 0; i < count; ++i) {
    vb::ReplaceAll(page, dictionary.KeyAt(i).ToText(), dictionary.ItemAt(i));
  }
}

}  // namespace

int32_t CFolioscope::WriteIndex() {
  Trap(kClass, "WriteIndex", [&] {
    CRessource& res = RequireResources(resources_);
    SourceProject& project = RequireProject(Projekt);
    std::string page = res.Index();
    ApplyDictionary(page, res.PlaceHolder(), res.PlaceholderCount());
    // The language texts are deliberately not applied to the frame page.
    vb::ReplaceAll(page, "&&&FS_Index_AnwendungsName&&&",
                   project.Name + " Version " + project.Version);
    WriteTextFile(PlainPath + kPathSeparatorText + kIndexFile, page, false);
    if (chm_mode_) {
      chm_file_list_ += kIndexFile;
      chm_file_list_ += "\r\n";
    }
  });
  return 0;
}

int32_t CFolioscope::WriteLogo() {
  Trap(kClass, "WriteLogo", [&] {
    CRessource& res = RequireResources(resources_);
    std::string page = res.Logo();
    ApplyDictionary(page, res.PlaceHolder(), res.PlaceholderCount());
    // The user's title goes in before the language texts so that it wins;
    // without one the language's own heading fills the placeholder.
    if (!ReportStdTitle.empty()) {
      vb::ReplaceAll(page, "&&&FS_Logo_CodeFolioscope&&&", ReportStdTitle);
    }
    ApplyDictionary(page, res.SpecificLanguage(), res.SpecificLanguageCount());
    // The logo page is not part of the help project's file list.
    WriteTextFile(PlainPath + kPathSeparatorText + kLogoFile, page, false);
  });
  return 0;
}

}  // namespace folioscope
