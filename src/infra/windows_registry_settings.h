// The settings store of the Windows build: the real registry, reached through
// the narrow (ANSI) registry functions, so names and string data are the
// component's Windows-1252 bytes on a Western European system.
//
// Root handles are the predefined keys' numbers (kHkeyCurrentUser =
// 0x80000001 ...); an unknown root fails every operation. Each operation
// opens what it needs and closes it before it returns, as CRegistry expects.
#ifndef FOLIOSCOPE_INFRA_WINDOWS_REGISTRY_SETTINGS_H_
#define FOLIOSCOPE_INFRA_WINDOWS_REGISTRY_SETTINGS_H_

#include <optional>
#include <string>
#include <utility>

#include "infra/settings_backend.h"

namespace folioscope {

class WindowsRegistrySettings : public SettingsBackend {
 public:
  bool CreateKey(uint32_t root, const std::string& path) override;
  bool KeyExists(uint32_t root, const std::string& path) override;
  std::optional<RegValue> QueryValue(uint32_t root, const std::string& path,
                                     const std::string& name) override;
  bool SetValue(uint32_t root, const std::string& path, const std::string& name,
                const RegValue& value) override;
  bool DeleteKey(uint32_t root, const std::string& path) override;
  bool DeleteValue(uint32_t root, const std::string& path, const std::string& name) override;
  std::optional<std::string> EnumKey(uint32_t root, const std::string& path,
                                     uint32_t index) override;
  std::optional<std::pair<std::string, RegValue>> EnumValue(uint32_t root, const std::string& path,
                                                            uint32_t index) override;
  std::optional<RegValue> ReadValue(uint32_t root, const std::string& path, const std::string& name,
                                    bool* key_exists) override;
};

}  // namespace folioscope

#endif  // FOLIOSCOPE_INFRA_WINDOWS_REGISTRY_SETTINGS_H_
