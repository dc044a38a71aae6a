#include "pages/component_menu.h"

#include <string>

#include "infra/vb_runtime.h"
#include "model/module_kinds.h"

namespace folioscope {

namespace {

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

std::string ComponentMenuText(CRessource& res, const SourceProject& project) {
  std::string menu = res.IndexFrameLinksOben();
  vb::ReplaceAll(menu, "&&&FS_FrameLinksOben_ProjektName&&&", project.Name);
  for (const MenuNode& node : kMenuNodes) AppendNode(menu, res, project, node);
  // Report-set values go in after assembly, so they may also stand inside
  // the node and link templates.
  vb::Dictionary& holders = res.PlaceHolder();
  for (int32_t i = 0; i < res.PlaceholderCount(); ++i) {
    vb::ReplaceAll(menu, holders.KeyAt(i).ToText(), holders.ItemAt(i));
  }
  return menu + res.IndexFrameLinksUnten();
}

}  // namespace folioscope
