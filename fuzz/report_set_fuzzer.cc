// The decryptor and the template loader on a whole report set built from
// the input. Parts: 1 Res/IndexComment.ini as it stands; 2 the registry's
// ReportPath and ReportLanguage, a line each; 3 the plain Description.dat of
// Res/Set; 4 to 6 the files Res/Set/a.htm, b.htm and c.htm. The harness
// encrypts parts 3 to 6, except a part that starts with '!', whose remaining
// bytes are stored as they are (undecryptable or short files).
//
// The cipher itself must round-trip any text under any password.
#include <filesystem>
#include <string>
#include <system_error>

#include "fuzz_support.h"
#include "infra/registry.h"
#include "reportsets/ressource.h"
#include "reportsets/winapi_crypt.h"

namespace folioscope::fuzzing {
namespace {

std::string Stored(const std::string& part) {
  if (!part.empty() && part[0] == '!') return part.substr(1);
  return CWinAPICrypt().EncryptString(part, kTemplatePassword);
}

void CheckTemplates(const CRessource& ressource) {
  const std::string* texts[] = {&ressource.MemberInhaltOben(),
                                &ressource.ModulInhaltMitte(),
                                &ressource.Projekt(),
                                &ressource.Index(),
                                &ressource.Logo(),
                                &ressource.DDMemberUnten(),
                                &ressource.DDHTMLSeiteUnten(),
                                &ressource.TagEndTable(),
                                &ressource.DDEnum(),
                                &ressource.DDType(),
                                &ressource.IndexFrameLinksKnoten()};
  for (const std::string* text : texts) Touch(*text);
}

void CheckCipher(const std::string& text, const std::string& password) {
  if (password.empty()) return;
  CWinAPICrypt crypt;
  const std::string secret = crypt.EncryptString(text, password);
  Check(secret.size() == text.size(), "cipher keeps the length");
  Check(CWinAPICrypt().DecryptString(secret, password) == text, "cipher round-trips");
}

}  // namespace
}  // namespace folioscope::fuzzing

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace folioscope;
  using namespace folioscope::fuzzing;
  FuzzEnvironment& environment = FuzzEnvironment::Get();
  const std::vector<std::string> parts = SplitParts(AsText(data, size), 6);
  if (CouldLeaveFolder(parts[0]) || CouldLeaveFolder(parts[1])) return -1;
  const size_t line_end = parts[1].find('\n');
  const std::string report_path = parts[1].substr(0, line_end);
  const std::string language =
      line_end == std::string::npos ? std::string() : parts[1].substr(line_end + 1);

  const std::string res = environment.folder() + "/Res";
  WriteFile(res + "/IndexComment.ini", parts[0]);
  WriteFile(res + "/Set/Description.dat", Stored(parts[2]));
  WriteFile(res + "/Set/a.htm", Stored(parts[3]));
  WriteFile(res + "/Set/b.htm", Stored(parts[4]));
  WriteFile(res + "/Set/c.htm", Stored(parts[5]));
  CRegistry registry(&environment.platform().registry);
  registry.SaveRegString(kHkeyCurrentUser, kCurrentReportKey, "ReportPath", report_path);
  registry.SaveRegString(kHkeyCurrentUser, kCurrentReportKey, "ReportLanguage", language);

  environment.BeginInput();
  {
    CRessource ressource;
    CheckTemplates(ressource);
    if (ressource.Ready()) {
      Check(ressource.PlaceholderCount() <= ressource.PlaceHolder().Count(),
            "placeholder count within the entries");
      Check(ressource.SpecificLanguageCount() <= ressource.SpecificLanguage().Count(),
            "language entry count within the entries");
    }
  }
  CheckCipher(parts[2], language);
  environment.EndInput();

  std::error_code error;
  std::filesystem::remove_all(res, error);
  return 0;
}
