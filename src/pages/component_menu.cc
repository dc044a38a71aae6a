// The component menu "Menu.htm": the navigation page of the web report's
// left frame. The project name, then five collapsible nodes (classes, forms,
// modules, user controls, property pages), each listing the modules of its
// kind in project order as links into the content frame. Modules of any
// other kind (designers among them) get a page but no menu entry.
#include <string>

#include "engine/folioscope.h"
#include "engine/object_required.h"
#include "infra/error_handler.h"
#include "infra/vb_runtime.h"
#include "model/module_kinds.h"

namespace folioscope {

namespace {

constexpr const char* kMenuFile = "Menu.htm";

struct MenuNode {
  ModuleKind kind;
  const char* caption_key;
  const char* icon_id;
  const char* element_id;
};

constexpr MenuNode kMenuNodes[] = {
    {ModuleKind::kClass, "&&&FS_FrameLinksUnten_Classes&&&", "MenuIcon1", "Element1"},
    {ModuleKind::kForm, "&&&FS_FrameLinksUnten_Forms&&&", "MenuIcon2", "Element2"},
    {ModuleKind::kModule, "&&&FS_FrameLinksUnten_Moduls&&&", "MenuIcon3", "Element3"},
    {ModuleKind::kUserControl, "&&&FS_FrameLinksUnten_UserControls&&&", "MenuIcon4", "Element4"},
    {ModuleKind::kPropertyPage, "&&&FS_FrameLinksUnten_PropertyPages&&&", "MenuIcon5", "Element5"},
};

// One node head and its module links, closed by the "</DIV>" that ends the
// element the node head opens. The head is written even without modules.
void AppendNode(std::string& menu, CRessource& res, const SourceProject& project,
                const MenuNode& node) {
  std::string head = res.IndexFrameLinksKnoten();
  vb::ReplaceAll(head, "&&&FS_FrameLinksKnoten_ModuleTyp&&&",
                 res.SpecificLanguage().Item(std::string(node.caption_key)));
  vb::ReplaceAll(head, "&&&FS_FrameLinksKnoten_MenuIconX&&&", node.icon_id);
  vb::ReplaceAll(head, "&&&FS_FrameLinksKnoten_ElementX&&&", node.element_id);
  menu += head;
  for (int32_t i = 1; i <= project.Components.Count(); ++i) {
    const SourceComponent& component = project.Components.Item(i);
    if (ModuleKindOfText(component.Kind) != node.kind) continue;
    std::string line = res.IndexFrameLinksModul();
    vb::ReplaceAll(line, "&&&FS_FrameLinksModul_InhaltsFrame&&&", component.Name + ".htm");
    vb::ReplaceAll(line, "&&&FS_FrameLinksModul_ModulName&&&", component.Name);
    menu += line;
  }
  menu += "</DIV>\r\n";
}

}  // namespace

int32_t CFolioscope::WriteComponentMenu() {
  Trap(kClass, "WriteComponentMenu", [&] {
    CRessource& res = RequireResources(resources_);
    SourceProject& project = RequireProject(Projekt);
    std::string menu = res.IndexFrameLinksOben();
    vb::ReplaceAll(menu, "&&&FS_FrameLinksOben_ProjektName&&&", project.Name);
    for (const MenuNode& node : kMenuNodes) AppendNode(menu, res, project, node);
    // Report-set values go in after assembly, so they may also stand inside
    // the node and link templates.
    vb::Dictionary& holders = res.PlaceHolder();
    for (int32_t i = 0; i < res.PlaceholderCount(); ++i) {
      vb::ReplaceAll(menu, holders.KeyAt(i).ToText(), holders.ItemAt(i));
    }
    menu += res.IndexFrameLinksUnten();
    WriteTextFile(PlainPath + kPathSeparatorText + kMenuFile, menu, false);
    if (chm_mode_) {
      chm_file_list_ += kMenuFile;
      chm_file_list_ += "\r\n";
    }
  });
  return 0;
}

}  // namespace folioscope
