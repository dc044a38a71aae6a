// The host's settings store: three layers, read top-down per value —
// this run's options over the hive file over the built-in defaults.
//
// A key exists when any layer holds it; enumerations merge the layers'
// names (hive order first). Every change goes to the hive file; a value
// that this run's options override follows the change for the rest of the
// run (the option stands until the component itself rewrites the value).
#ifndef FOLIOSCOPE_CLI_HOST_SETTINGS_H_
#define FOLIOSCOPE_CLI_HOST_SETTINGS_H_

#include <memory>
#include <string>
#include <vector>

#include "infra/registry_tree.h"
#include "infra/settings_backend.h"

namespace folioscope {

// One row of the configuration table.
struct SettingInfo {
  const char* name;
  const char* key;  // kConfigKey or kCurrentReportKey
  bool is_word;     // REG_DWORD, else REG_SZ
  int32_t default_word;
  const char* default_text;
};

const std::vector<SettingInfo>& SettingsTable();
// The row named `name` (ASCII case ignored), or null.
const SettingInfo* FindSetting(const std::string& name);

// Parses a word setting's text as a signed 32-bit decimal number.
bool ParseWord(const std::string& text, int32_t* value);

// Where a value comes from.
enum class SettingSource { kNone, kDefault, kHive, kOption };
const char* SourceName(SettingSource source);

class LayeredSettings : public SettingsBackend {
 public:
  // `hive` is owned; `defaults` and `options` are the lower and upper layers.
  LayeredSettings(RegistryTree defaults, std::unique_ptr<SettingsBackend> hive,
                  RegistryTree options);

  SettingSource Source(uint32_t root, const std::string& path, const std::string& name);
  SettingsBackend& hive() { return *hive_; }

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
  void BeginReadGroup() override { hive_->BeginReadGroup(); }
  void EndReadGroup() override { hive_->EndReadGroup(); }

 private:
  // Layers from the top: options, hive, defaults.
  std::vector<SettingsBackend*> Layers();
  std::vector<std::string> MergedKeys(uint32_t root, const std::string& path);
  std::vector<std::string> MergedValues(uint32_t root, const std::string& path);

  RegistryTree defaults_;
  std::unique_ptr<SettingsBackend> hive_;
  RegistryTree options_;
};

// The built-in defaults as a tree.
RegistryTree DefaultSettingsTree();

}  // namespace folioscope

#endif  // FOLIOSCOPE_CLI_HOST_SETTINGS_H_
