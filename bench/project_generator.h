// Synthetic VB6 projects for the benchmark: a .vbp and its module files as
// the VB6 IDE saves them (Windows-1252, CR LF, designer blocks, Attribute
// lines), with '/// doc comments on every member.
//
// The same options always give the same bytes: the generator draws from its
// own 64-bit generator, never from the standard library's distributions,
// whose results differ between library versions.
#ifndef FOLIOSCOPE_BENCH_PROJECT_GENERATOR_H_
#define FOLIOSCOPE_BENCH_PROJECT_GENERATOR_H_

#include <cstdint>
#include <string>
#include <vector>

namespace folioscope::bench {

struct GeneratorOptions {
  int modules = 100;
  uint64_t seed = 1;
  std::string project_name = "Grossprojekt";
  int members_per_module = 20;  // average; each module draws from +-30 %
};

// What the generator wrote, as the VB6 reader is expected to see it.
struct GeneratedParameter {
  std::string name;
  std::string type;     // "Variant" when none is written, "()" appended for arrays
  std::string passing;  // "ByVal" or "ByRef"
  bool optional = false;
  bool param_array = false;
  bool has_default = false;
  std::string default_value;
};

struct GeneratedMember {
  std::string name;   // "Header", "Lade", "Get Wert", ...
  std::string kind;   // "Sub", "Function", "Property", "OutEvent"; "" for Header
  std::string scope;  // "Public", "Private", "Friend"; "" for Header
  std::string return_type;
  std::vector<GeneratedParameter> parameters;
  int32_t help_context_id = 0;
  bool has_description = false;
};

struct GeneratedModule {
  std::string name;
  std::string kind;                      // "Module", "Class", "Form", ...
  std::string relative_path;             // as written in the .vbp (backslashes)
  std::vector<GeneratedMember> members;  // members[0] is "Header"
  std::string text;                      // the file's bytes
};

struct GeneratedProject {
  std::string name;
  std::string vbp_text;
  std::vector<GeneratedModule> modules;  // in .vbp order
  int64_t SourceBytes() const;           // .vbp and every module file
  int ProcedureCount() const;            // members other than "Header"
};

// Builds the project in memory. Every module kind appears once the project
// has at least six modules.
GeneratedProject GenerateProject(const GeneratorOptions& options);

// Writes the project below `folder` (created if needed): `<name>.vbp` and the
// module files in the sub-folders their relative paths name. Returns false
// and sets `error` when a file cannot be written.
bool WriteProject(const GeneratedProject& project, const std::string& folder, std::string* error);

}  // namespace folioscope::bench

#endif  // FOLIOSCOPE_BENCH_PROJECT_GENERATOR_H_
