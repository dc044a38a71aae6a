#include "cli/output_folder.h"

#include <filesystem>
#include <fstream>
#include <system_error>

#include "cli/host.h"
#include "infra/os_path.h"

namespace folioscope {

namespace fs = std::filesystem;

namespace {

constexpr const char* kMarkerText =
    "This folder holds a report written by folioscope, which may replace and delete the files "
    "it wrote here.\n";

}  // namespace

OutputFolderState InspectOutputFolder(const std::string& folder) {
  OutputFolderState state;
  std::error_code ec;
  const fs::path path(OsPath(folder.empty() ? std::string(".") : folder));
  const fs::file_status status = fs::status(path, ec);
  if (status.type() == fs::file_type::not_found) return state;
  if (status.type() != fs::file_type::directory) {
    state.kind = OutputFolderState::kNotAFolder;
    return state;
  }
  bool marked = false;
  for (fs::directory_iterator it(path, ec), end; !ec && it != end; it.increment(ec)) {
    const std::string name = PathFromOs(it->path().filename().string());
    if (name == kReportMarkerName) {
      marked = true;
    } else if (state.first_foreign.empty() || name < state.first_foreign) {
      state.first_foreign = name;
    }
  }
  if (ec) {
    // An unreadable folder cannot be shown to be free.
    state.kind = OutputFolderState::kForeign;
    if (state.first_foreign.empty()) state.first_foreign = "(" + ec.message() + ")";
    return state;
  }
  if (marked) {
    state.kind = OutputFolderState::kReport;
    state.first_foreign.clear();
  } else if (!state.first_foreign.empty()) {
    state.kind = OutputFolderState::kForeign;
  }
  return state;
}

bool MarkReportFolder(const std::string& folder) {
  std::error_code ec;
  const fs::path path(OsPath(folder.empty() ? std::string(".") : folder));
  if (!fs::is_directory(path, ec)) return true;
  const fs::path marker = path / kReportMarkerName;
  if (fs::exists(fs::symlink_status(marker, ec))) return true;
  std::ofstream out(marker, std::ios::binary);
  out << kMarkerText;
  return static_cast<bool>(out);
}

bool ClaimOutputFolder(Host& host, const std::string& folder, bool force) {
  const OutputFolderState state = InspectOutputFolder(folder);
  if (state.kind == OutputFolderState::kNotAFolder) {
    host.Fail(kExitUsage, "the output folder '" + folder + "' exists and is not a folder");
    return false;
  }
  if (state.kind == OutputFolderState::kForeign && !force) {
    host.Fail(kExitUsage, "the output folder '" + folder +
                              "' is not empty and holds no earlier report of folioscope (first "
                              "foreign entry: '" +
                              state.first_foreign +
                              "'); choose an empty or new folder, or pass --force to write "
                              "into it all the same");
    return false;
  }
  if (!MarkReportFolder(folder)) {
    host.Fail(kExitUsage, "cannot write the report marker into '" + folder + "'");
    return false;
  }
  return true;
}

}  // namespace folioscope
