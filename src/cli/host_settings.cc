#include "cli/host_settings.h"

#include <cerrno>
#include <climits>
#include <cstdlib>

#include "cli/host.h"
#include "infra/hive_file_settings.h"
#include "infra/registry.h"
#include "infra/text_encoding.h"

namespace folioscope {

const std::vector<SettingInfo>& SettingsTable() {
  static const std::vector<SettingInfo> kTable = {
      {"ReportPath", kCurrentReportKey, false, 0, "Standard"},
      {"ReportLanguage", kCurrentReportKey, false, 0, "Deutsch"},
      {"DelFilesAfterCHMCompiling", kConfigKey, true, 0, ""},
      {"ShowModulePath", kConfigKey, true, 0, ""},
      {"ShowModuleRelativePath", kConfigKey, true, 1, ""},
      {"ShowLOCForModuls", kConfigKey, true, 1, ""},
      {"ShowLOCForProjects", kConfigKey, true, 1, ""},
      {"ShowHelpContextID", kConfigKey, true, 1, ""},
      {"ShowVBInternDescription", kConfigKey, true, 1, ""},
      {"ToolBarPublicValue", kConfigKey, true, 1, ""},
      {"ToolBarFriendValue", kConfigKey, true, 1, ""},
      {"ToolBarPrivateValue", kConfigKey, true, 1, ""},
      {"ReportStdTitle", kConfigKey, false, 0, ""},
      {"CHMReportTitle", kConfigKey, false, 0, ""},
      {"LNR", kConfigKey, true, 0, ""},
  };
  return kTable;
}

const SettingInfo* FindSetting(const std::string& name) {
  for (const auto& s : SettingsTable())
    if (EqualsIgnoreCase(s.name, name)) return &s;
  return nullptr;
}

bool ParseWord(const std::string& text, int32_t* value) {
  if (text.empty()) return false;
  errno = 0;
  char* end = nullptr;
  long long n = std::strtoll(text.c_str(), &end, 10);
  if (errno != 0 || *end != '\0' || n < INT32_MIN || n > INT32_MAX || text[0] == ' ') return false;
  *value = static_cast<int32_t>(n);
  return true;
}

const char* SourceName(SettingSource source) {
  switch (source) {
    case SettingSource::kDefault:
      return "default";
    case SettingSource::kHive:
      return "hive";
    case SettingSource::kOption:
      return "option";
    default:
      return "none";
  }
}

namespace {

RegValue WordValue(int32_t n) {
  uint32_t u = static_cast<uint32_t>(n);
  std::string data;
  for (int i = 0; i < 4; ++i) data += static_cast<char>((u >> (8 * i)) & 0xFF);
  return RegValue{kRegDword, data};
}

void Put(RegistryTree* tree, const SettingInfo& s, const RegValue& v) {
  tree->CreateKey(kHkeyCurrentUser, s.key);
  tree->SetValue(kHkeyCurrentUser, s.key, s.name, v);
}

void AddUnique(std::vector<std::string>* names, const std::string& name) {
  for (const auto& n : *names)
    if (EqualsIgnoreCase(n, name)) return;
  names->push_back(name);
}

}  // namespace

RegistryTree DefaultSettingsTree() {
  RegistryTree tree;
  for (const auto& s : SettingsTable())
    Put(&tree, s, s.is_word ? WordValue(s.default_word) : RegValue{kRegSz, s.default_text});
  return tree;
}

LayeredSettings::LayeredSettings(RegistryTree defaults, std::unique_ptr<SettingsBackend> hive,
                                 RegistryTree options)
    : defaults_(std::move(defaults)), hive_(std::move(hive)), options_(std::move(options)) {}

std::vector<SettingsBackend*> LayeredSettings::Layers() {
  return {&options_, hive_.get(), &defaults_};
}

SettingSource LayeredSettings::Source(uint32_t root, const std::string& path,
                                      const std::string& name) {
  if (options_.QueryValue(root, path, name)) return SettingSource::kOption;
  if (hive_->QueryValue(root, path, name)) return SettingSource::kHive;
  if (defaults_.QueryValue(root, path, name)) return SettingSource::kDefault;
  return SettingSource::kNone;
}

bool LayeredSettings::CreateKey(uint32_t root, const std::string& path) {
  return hive_->CreateKey(root, path);
}

bool LayeredSettings::KeyExists(uint32_t root, const std::string& path) {
  for (auto* layer : Layers())
    if (layer->KeyExists(root, path)) return true;
  return false;
}

std::optional<RegValue> LayeredSettings::QueryValue(uint32_t root, const std::string& path,
                                                    const std::string& name) {
  for (auto* layer : Layers())
    if (auto v = layer->QueryValue(root, path, name)) return v;
  return std::nullopt;
}

std::optional<RegValue> LayeredSettings::ReadValue(uint32_t root, const std::string& path,
                                                   const std::string& name, bool* key_exists) {
  *key_exists = false;
  for (auto* layer : {static_cast<SettingsBackend*>(&options_), hive_.get(),
                      static_cast<SettingsBackend*>(&defaults_)}) {
    bool in_layer = false;
    if (auto v = layer->ReadValue(root, path, name, &in_layer)) {
      *key_exists = true;
      return v;
    }
    *key_exists = *key_exists || in_layer;
  }
  return std::nullopt;
}

bool LayeredSettings::SetValue(uint32_t root, const std::string& path, const std::string& name,
                               const RegValue& value) {
  // RegSetValueExA needs an open key: one that exists in any layer. The
  // hive file gets the key when only the defaults or options hold it.
  if (!KeyExists(root, path)) return false;
  if (!hive_->KeyExists(root, path) && !hive_->CreateKey(root, path)) return false;
  options_.DeleteValue(root, path, name);
  return hive_->SetValue(root, path, name, value);
}

bool LayeredSettings::DeleteKey(uint32_t root, const std::string& path) {
  return hive_->DeleteKey(root, path);
}

bool LayeredSettings::DeleteValue(uint32_t root, const std::string& path, const std::string& name) {
  bool from_options = options_.DeleteValue(root, path, name);
  bool from_hive = hive_->DeleteValue(root, path, name);
  return from_options || from_hive;
}

std::vector<std::string> LayeredSettings::MergedKeys(uint32_t root, const std::string& path) {
  std::vector<std::string> names;
  for (auto* layer : {hive_.get(), static_cast<SettingsBackend*>(&defaults_),
                      static_cast<SettingsBackend*>(&options_)})
    for (uint32_t i = 0; auto name = layer->EnumKey(root, path, i); ++i) AddUnique(&names, *name);
  return names;
}

std::vector<std::string> LayeredSettings::MergedValues(uint32_t root, const std::string& path) {
  std::vector<std::string> names;
  for (auto* layer : {hive_.get(), static_cast<SettingsBackend*>(&defaults_),
                      static_cast<SettingsBackend*>(&options_)})
    for (uint32_t i = 0; auto entry = layer->EnumValue(root, path, i); ++i)
      AddUnique(&names, entry->first);
  return names;
}

std::optional<std::string> LayeredSettings::EnumKey(uint32_t root, const std::string& path,
                                                    uint32_t index) {
  auto names = MergedKeys(root, path);
  if (index >= names.size()) return std::nullopt;
  return names[index];
}

std::optional<std::pair<std::string, RegValue>> LayeredSettings::EnumValue(uint32_t root,
                                                                           const std::string& path,
                                                                           uint32_t index) {
  auto names = MergedValues(root, path);
  if (index >= names.size()) return std::nullopt;
  auto value = QueryValue(root, path, names[index]);
  if (!value) return std::nullopt;
  return std::make_pair(names[index], *value);
}

namespace {

// Applies one NAME=VALUE option to the options tree.
bool ApplyOption(const std::string& name, const std::string& text, const std::string& option,
                 RegistryTree* tree, std::string* error) {
  const SettingInfo* s = FindSetting(name);
  if (!s) {
    *error = option + ": unknown setting \"" + name + "\"";
    return false;
  }
  if (s->is_word) {
    int32_t n = 0;
    if (!ParseWord(text, &n)) {
      *error = option + ": " + s->name + " takes a 32-bit whole number, not \"" + text + "\"";
      return false;
    }
    Put(tree, *s, WordValue(n));
  } else {
    Put(tree, *s, RegValue{kRegSz, text});
  }
  return true;
}

}  // namespace

std::unique_ptr<SettingsBackend> MakeHostSettings(const std::string& registry_path,
                                                  const GlobalOptions& options,
                                                  std::string* error) {
  RegistryTree overrides;
  for (const auto& option : options.options) {
    size_t eq = option.find('=');
    if (eq == std::string::npos || eq == 0) {
      *error = "--option " + option + ": expected NAME=VALUE";
      return nullptr;
    }
    if (!ApplyOption(option.substr(0, eq), option.substr(eq + 1),
                     "--option " + option.substr(0, eq), &overrides, error))
      return nullptr;
  }
  if (!options.set.empty() && !ApplyOption("ReportPath", options.set, "--set", &overrides, error))
    return nullptr;
  if (!options.language.empty() &&
      !ApplyOption("ReportLanguage", options.language, "--language", &overrides, error))
    return nullptr;
  auto hive = std::make_unique<HiveFileSettings>(registry_path);
  if (!hive->Load()) {
    *error = hive->LoadError();
    return nullptr;
  }
  return std::make_unique<LayeredSettings>(DefaultSettingsTree(), std::move(hive),
                                           std::move(overrides));
}

}  // namespace folioscope
