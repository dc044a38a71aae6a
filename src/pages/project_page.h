// The project page: the project's name and version, how many modules of
// each kind it has and how many source lines. A preview counts every module
// at once; a save counts each module as it writes the module's pages.
#ifndef FOLIOSCOPE_PAGES_PROJECT_PAGE_H_
#define FOLIOSCOPE_PAGES_PROJECT_PAGE_H_

#include <cstdint>
#include <iterator>
#include <string>

#include "model/module_kinds.h"
#include "model/source_model.h"
#include "reportsets/ressource.h"

namespace folioscope {

// Module counts of one project, in the order the page lists them.
struct ModuleCounts {
  int32_t of_kind[std::size(kModuleKindNames)] = {};
  int32_t total_lines = 0;

  int32_t Of(ModuleKind kind) const { return of_kind[static_cast<int>(kind)]; }
};

// Counts module `i` (1-based): the kind comes from the component entry (an
// unknown kind counts in no group), the lines from the code entry's line
// dictionary as it stands now.
void CountModuleAt(ModuleCounts& counts, SourceProject& project, int32_t i);

// The page filled from the report set `res`: report-set values (resource
// files behind `file_prefix`), language texts, then the project's name,
// version and counts; the lines-of-code sentence only when `with_lines`.
std::string ProjectPageText(CRessource& res, const SourceProject& project,
                            const ModuleCounts& counts, bool with_lines,
                            const std::string& file_prefix);

}  // namespace folioscope

#endif  // FOLIOSCOPE_PAGES_PROJECT_PAGE_H_
