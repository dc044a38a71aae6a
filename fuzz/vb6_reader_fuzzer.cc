// The .vbp and module reader on a project folder built from the input:
// part 1 is the .vbp, parts 2 to 4 the files Modul1.bas, Sub/Klasse1.cls and
// Form1.frm. The .vbp may name them in any spelling, or name files that are
// not there. The model must satisfy what the page writers rely on: every
// member's lines are the module's lines FirstLine .. FirstLine+LineCount-1.
#include <filesystem>
#include <string>
#include <system_error>

#include "fuzz_support.h"
#include "infra/vb_runtime.h"
#include "model/vb6_reader.h"

namespace folioscope::fuzzing {
namespace {

const char* const kModuleFiles[] = {"Modul1.bas", "Sub/Klasse1.cls", "Form1.frm"};

// True when a module line of the .vbp names a path that could leave the
// project folder; the other lines name no file the reader opens.
bool ModulePathCouldLeave(const std::string& vbp) {
  static const char* const kModuleKeys[] = {
      "FORM", "MODULE", "CLASS", "USERCONTROL", "PROPERTYPAGE", "DESIGNER", "USERDOCUMENT"};
  size_t start = 0;
  while (start < vbp.size()) {
    size_t end = vbp.find('\n', start);
    if (end == std::string::npos) end = vbp.size();
    const std::string line = vbp.substr(start, end - start);
    start = end + 1;
    const size_t equals = line.find('=');
    if (equals == std::string::npos) continue;
    const std::string key = vb::UCase(vb::Trim(line.substr(0, equals)));
    for (const char* module_key : kModuleKeys) {
      if (key == module_key && CouldLeaveFolder(line.substr(equals))) return true;
    }
  }
  return false;
}

void CheckMember(SourceModule& module, SourceMember& member) {
  Touch(member.Name);
  Touch(member.Kind);
  Touch(member.ReturnType);
  Touch(member.Description);
  Check(member.CodeLines.Count() == member.LineCount, "member line count");
  for (int32_t k = 1; k <= member.LineCount; ++k) {
    Check(member.CodeLines.Exists(vb::DictKey::Long(k)), "member line key");
    const int32_t module_line = member.FirstLine + k - 1;
    Check(module.CodeLines.Exists(vb::DictKey::Long(module_line)), "member line inside module");
    Check(member.CodeLines.Item(k) == module.CodeLines.Item(module_line),
          "member line equals module line");
  }
  for (int32_t p = 1; p <= member.Parameters.Count(); ++p) {
    SourceParameter& parameter = member.Parameters.Item(p);
    Touch(parameter.Name);
    Touch(parameter.Type);
    Touch(parameter.Default);
  }
}

void CheckModule(SourceModule& module) {
  Touch(module.Name);
  Check(module.Members.Count() >= 1 && module.Members.Item(1).Name == "Header",
        "Header is the first member");
  for (int32_t m = 1; m <= module.Members.Count(); ++m) CheckMember(module, module.Members.Item(m));
}

}  // namespace
}  // namespace folioscope::fuzzing

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace folioscope;
  using namespace folioscope::fuzzing;
  FuzzEnvironment& environment = FuzzEnvironment::Get();
  const std::vector<std::string> parts = SplitParts(AsText(data, size), 4);
  if (ModulePathCouldLeave(parts[0])) return -1;

  const std::string folder = environment.folder() + "/project";
  WriteFile(folder + "/Projekt.vbp", parts[0]);
  for (size_t i = 0; i < 3; ++i) {
    if (!parts[i + 1].empty()) WriteFile(folder + "/" + kModuleFiles[i], parts[i + 1]);
  }

  environment.BeginInput();
  ProjectReadResult project = ReadProject(folder + "/Projekt.vbp");
  Check(project.project != nullptr, "a readable .vbp gives a project");
  for (const ReaderDiagnostic& diagnostic : project.diagnostics) Touch(diagnostic.ToText());
  SourceProject& model = *project.project;
  Touch(model.Name);
  Touch(model.Version);
  Check(model.Components.Count() == model.Modules.Count(), "one component per module");
  for (int32_t m = 1; m <= model.Modules.Count(); ++m) CheckModule(model.Modules.Item(m));

  ModuleReadResult alone = ReadModuleFile(folder + "/" + kModuleFiles[0], "Module", "Modul1");
  if (alone.module) CheckModule(*alone.module);
  environment.EndInput();

  std::error_code error;
  std::filesystem::remove_all(folder, error);
  return 0;
}
