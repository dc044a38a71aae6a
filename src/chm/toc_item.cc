// The table-of-contents item that page writers fill in a help-file build.
#include <string>

#include "engine/folioscope.h"

namespace folioscope {

std::string CFolioscope::GetTOCItem() {
  return "<LI> <OBJECT type=\"text/sitemap\">\r\n"
         "<param name=\"Name\" value=\"&&&TOCCaption&&&\">\r\n"
         "<param name=\"Local\" value=\"&&&TOCFile&&&\">\r\n"
         "</OBJECT>\r\n";
}

}  // namespace folioscope
