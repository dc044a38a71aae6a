// Page files are named after modules and members. VB names cannot hold a
// separator or a device name, but a hand-edited module file can write
// anything into VB_Name, and the report object also takes projects that it
// did not read itself; so the page writers ask here before a page file is
// written, and a page whose name would not be a plain file in the output
// folder is left out with a message while the rest of the report goes on.
#ifndef FOLIOSCOPE_PAGES_PAGE_FILE_GUARD_H_
#define FOLIOSCOPE_PAGES_PAGE_FILE_GUARD_H_

#include <string>

#include "model/source_model.h"

namespace folioscope {

// True when the page file `file_name` may be written (IsSafeFileName).
// Otherwise sends the refusal to the progress channel (AddLog, icon 3),
// naming the module `module_name`, the member when `member` is given, and the
// module's source file (from `project`'s component entry) and the member's
// first line where they are known; returns false.
bool MayWritePage(const std::string& file_name, const SourceProject* project,
                  const std::string& module_name, const SourceMember* member);

}  // namespace folioscope

#endif  // FOLIOSCOPE_PAGES_PAGE_FILE_GUARD_H_
