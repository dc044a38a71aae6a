// The Description.dat parser: a complete report set "Mini" is laid out once;
// each input becomes its encrypted Description.dat. The first input line is
// the chosen report language, the rest the description text.
#include <string>

#include "fuzz_support.h"
#include "infra/registry.h"
#include "reportsets/ressource.h"
#include "reportsets/winapi_crypt.h"

namespace folioscope::fuzzing {
namespace {

std::string Encrypted(const std::string& plain) {
  return CWinAPICrypt().EncryptString(plain, kTemplatePassword);
}

void LayOutMiniSet(const std::string& res) {
  std::string ini = "[Set1]\r\nName=Mini\r\nPath=Mini\r\nLanguages=Deutsch\\English\r\n[Mini]\r\n";
  for (int n = 1; n <= 28; ++n) {
    const std::string name = "f" + std::to_string(n) + ".htm";
    ini += "File" + std::to_string(n) + "=Mini\\" + name + "\r\n";
    WriteFile(res + "/Mini/" + name, Encrypted("<p>" + std::to_string(n) + "</p>"));
  }
  WriteFile(res + "/IndexComment.ini", ini);
}

void CheckDictionary(vb::Dictionary& dictionary) {
  for (int32_t i = 0; i < dictionary.Count(); ++i) {
    Touch(dictionary.KeyAt(i).ToText());
    Touch(dictionary.ItemAt(i));
  }
}

}  // namespace
}  // namespace folioscope::fuzzing

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace folioscope;
  using namespace folioscope::fuzzing;
  FuzzEnvironment& environment = FuzzEnvironment::Get();
  const std::string res = environment.folder() + "/Res";
  static const bool laid_out = [&] {
    LayOutMiniSet(res);
    return true;
  }();
  (void)laid_out;

  const std::string text = AsText(data, size);
  const size_t line_end = text.find('\n');
  const std::string language = text.substr(0, line_end);
  const std::string description =
      line_end == std::string::npos ? std::string() : text.substr(line_end + 1);
  CRegistry registry(&environment.platform().registry);
  registry.SaveRegString(kHkeyCurrentUser, kCurrentReportKey, "ReportPath", "Mini");
  registry.SaveRegString(kHkeyCurrentUser, kCurrentReportKey, "ReportLanguage", language);
  WriteFile(res + "/Mini/Description.dat", Encrypted(description));

  environment.BeginInput();
  {
    CRessource ressource;
    CheckDictionary(ressource.PlaceHolder());
    CheckDictionary(ressource.SpecificLanguage());
    // The page writers walk entries 0 .. count - 1 by position.
    if (ressource.Ready()) {
      Check(ressource.PlaceholderCount() <= ressource.PlaceHolder().Count(),
            "placeholder count within the entries");
      Check(ressource.SpecificLanguageCount() <= ressource.SpecificLanguage().Count(),
            "language entry count within the entries");
    }
  }
  environment.EndInput();
  return 0;
}
