// The project page: the project's name and version, how many modules of
// each kind it has and how many source lines. GetProjektSite builds it for a
// preview, WriteProjekt writes "Projekt.htm" during a save and on its way
// through the modules has every module page written.
#include <iterator>
#include <memory>
#include <string>

#include "engine/folioscope.h"
#include "engine/object_required.h"
#include "infra/error_handler.h"
#include "infra/fs_communicator.h"
#include "infra/platform.h"
#include "infra/vb_runtime.h"
#include "model/module_kinds.h"

namespace folioscope {

namespace {

constexpr const char* kProjectFile = "Projekt.htm";
constexpr const char* kCrLf = "\r\n";

// Module counts of one project, in the order the page lists them.
struct ModuleCounts {
  int32_t of_kind[std::size(kModuleKindNames)] = {};
  int32_t total_lines = 0;

  int32_t Of(ModuleKind kind) const { return of_kind[static_cast<int>(kind)]; }
};

// Adds one module: its kind to the matching group (kinds compare exactly; an
// unknown kind counts in no group) and its lines to the total.
void CountModule(ModuleCounts& counts, const std::string& kind, int32_t lines) {
  if (const std::optional<ModuleKind> known = ModuleKindOfText(kind)) {
    int32_t& count = counts.of_kind[static_cast<int>(*known)];
    count = vb::AddLong(count, 1);
  }
  counts.total_lines = vb::AddLong(counts.total_lines, lines);
}

// Counts module `i` (1-based): the kind comes from the component entry, the
// lines from the code entry's line dictionary as it stands now.
void CountModuleAt(ModuleCounts& counts, SourceProject& project, int32_t i) {
  CountModule(counts, project.Components.Item(i).Kind, project.Modules.Item(i).CodeLines.Count());
}

// The six group lines and, when `with_lines` is set, the lines-of-code
// sentence.
std::string BuildContent(const ModuleCounts& counts, vb::Dictionary& language, bool with_lines) {
  struct Group {
    const char* label_key;
    int32_t count;
  };
  const Group groups[] = {
      {"&&&FS_Projekt_CountForms&&&", counts.Of(ModuleKind::kForm)},
      {"&&&FS_Projekt_CountModuls&&&", counts.Of(ModuleKind::kModule)},
      {"&&&FS_Projekt_CountClasses&&&", counts.Of(ModuleKind::kClass)},
      {"&&&FS_Projekt_CountUserControls&&&", counts.Of(ModuleKind::kUserControl)},
      {"&&&FS_Projekt_CountPropertyPages&&&", counts.Of(ModuleKind::kPropertyPage)},
      {"&&&FS_Projekt_CountDesigners&&&", counts.Of(ModuleKind::kDesigner)},
  };
  std::string content;
  for (const Group& g : groups) {
    content += language.Item(std::string(g.label_key));
    content += ": ";
    content += vb::CStr(g.count);
    content += (&g == &groups[5]) ? "<br><br>" : "<br>";
  }
  if (with_lines) {
    content += " ";
    content += language.Item(std::string("&&&FS_Projekt_LinesOfCode1&&&"));
    content += " ";
    content += vb::FormatGrouped(counts.total_lines, CurrentPlatform().NumberGroupSeparator());
    content += " ";
    content += language.Item(std::string("&&&FS_Projekt_LinesOfCode2&&&"));
  }
  return content;
}

// Fills the template: report-set values (resource files behind
// `file_prefix`, which is empty for written pages), language texts, then the
// page's own three values.
std::string FillProjectPage(CRessource& res, const SourceProject& project,
                            const std::string& content, const std::string& file_prefix) {
  std::string page = res.Projekt();
  vb::Dictionary& holders = res.PlaceHolder();
  for (int32_t i = 0; i < res.PlaceholderCount(); ++i) {
    const std::string key = holders.KeyAt(i).ToText();
    const std::string& item = holders.ItemAt(i);
    if (!file_prefix.empty() && vb::Right(key, 8) == "_File&&&") {
      vb::ReplaceAll(page, key, file_prefix + item);
    } else {
      vb::ReplaceAll(page, key, item);
    }
  }
  vb::Dictionary& language = res.SpecificLanguage();
  for (int32_t i = 0; i < res.SpecificLanguageCount(); ++i) {
    vb::ReplaceAll(page, language.KeyAt(i).ToText(), language.ItemAt(i));
  }
  vb::ReplaceAll(page, "&&&FS_Projekt_AnwendungsName&&&",
                 project.Name + " Version " + project.Version);
  vb::ReplaceAll(page, "&&&FS_Projekt_Title&&&", project.Name);
  vb::ReplaceAll(page, "&&&FS_Projekt_Inhalt&&&", content);
  return page;
}

}  // namespace

std::string CFolioscope::GetProjektSite() {
  std::string result;
  Trap(kClass, "GetProjektSite", [&] {
    CheckOfReady();
    if (!ready_) return;
    SourceProject& project = RequireProject(Projekt);
    CRessource& res = RequireResources(resources_);
    ModuleCounts counts;
    for (int32_t i = 1; i <= project.Modules.Count(); ++i) CountModuleAt(counts, project, i);
    // The preview shows the lines only when the switch is exactly 1.
    std::string content = BuildContent(counts, res.SpecificLanguage(), ShowLOCForProjects == 1);
    result = FillProjectPage(res, project, content, report_set_path_);
  });
  return result;
}

int32_t CFolioscope::WriteProjekt(int32_t SaveMode) {
  Trap(kClass, "WriteProjekt", [&] {
    CurrentPlatform().PumpMessages();
    SourceProject& project = RequireProject(Projekt);
    if (chm_mode_) {
      chm_file_list_ += kProjectFile;
      chm_file_list_ += kCrLf;
      std::string item = GetTOCItem();
      vb::ReplaceAll(item, "&&&TOCCaption&&&", project.Name);
      vb::ReplaceAll(item, "&&&TOCFile&&&", kProjectFile);
      chm_toc_text_ += item;
      chm_toc_text_ += "<ul>";
    }
    const int32_t count = project.Modules.Count();
    // One step more than modules: the project page itself.
    progress_total_ = vb::AddLong(count, 1);
    ReportStart(progress_total_);
    ModuleCounts counts;
    for (int32_t i = 1; i <= count; ++i) {
      SourceModule& module = project.Modules.Item(i);
      ReportWorks(i, module.Name, true);
      CountModuleAt(counts, project, i);
      WriteModulContentSite(module, SaveMode, i);
    }
    // The written page always carries the lines sentence.
    CRessource& res = RequireResources(resources_);
    std::string content = BuildContent(counts, res.SpecificLanguage(), true);
    std::string page = FillProjectPage(res, project, content, "");
    WriteTextFile(PlainPath + kPathSeparatorText + kProjectFile, page, false);
  });
  return 0;
}

}  // namespace folioscope
