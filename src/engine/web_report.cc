// The web report driver: SaveReport prepares the output folder, copies the
// report set's resource files next to the pages (WriteFileRessources) and
// calls the page writers for the whole project, one module or one member.
#include <memory>
#include <optional>
#include <string>

#include "chm/compile_run.h"
#include "engine/folioscope.h"
#include "infra/error_handler.h"
#include "infra/file_system.h"
#include "infra/fs_communicator.h"
#include "infra/path_guard.h"
#include "infra/platform.h"
#include "infra/vb_runtime.h"
#include "pages/object_required.h"
#include "pages/search_index.h"

namespace folioscope {

namespace {

constexpr const char* kCrLf = "\r\n";

const char kMissingCompilerMessage[] =
    "Die Datei 'hhc.exe' konnte nicht im Anwendungsordner gefunden werden. Diese ist "
    "f\xFCr die Erstellung von CHM-Dateien unbedingt erforderlich. Der Web-Report konnte "
    "nicht kompiliert werden.";

// The output folder as the caller gave it: the sub-folder name appended
// without a separator (the caller supplies it), then every doubled
// separator collapsed once, as VB's Replace does.
std::string CombineOutputPath(const std::string& plain_path, const std::string& folder_name) {
  std::string path = plain_path;
  if (!folder_name.empty()) path += folder_name;
  const std::string single(1, kPathSeparator);
  return vb::Replace(path, single + single, single);
}

// Resource names come from the report set's Description.dat: a name is
// copied only from below the report-set folder and only to below the output
// folder; anything else is left out with one of these lines.
std::string RefusedResourceMessage(const std::string& name, const std::string& folder) {
  return "Die Ressourcendatei '" + PrintableName(name) +
         "' des Report-Sets wird nicht kopiert: " + "der Name f\xFChrt aus dem Ordner " + folder +
         " heraus.";
}

// The search index is written like a page: a name that would leave the
// output folder is refused with this line.
std::string RefusedIndexMessage(const std::string& name, const std::string& folder) {
  return "Der Suchindex '" + PrintableName(name) +
         "' des Report-Sets wird nicht geschrieben: " + "der Name f\xFChrt aus dem Ordner " +
         folder + " heraus.";
}

}  // namespace

int32_t CFolioscope::SaveReport(int32_t SaveMode) {
  // Pages written to disk refer to the resource copies next to them, so the
  // report-set prefix is cleared for the save and restored afterwards.
  std::string preview_prefix;
  bool prefix_cleared = false;
  Trap(kClass, "SaveReport", [&] {
    CheckOfReady();
    if (!ready_) return;
    save_mode_ = SaveMode;
    if (PlainPath.empty()) return;
    PlainPath = CombineOutputPath(PlainPath, FolderName);
    if (Projekt == nullptr) return;
    if (!chm_mode_) written_files_.clear();
    if (!file_system_->IsOrdnerVorhanden(PlainPath)) MakeFolder(PlainPath);
    preview_prefix = report_set_path_;
    report_set_path_.clear();
    prefix_cleared = true;
    WriteFileRessources();
    const auto mode = static_cast<enum SaveMode>(SaveMode);
    if (mode == SaveMode::kWholeProject) {
      WriteLogo();
      WriteIndex();
      WriteComponentMenu();
      page_writer_ = std::make_unique<PageWriter>();
      if (WantsSearchIndex()) search_index_ = std::make_unique<SearchIndex>();
      WriteProjekt(SaveMode);
      WriteSearchIndex();
    } else if (mode == SaveMode::kOneModule) {
      SourceModule& module = Projekt->Modules.Item(ModuleName);
      WriteModulContentSite(module, SaveMode, 0);
    } else if (mode == SaveMode::kOneMember) {
      SourceModule& module = Projekt->Modules.Item(ModuleName);
      SourceMember& member = module.Members.Item(MemberName);
      WriteMemberContentSite(member, ModuleName, false);
    }
  });
  FinishPageWriter();
  search_index_.reset();
  if (prefix_cleared) report_set_path_ = preview_prefix;
  save_mode_ = -1;
  return 0;
}

int32_t CFolioscope::WriteFileRessources() {
  std::string hint;
  try {
    CopyResourceFiles(RequireResources(resources_.get()), hint);
    if (chm_mode_) CopyHelpCompiler(hint);
  } catch (const std::exception& e) {
    CErrorHandler::Instance().Report(AsRuntimeError(e), "WriteFileRessources", 0, hint, kClass);
  }
  return 0;
}

void CFolioscope::CopyResourceFiles(CRessource& res, std::string& hint) {
  const std::string report_path =
      registry_->ReadRegString(kHkeyCurrentUser, kCurrentReportKey, "ReportPath", "");
  const std::string source_folder = CurrentPlatform().ApplicationFolder() + kPathSeparatorText +
                                    "Res" + kPathSeparatorText + report_path;
  // The readiness check refuses such a ReportPath already; it is read
  // again here, so it is checked again.
  const bool set_inside = IsSafeRelativePath(report_path);
  vb::Dictionary& holders = res.PlaceHolder();
  for (int32_t i = 0; i < res.PlaceholderCount(); ++i) {
    if (vb::Right(holders.KeyAt(i).ToText(), 8) != "_File&&&") continue;
    const std::string name = holders.ItemAt(i);
    const std::optional<std::string> from =
        set_inside ? ResolveInside(source_folder, name) : std::nullopt;
    const std::optional<std::string> to = ResolveInside(PlainPath, name);
    if (!from || !to) {
      AddLog(RefusedResourceMessage(name, !from ? source_folder : PlainPath), kIconFailure);
      continue;
    }
    CopyReportFile(*from, *to, hint);
    // A file named twice is copied twice but listed once.
    if (chm_mode_ && vb::InStr(chm_file_list_, name) == 0) ListHelpFile(name);
  }
}

void CFolioscope::CopyHelpCompiler(std::string& hint) {
  const HelpCompiler compiler = CurrentPlatform().FindHelpCompiler();
  if (compiler.path.empty()) {
    AddLog(kMissingCompilerMessage, kIconFailure);
    CurrentPlatform().MessageBox(kMissingCompilerMessage, kMbOkOnly | kMbExclamation, "Quillon");
    return;
  }
  // chmcmd runs from where it is installed; hhc.exe is run from a copy.
  if (compiler.runs_beside_pages) {
    CopyReportFile(compiler.path, PlainPath + kPathSeparatorText + "hhc.exe", hint);
  }
}

void CFolioscope::CopyReportFile(const std::string& source, const std::string& target,
                                 std::string& hint) {
  hint = "Quelldatei = " + source + kCrLf + "Zieldatei = " + target;
  CopyFileOver(source, target);
  written_files_.insert(target);
  hint.clear();
}

bool CFolioscope::WantsSearchIndex() {
  // Exists, not Item: reading an absent key would add it to the set's values.
  return !chm_mode_ && resources_ != nullptr &&
         resources_->PlaceHolder().Exists(vb::DictKey::String(SearchIndex::kPlaceholderKey));
}

int32_t CFolioscope::WriteSearchIndex() {
  Trap(kClass, "WriteSearchIndex", [&] {
    if (search_index_ == nullptr) return;
    CRessource& res = RequireResources(resources_.get());
    const std::string stem = vb::Trim(res.PlaceHolder().Item(SearchIndex::kPlaceholderKey));
    const std::optional<std::string> names = ResolveInside(PlainPath, stem + ".js");
    const std::optional<std::string> texts = ResolveInside(PlainPath, stem + "-text.js");
    if (stem.empty() || !names || !texts) {
      AddLog(RefusedIndexMessage(stem, PlainPath), kIconFailure);
      return;
    }
    WriteTextFile(*names, search_index_->NamesScript(), false);
    WriteTextFile(*texts, search_index_->TextsScript(), false);
  });
  return 0;
}

}  // namespace folioscope
