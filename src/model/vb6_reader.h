// The VB6 project reader: builds the source model from a .vbp file and the
// module files it lists, the way the VB6 IDE shows them.
//
// Nothing here throws. Whatever cannot be read becomes a diagnostic naming
// the file and line: a missing module file is skipped with a warning; a
// module or member whose name is not a valid VB identifier is left out with
// an error (such names would become file names of the report); a second
// member of the same name is left out with an error.
#ifndef FOLIOSCOPE_MODEL_VB6_READER_H_
#define FOLIOSCOPE_MODEL_VB6_READER_H_

#include <memory>
#include <string>

#include "model/source_model.h"
#include "model/vb6_diagnostics.h"

namespace folioscope {

struct ProjectReadResult {
  // Null when the .vbp itself cannot be read.
  std::unique_ptr<SourceProject> project;
  Diagnostics diagnostics;
};

// Reads PATH (a .vbp) and every module it lists, in the order of its
// Form=, Module=, Class=, UserControl=, PropertyPage=, Designer= and
// UserDocument= lines. Paths in the .vbp are relative to its folder, use
// backslashes and are matched without regard to letter case.
ProjectReadResult ReadProject(const std::string& path);

struct ModuleReadResult {
  // Null when the file cannot be read or its name is not an identifier.
  std::unique_ptr<SourceModule> module;
  std::string vb_name;  // Attribute VB_Name, empty when absent
  Diagnostics diagnostics;
};

// Reads one module file alone. KIND is the component kind text ("Module",
// "Class", "Form", ...); NAME is used when the file has no VB_Name. The
// module's code lines and members are those ReadProject would give it.
ModuleReadResult ReadModuleFile(const std::string& path, const std::string& kind,
                                const std::string& name = "");

// The file PATH names on this file system: backslashes become separators
// and each part that does not exist as written is matched case-insensitively
// (Windows-1252 letters included) among the entries of its folder. Returns PATH with '/' separators
// when no match is found.
std::string ResolvePathCaseInsensitively(const std::string& folder, const std::string& path);

}  // namespace folioscope

#endif  // FOLIOSCOPE_MODEL_VB6_READER_H_
