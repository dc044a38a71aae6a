// The source model: what the component reads of a VB6 project. It plays the
// companion library's role: the reader (vb6_reader.h) builds it from a .vbp
// file, the component reads it, writes parameter descriptions, and through
// its dictionary reads adds key 0 to code-line dictionaries.
//
// All texts are Windows-1252 bytes as they stand in the files.
#ifndef FOLIOSCOPE_MODEL_SOURCE_MODEL_H_
#define FOLIOSCOPE_MODEL_SOURCE_MODEL_H_

#include <cstdint>
#include <string>

#include "infra/collection.h"
#include "infra/dictionary.h"
#include "model/file_line_map.h"

namespace folioscope {

// Scope names for the scope codes 1, 2, 3.
inline constexpr const char* kScopePrivate = "Private";
inline constexpr const char* kScopeFriend = "Friend";
inline constexpr const char* kScopePublic = "Public";

class SourceParameter {
 public:
  std::string Name;          // without "()"
  std::string Type;          // "Variant" when none is written; "()" appended for arrays
  std::string Passing;       // "ByVal" or "ByRef"
  bool Optional = false;
  bool ParamArray = false;
  bool HasDefault = false;
  std::string Default;       // the default value as written
  std::string Description;   // written by CParam
};

class SourceMember {
 public:
  std::string Name;          // "Header", "DoIt", "Get Value", "Let Value", ...
  std::string PropertyForm;  // "Get ", "Let ", "Set " or ""
  std::string Kind;          // "Sub", "Function", "Property", "OutEvent"; "" for Header
  std::string Scope;         // "Public", "Private", "Friend"; "" for Header
  std::string ReturnType;    // Function and Property Get only
  std::string Description;   // Attribute Name.VB_Description
  int32_t HelpContextId = 0;  // Attribute Name.VB_HelpID
  int32_t FirstLine = 0;     // module code line of the member's first line
  int32_t LineCount = 0;     // number of lines as read (before any key-0 read)
  vb::Dictionary CodeLines;  // Long keys 1..n, line texts
  vb::Collection<SourceParameter> Parameters;  // 1-based
};

// Component entry: the module as the project lists it.
class SourceComponent {
 public:
  std::string Name;
  std::string Kind;          // "Module", "Class", "Form", "UserControl", "PropertyPage",
                             // "Designer", "UserDocument"
  std::string RelativePath;  // as written in the .vbp
  std::string FilePath;      // as resolved on disk
};

// Code entry: the module's code.
class SourceModule {
 public:
  std::string Name;
  vb::Dictionary CodeLines;  // Long keys 1..n: the lines the IDE shows
  FileLineMap FileLines;     // where code line k stands in the file
  vb::Collection<SourceMember> Members;  // 1-based, keyed by member name; 1 = "Header"
  std::string Description;   // Attribute VB_Description at module level
  int32_t HelpContextId = 0;  // Attribute VB_HelpID at module level
};

class SourceProject {
 public:
  std::string Name;
  std::string Version;       // "Major.Minor.Revision"
  std::string FilePath;      // the .vbp
  vb::Collection<SourceComponent> Components;  // 1-based, keyed by module name
  vb::Collection<SourceModule> Modules;        // 1-based, keyed by module name
};

}  // namespace folioscope

#endif  // FOLIOSCOPE_MODEL_SOURCE_MODEL_H_
