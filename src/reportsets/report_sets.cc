#include "reportsets/report_sets.h"

#include <cmath>

#include "infra/error_handler.h"
#include "infra/file_system.h"
#include "infra/fs_communicator.h"
#include "infra/path_guard.h"
#include "infra/platform.h"
#include "infra/vb_runtime.h"
#include "reportsets/profile_ini.h"

namespace folioscope {

template <typename T>
T& KeyedCollection<T>::Item(int32_t index) const {
  return store_.Item(positions_.Item(vb::Trim(vb::CStr(index))));
}

template <typename T>
T& KeyedCollection<T>::Item(const std::string& index) const {
  double number = 0;
  if (vb::IsNumeric(index, &number)) {
    const std::string text =
        number == std::floor(number) ? vb::CStr(static_cast<int64_t>(number)) : vb::Trim(index);
    return store_.Item(positions_.Item(text));
  }
  return store_.Item(index);
}

template <typename T>
T& KeyedCollection<T>::Add(const std::string& key) {
  const std::string number = vb::CStr(sequence_);
  const std::string store_key = key.empty() ? number : key;
  T& added = store_.Add(std::make_unique<T>(), store_key);
  positions_.Add(std::make_unique<std::string>(store_key), number);
  ++sequence_;
  return added;
}

template class KeyedCollection<CLanguage>;
template class KeyedCollection<CReportSet>;

std::string IndexCommentIniPath() {
  return CurrentPlatform().ApplicationFolder() + kPathSeparator + "Res" + kPathSeparator +
         "IndexComment.ini";
}

std::string ReadIniKey(const std::string& section, const std::string& key,
                       const std::string& ini_file, bool drop_last) {
  std::string buffer(200, ' ');
  GetPrivateProfileStringA(&section, &key, "Unbekannt", buffer, 200, ini_file);
  buffer = vb::Trim(buffer);
  if (drop_last && !buffer.empty()) buffer.pop_back();
  return buffer;
}

namespace {

// The number of sections, counted the way the buffer of all section names
// splits: N names give N + 2 parts.
int32_t SectionListUpperBound(const std::string& ini_file) {
  int32_t length = 0;
  try {
    length = static_cast<int32_t>(ReadFileText(ini_file).size());
  } catch (const vb::RuntimeError&) {
    length = 0;
  }
  const int32_t size = length + 10;
  std::string buffer(static_cast<size_t>(size), ' ');
  GetPrivateProfileStringA(nullptr, nullptr, "Unbekannt", buffer, size, ini_file);
  return static_cast<int32_t>(vb::Split(vb::Trim(buffer), std::string_view("\0", 1)).size()) - 1;
}

}  // namespace

std::string MissingSetMessage(const std::string& set_name, const std::string& folder) {
  return "Der Pfad zum Report-Set '" + set_name +
         "' konnte nicht gefunden werden. Bitte \xFC"
         "berpr\xFC"
         "fen Sie ob der Pfad: " +
         folder +
         " vorhanden ist. Dieser ist zwingend erforderlich. Installieren Sie Quillon "
         "gegebenenfalls neu.";
}

// A set folder is a folder below Res; a "Path" that leads elsewhere is not
// looked at, and the set is left out.
std::string RefusedSetMessage(const std::string& set_name, const std::string& set_path,
                              const std::string& res_folder) {
  return "Der Pfad '" + PrintableName(set_path) + "' des Report-Sets '" + PrintableName(set_name) +
         "' f\xFChrt aus dem Ordner " + res_folder +
         " heraus. Das Report-Set wird nicht aufgenommen.";
}

CReportSets::CReportSets() {
  Trap("CReportSets", "GetReportSetValues", [&] { GetReportSetValues(); });
}

void CReportSets::GetReportSetValues() {
  const std::string ini_file = IndexCommentIniPath();
  if (!CFileSystem().IsDateiVorhanden(ini_file)) return;
  const std::string res_folder =
      CurrentPlatform().ApplicationFolder() + kPathSeparator + "Res" + kPathSeparator;
  const int32_t upper = SectionListUpperBound(ini_file);
  int32_t added = 0;
  for (int32_t i = 2; i <= upper - 1; ++i) {
    const std::string section = "Set" + vb::CStr(i - 1);
    const std::string set_name = ReadIniKey(section, "Name", ini_file);
    const std::string set_path = ReadIniKey(section, "Path", ini_file);
    if (!set_path.empty() && !IsSafeRelativePath(set_path)) {
      AddLog(RefusedSetMessage(set_name, set_path, res_folder), kIconFailure);
      continue;
    }
    const std::string folder = res_folder + NativePath(set_path);
    if (!CFileSystem().IsOrdnerVorhanden(folder)) {
      const std::string message = MissingSetMessage(set_name, folder);
      CurrentPlatform().MessageBox(message, kMbOkOnly | kMbCritical, "Quillon");
      AddLog(message, kIconFailure);
      continue;
    }
    Add(set_path);
    CReportSet& set = Item(added);
    set.SetName(set_name);
    set.SetQuellPath(set_path);
    std::vector<std::string> names =
        vb::Split(ReadIniKey(section, "Languages", ini_file, false), "\\");
    for (size_t k = 0; k < names.size(); ++k) {
      std::string name = names[k];
      if (k + 1 == names.size()) {
        name = vb::Trim(name);
        if (!name.empty()) name.pop_back();
      }
      name = vb::Trim(name);
      set.Languages().Add(name);
      set.Languages().Item(name).SetName(name);
    }
    ++added;
  }
}

}  // namespace folioscope
