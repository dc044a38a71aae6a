#include "reportsets/ressource.h"

#include "infra/error_handler.h"
#include "infra/file_system.h"
#include "infra/fs_communicator.h"
#include "infra/path_guard.h"
#include "infra/platform.h"
#include "infra/registry.h"
#include "infra/vb_runtime.h"
#include "reportsets/report_sets.h"

namespace folioscope {
namespace {

// The template keys in load order; position i fills t_[i].
constexpr int kLoadOrder[28] = {5,  4,  6,  7,  8,  28, 9,  1,  2,  11, 12, 3,  10, 13,
                                14, 15, 16, 17, 18, 19, 20, 21, 22, 23, 24, 25, 26, 27};

// Which stored text the emptiness test looks at after loading position i.
// The menu node and entry are judged by the menu head, the type entry by the
// enumeration entry, so those three never fail on their own.
int CheckedPosition(int i) {
  if (i == 9 || i == 10) return 8;  // File11, File12 -> File2
  if (i == 27) return 26;           // File27 -> File26
  return i;
}

std::string ResFolder() {
  return CurrentPlatform().ApplicationFolder() + kPathSeparator + "Res" + kPathSeparator;
}

// The whole file, or "" when it cannot be read.
std::string ReadWholeFile(const std::string& path) {
  try {
    return ReadFileText(path);
  } catch (const vb::RuntimeError&) {
    return std::string();
  }
}

// The file below Res that `name` denotes, read whole; "" when it cannot be
// read or when the name leads out of Res (which is logged).
std::string ReadResFile(const std::string& res_folder, const std::string& name) {
  const std::optional<std::string> path = ResolveInside(res_folder, name);
  if (!path) {
    AddLog(RefusedNameMessage(name, res_folder), kIconFailure);
    return std::string();
  }
  return ReadWholeFile(*path);
}

void ShowAndLog(const std::string& message) {
  CurrentPlatform().MessageBox(message, kMbOkOnly | kMbExclamation, "Quillon");
  AddLog(message, kIconFailure);
}

// Adds the "key = value" entries 1 .. E-1 of a "\"-separated block and
// returns E - 1. Only the first "=" splits; line breaks inside are dropped.
int32_t ReadEntries(const std::string& block, vb::Dictionary& target) {
  const std::vector<std::string> elements = vb::Split(block, "\\");
  const int32_t upper = static_cast<int32_t>(elements.size()) - 1;
  for (int32_t k = 1; k <= upper - 1; ++k) {
    const std::string entry = vb::Replace(elements[static_cast<size_t>(k)], "\r\n", "");
    const int64_t eq = vb::InStr(entry, "=");
    target.Add(vb::Trim(vb::Left(entry, eq - 1)), vb::Trim(vb::Mid(entry, eq + 1)));
  }
  return upper - 1;
}

// True when an element of the language block, stripped of its two framing
// characters on each side, names `language`.
bool NamesLanguage(const std::string& element, const std::string& language) {
  const std::string text = vb::Replace(element, "\r\n", "");
  if (text.size() < 4) return false;
  return vb::Trim(vb::Mid(text, 3, static_cast<int64_t>(text.size()) - 4)) == language;
}

}  // namespace

// Windows-1252 texts: \xFC u-umlaut, \xDF sharp s, \xF6 o-umlaut, \xE4 a-umlaut.
std::string RefusedNameMessage(const std::string& name, const std::string& res_folder) {
  return "Der Dateiname '" + PrintableName(name) + "' des Report-Sets f\xFChrt aus dem Ordner " +
         res_folder + " heraus. Die Datei wird nicht gelesen.";
}

std::string MissingIniMessage(const std::string& ini_file) {
  return "Die Initialisierungsdatei f\xFCr Report-Sets 'IndexComment.ini' konnte nicht geladen "
         "werden. Diese Datei steuert den Zugriff auf praktisch alle Report-Sets und ist unbedingt "
         "erforderlich. Sie mu\xDF sich zwingend im Ordner: \r\n" +
         ini_file +
         " befinden.\r\n\r\nWenn Sie die Datei nicht manuell wiederherstellen k\xF6nnen, "
         "installieren Sie Quillon neu.";
}

std::string UnloadedFilesMessage(const std::string& set_folder, const std::string& failures) {
  return "Eine oder mehrere Dateien des aktuellen Report-Sets unter der Pfadangabe " + set_folder +
         " konnten nicht geladen werden. Die Dateien fehlen oder sind besch\xE4"
         "digt. Folgende "
         "Datei(en) sind betroffen:\r\n" +
         failures;
}

std::string MissingDescriptionMessage(const std::string& path) {
  return "Die Beschreibungsdatei f\xFCr das Layout-Set unter der Pfadangabe: " + path +
         " konnte nicht ge\xF6"
         "ffnet bzw. geladen werden. Der Vorgang wird abgebrochen.\r\n"
         "Stellen Sie sicher, dass sich die Datei im angegebenen Ordner befindet.";
}

CRessource::CRessource() {
  CRegistry registry;
  report_path_ = registry.ReadRegString(kHkeyCurrentUser, kCurrentReportKey, "ReportPath", "");
  report_language_ =
      vb::Trim(registry.ReadRegString(kHkeyCurrentUser, kCurrentReportKey, "ReportLanguage", ""));
  bool ok = false;
  Trap("CRessource", "GetRessourceFileNames", [&] { ok = GetRessourceFileNames(); });
  if (!ok) return;
  ok = false;
  Trap("CRessource", "GetRessourceContents", [&] { ok = GetRessourceContents(); });
  if (!ok) return;
  ok = false;
  Trap("CRessource", "GetRessourceDescription", [&] { ok = GetRessourceDescription(); });
  ready_ = ok;
}

bool CRessource::GetRessourceFileNames() {
  const std::string ini_file = IndexCommentIniPath();
  if (report_path_.empty()) return false;
  if (!IsSafeRelativePath(report_path_)) {
    AddLog(RefusedNameMessage(report_path_, ResFolder()), kIconFailure);
    return false;
  }
  if (!CFileSystem().IsDateiVorhanden(ini_file)) {
    ShowAndLog(MissingIniMessage(ini_file));
    return false;
  }
  for (int n = 1; n <= 28; ++n) {
    const std::string key = "File" + vb::CStr(n);
    file_names_.Add(key, ReadIniKey(report_path_, key, ini_file));
  }
  return true;
}

bool CRessource::GetRessourceContents() {
  const std::string base = ResFolder();
  crypt_.SetPassword(kTemplatePassword);
  std::string failures;
  for (int i = 0; i < 28; ++i) {
    const std::string key = "File" + vb::CStr(kLoadOrder[i]);
    const std::string name = file_names_.Item(key);
    const std::string path = base + NativePath(PrintableName(name));
    t_[i] = vb::Trim(crypt_.DecryptString(ReadResFile(base, name), ""));
    if (t_[CheckedPosition(i)].empty()) failures += path + "\r\n";
  }
  if (failures.empty()) return true;
  ShowAndLog(UnloadedFilesMessage(base + report_path_, failures));
  return false;
}

bool CRessource::GetRessourceDescription() {
  const std::string path =
      ResFolder() + NativePath(report_path_) + kPathSeparator + "Description.dat";
  crypt_.SetPassword(kTemplatePassword);
  const std::string text = vb::Trim(
      crypt_.DecryptString(ReadResFile(ResFolder(), report_path_ + "\\Description.dat"), ""));
  if (text.empty()) {
    ShowAndLog(MissingDescriptionMessage(path));
    return false;
  }
  const std::vector<std::string> blocks = vb::Split(text, "}");
  const int32_t last_block = static_cast<int32_t>(blocks.size()) - 1;
  placeholder_count_ = ReadEntries(blocks[0], place_holder_);

  size_t chosen = 0;
  for (int32_t b = 1; b <= last_block - 1; ++b) {
    for (const std::string& element : vb::Split(blocks[static_cast<size_t>(b)], "\\")) {
      if (NamesLanguage(element, report_language_)) {
        chosen = static_cast<size_t>(b);
        break;
      }
    }
  }
  if (chosen == 0) chosen = 1;
  if (chosen >= blocks.size()) vb::Raise(vb::kSubscriptOutOfRange);
  specific_language_count_ = ReadEntries(blocks[chosen], specific_language_);
  return true;
}

}  // namespace folioscope
