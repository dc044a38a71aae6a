// folioscope config list | get NAME | set NAME VALUE | use SET [LANGUAGE]
//
// Shows and changes the settings in the hive file. `list` prints every
// setting of the configuration table as NAME=VALUE, a tab and the layer it
// comes from (default, hive or option); `get` prints one value as the
// component reads it; `set` checks name and type and writes the hive; `use`
// chooses a report set and language as the settings dialog does (and asks
// the next run to reload its templates with LNR=1).
#include <string>
#include <vector>

#include "cli/host.h"
#include "cli/host_settings.h"
#include "infra/file_system.h"
#include "infra/registry.h"
#include "infra/text_encoding.h"

namespace folioscope {
namespace {

struct ConfigArgs {
  std::string name;
  std::string value;
  std::string set;
  std::string language;
};

std::string ValueText(CRegistry& reg, const SettingInfo& s) {
  if (s.is_word) return std::to_string(reg.ReadRegWord(kHkeyCurrentUser, s.key, s.name, 0));
  return reg.ReadRegString(kHkeyCurrentUser, s.key, s.name, "");
}

const SettingInfo* Lookup(Host& host, const std::string& name) {
  const SettingInfo* s = FindSetting(name);
  if (!s) host.Fail(kExitUsage, "unknown setting \"" + name + "\"");
  return s;
}

// Writes one setting and checks that it reached the hive file.
bool Write(Host& host, const SettingInfo& s, const std::string& value_cp1252) {
  CRegistry reg(&host.settings());
  RegValue expected;
  if (s.is_word) {
    int32_t n = 0;
    if (!ParseWord(value_cp1252, &n)) {
      host.Fail(kExitUsage,
                std::string(s.name) + " takes a 32-bit whole number, not \"" + value_cp1252 + "\"");
      return false;
    }
    reg.SaveRegWord(kHkeyCurrentUser, s.key, s.name, n);
  } else {
    reg.SaveRegString(kHkeyCurrentUser, s.key, s.name, value_cp1252);
  }
  auto* layered = dynamic_cast<LayeredSettings*>(&host.settings());
  if (layered && layered->Source(kHkeyCurrentUser, s.key, s.name) != SettingSource::kHive) {
    host.Fail(kExitFailed, "cannot write " + host.registry_path());
    return false;
  }
  return true;
}

void List(Host& host) {
  if (!host.Start()) return;
  CRegistry reg(&host.settings());
  auto* layered = dynamic_cast<LayeredSettings*>(&host.settings());
  for (const auto& s : SettingsTable()) {
    std::string line = std::string(s.name) + "=" + ValueText(reg, s);
    if (layered)
      line += std::string("\t") + SourceName(layered->Source(kHkeyCurrentUser, s.key, s.name));
    Host::PrintLine(line);
  }
}

void Get(Host& host, const ConfigArgs& args) {
  if (!host.Start()) return;
  const SettingInfo* s = Lookup(host, args.name);
  if (!s) return;
  CRegistry reg(&host.settings());
  Host::PrintLine(ValueText(reg, *s));
}

void Set(Host& host, const ConfigArgs& args) {
  if (!host.Start()) return;
  const SettingInfo* s = Lookup(host, args.name);
  if (s) Write(host, *s, args.value);
}

void Use(Host& host, const ConfigArgs& args) {
  if (!host.Start()) return;
  std::string set = args.set;
  std::string language = args.language;
  CRegistry reg(&host.settings());
  if (language.empty())
    language = reg.ReadRegString(kHkeyCurrentUser, kCurrentReportKey, "ReportLanguage", "");
  std::string folder = JoinPath(JoinPath(host.application_folder(), "Res"), set);
  if (!CFileSystem().IsOrdnerVorhanden(folder))
    std::fprintf(stderr, "folioscope: warning: no report set folder %s\n",
                 Cp1252ToUtf8(folder).c_str());
  if (Write(host, *FindSetting("ReportPath"), set) &&
      Write(host, *FindSetting("ReportLanguage"), language))
    Write(host, *FindSetting("LNR"), "1");
}

void Setup(CLI::App& app, Host& host) {
  auto* config = app.add_subcommand("config", "Show or change the settings (hive file)");
  config->require_subcommand(1);
  auto args = std::make_shared<ConfigArgs>();

  config->add_subcommand("list", "Every setting with its value and origin")->callback([&host] {
    List(host);
  });

  auto* get = config->add_subcommand("get", "One setting's value");
  get->add_option("NAME", args->name)->required();
  get->callback([&host, args] { Get(host, *args); });

  auto* set = config->add_subcommand("set", "Write one setting to the hive file");
  set->add_option("NAME", args->name)->required();
  set->add_option("VALUE", args->value)->required();
  set->callback([&host, args] { Set(host, *args); });

  auto* use = config->add_subcommand("use", "Choose the report set and language");
  use->add_option("SET", args->set)->required();
  use->add_option("LANGUAGE", args->language, "Default: the current language");
  use->callback([&host, args] { Use(host, *args); });
}

CommandRegistration reg(&Setup);

}  // namespace
}  // namespace folioscope
