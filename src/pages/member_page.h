// The member page: kind, scope and name of one member, its syntax line, the
// doc-comment blocks and one table row per parameter.
//
// The tag readers run in a fixed order (parameters, summary, example,
// remarks, returns): each scan may add key 0 to the member's code-line
// dictionary, so the order decides what later scans see.
#ifndef FOLIOSCOPE_PAGES_MEMBER_PAGE_H_
#define FOLIOSCOPE_PAGES_MEMBER_PAGE_H_

#include <string>

#include "model/source_model.h"
#include "pages/report_context.h"

namespace folioscope {

// The page of `member` of module `module_name` (whose component entry in
// the context's project decides whether the syntax line gets the object
// prefix), headed with `project_name`.
std::string MemberPageText(const ReportContext& context, SourceMember& member,
                           const std::string& project_name, const std::string& module_name);

}  // namespace folioscope

#endif  // FOLIOSCOPE_PAGES_MEMBER_PAGE_H_
