// The component menu "Menu.htm": the navigation page of the web report's
// left frame. The project name, then five collapsible nodes (classes, forms,
// modules, user controls, property pages), each listing the modules of its
// kind in project order as links into the content frame. Modules of any
// other kind (designers among them) get a page but no menu entry.
#ifndef FOLIOSCOPE_PAGES_COMPONENT_MENU_H_
#define FOLIOSCOPE_PAGES_COMPONENT_MENU_H_

#include <string>

#include "model/source_model.h"
#include "reportsets/ressource.h"

namespace folioscope {

std::string ComponentMenuText(CRessource& res, const SourceProject& project);

}  // namespace folioscope

#endif  // FOLIOSCOPE_PAGES_COMPONENT_MENU_H_
