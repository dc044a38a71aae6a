// The frame page "_Index.htm" and the heading page "Logo.htm" of a web
// report. Both are written during a whole-project save only; neither has a
// preview. Resource-file names go in unprefixed: the copies lie next to the
// pages.
#ifndef FOLIOSCOPE_PAGES_FRAME_PAGES_H_
#define FOLIOSCOPE_PAGES_FRAME_PAGES_H_

#include <string>

#include "model/source_model.h"
#include "reportsets/ressource.h"

namespace folioscope {

// The frame page: report-set values and the project's name and version; no
// language texts.
std::string IndexPageText(CRessource& res, const SourceProject& project);

// The heading page: report-set values, the user's title `std_title` (when
// not empty), then the language texts.
std::string LogoPageText(CRessource& res, const std::string& std_title);

}  // namespace folioscope

#endif  // FOLIOSCOPE_PAGES_FRAME_PAGES_H_
