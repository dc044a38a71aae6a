// Members of a module: the declarations section as "Header", then one member
// per procedure and per Event declaration in source order, with the line
// ranges the IDE gives them.
//
// A procedure runs from the line after the previous procedure's End line
// (the first one: after the last line of the declarations section that is
// neither blank nor a comment) to its own End line; lines after the last End
// belong to the last procedure. An Event member holds the comment lines
// directly above its declaration plus the declaration; those lines stay in
// Header as well.
#ifndef FOLIOSCOPE_MODEL_VB6_MEMBERS_H_
#define FOLIOSCOPE_MODEL_VB6_MEMBERS_H_

#include <string>

#include "model/source_model.h"
#include "model/vb6_diagnostics.h"
#include "model/vb6_module_file.h"

namespace folioscope {

// Fills module->CodeLines and module->Members from FILE; FILE_PATH names the
// file in diagnostics. The code line texts move into one store that the
// module's and the members' CodeLines share (FILE keeps their line numbers
// and everything else).
void BuildModuleCode(ModuleFile& file, const std::string& file_path, SourceModule* module,
                     Diagnostics* diagnostics);

}  // namespace folioscope

#endif  // FOLIOSCOPE_MODEL_VB6_MEMBERS_H_
