#include "pages/project_page.h"

#include <optional>
#include <string>

#include "infra/platform.h"
#include "infra/vb_runtime.h"

namespace folioscope {

namespace {

// Adds one module: its kind to the matching group (kinds compare exactly; an
// unknown kind counts in no group) and its lines to the total.
void CountModule(ModuleCounts& counts, const std::string& kind, int32_t lines) {
  if (const std::optional<ModuleKind> known = ModuleKindOfText(kind)) {
    int32_t& count = counts.of_kind[static_cast<int>(*known)];
    count = vb::AddLong(count, 1);
  }
  counts.total_lines = vb::AddLong(counts.total_lines, lines);
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

void CountModuleAt(ModuleCounts& counts, SourceProject& project, int32_t i) {
  CountModule(counts, project.Components.Item(i).Kind, project.Modules.Item(i).CodeLines.Count());
}

std::string ProjectPageText(CRessource& res, const SourceProject& project,
                            const ModuleCounts& counts, bool with_lines,
                            const std::string& file_prefix) {
  const std::string content = BuildContent(counts, res.SpecificLanguage(), with_lines);
  return FillProjectPage(res, project, content, file_prefix);
}

}  // namespace folioscope
