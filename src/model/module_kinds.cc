#include "model/module_kinds.h"

#include "infra/vb_runtime.h"

namespace folioscope {

const char* ModuleKindText(ModuleKind kind) {
  return kModuleKindNames[static_cast<int>(kind)].text;
}

std::optional<ModuleKind> ModuleKindOfText(const std::string& text) {
  for (const ModuleKindName& name : kModuleKindNames) {
    if (text == name.text) return name.kind;
  }
  return std::nullopt;
}

std::optional<ModuleKind> ModuleKindOfProjectKey(const std::string& upper_key) {
  for (const ModuleKindName& name : kModuleKindNames) {
    if (upper_key == vb::UCase(name.text)) return name.kind;
  }
  return std::nullopt;
}

}  // namespace folioscope
