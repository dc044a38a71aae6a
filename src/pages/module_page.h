// The module page: a head with the module's kind, name, optional file facts
// and summary, one line per listed member, and a foot with the remarks. The
// report object assembles it from the pieces below, in their order, and
// writes the pages of the listed members between the lines.
//
// The module summary and remarks are the blocks of member 1, the
// declarations section.
#ifndef FOLIOSCOPE_PAGES_MODULE_PAGE_H_
#define FOLIOSCOPE_PAGES_MODULE_PAGE_H_

#include <cstdint>
#include <string>
#include <vector>

#include "model/source_model.h"
#include "pages/report_context.h"
#include "reportsets/ressource.h"

namespace folioscope {

// The switches the module page reads, taken once when the page begins. Some
// count as on at exactly 1, others at any positive value; each use keeps
// its own rule.
struct ModuleSwitches {
  int32_t module_path;
  int32_t relative_path;
  int32_t lines;
  int32_t help_context;
  int32_t intern_description;
  int32_t public_members;
  int32_t friend_members;
  int32_t private_members;
};

ModuleSwitches ModuleSwitchesOf(const ReportSettings& settings);

// The filled head of `module`'s page; `foot` receives the foot template with
// the report-set values already in place. The module goes into the
// context's search index when there is one.
std::string ModulePageHead(const ReportContext& context, SourceModule& module,
                           const ModuleSwitches& sw, std::string& foot);

// The members the page lists, as 1-based indexes in collection order. The
// scope tests are separate on purpose: the list keeps source order,
// filtered, not grouped.
std::vector<int32_t> ListedMemberIndexes(SourceModule& module, const ModuleSwitches& sw);

// The line of member `index` of module `module_name` in the context's
// project. A line without `link` names the member where the link would go;
// a line with one is a line whose member page the save writes, and its
// member goes into the context's search index when there is one.
std::string MemberLineText(const ReportContext& context, const std::string& module_name,
                           int32_t index, bool link);

// A linked line with the member page's file name and, outside a help file,
// the content frame as the link's target.
std::string LinkedMemberLine(std::string line, const std::string& module_name,
                             const std::string& member_name, bool chm_mode);

// The filled foot: the remarks of the declarations section under their
// heading, which is filled even when there are no remarks.
std::string ModulePageFoot(CRessource& res, SourceModule& module, std::string foot);

}  // namespace folioscope

#endif  // FOLIOSCOPE_PAGES_MODULE_PAGE_H_
