#include <memory>

#include "cli/host.h"
#include "infra/registry.h"
#include "infra/registry_tree.h"

namespace folioscope {

// Placeholder store until the hive file backend lands: built-in defaults only.
std::unique_ptr<SettingsBackend> MakeHostSettings(const std::string&, const GlobalOptions&,
                                                  std::string*) {
  auto tree = std::make_unique<RegistryTree>();
  CRegistry reg(tree.get());
  reg.SaveRegString(kHkeyCurrentUser, kCurrentReportKey, "ReportPath", "Standard");
  reg.SaveRegString(kHkeyCurrentUser, kCurrentReportKey, "ReportLanguage", "Deutsch");
  return tree;
}

}  // namespace folioscope
