// The command-line host: global options, the settings store of this run,
// the console platform, and the listener that prints the progress channel.
//
// Commands register themselves (CommandRegistration) with a function that
// adds their subcommand to the CLI11 application. A command's callback calls
// host.Start() before it touches the component, and sets host.exit_status.
#ifndef FOLIOSCOPE_CLI_HOST_H_
#define FOLIOSCOPE_CLI_HOST_H_

#include <CLI/CLI.hpp>
#include <memory>
#include <string>
#include <vector>

#include "infra/fs_communicator.h"
#include "infra/platform.h"
#include "infra/posix_platform.h"
#include "infra/settings_backend.h"

namespace folioscope {

// Exit statuses of the command-line contract.
enum ExitStatus : int {
  kExitDone = 0,
  kExitFailed = 1,  // not ready, a fault reached the error reporter, no .chm
  kExitUsage = 2,   // usage error or unreadable project
};

struct GlobalOptions {
  std::string app_dir;
  std::string registry;
  std::string set;
  std::string language;
  std::vector<std::string> options;  // NAME=VALUE
  bool quiet = false;
  bool no_progress = false;
};

class ConsoleListener;

class Host {
 public:
  Host();
  ~Host();

  GlobalOptions options;
  int exit_status = kExitDone;

  // Resolves the application folder and the registry file, builds the
  // layered settings store and installs the console platform and channel.
  // Returns false (after printing why, exit status 2) when that fails.
  bool Start();

  // After Start().
  Platform& platform() { return *platform_; }
  SettingsBackend& settings() { return *settings_; }
  const std::string& application_folder() const { return application_folder_; }
  const std::string& registry_path() const { return registry_path_; }

  // Prints an error line ("folioscope: ...", UTF-8 from Windows-1252 bytes)
  // and sets the exit status.
  void Fail(int status, const std::string& message_cp1252);
  // Prints a line on stdout, converting from Windows-1252.
  static void PrintLine(const std::string& text_cp1252);

  // Exit status after a component run: 1 when a fault reached the reporter.
  int FinalStatus() const;

 private:
  std::string application_folder_;
  std::string registry_path_;
  std::unique_ptr<SettingsBackend> settings_;
  std::unique_ptr<PosixPlatform> platform_;
  std::shared_ptr<CFSCommunicator> channel_;
  std::unique_ptr<ConsoleListener> listener_;
  bool started_ = false;
};

// The application folder: --app-dir, else $FOLIOSCOPE_HOME, else the
// executable's folder when it holds Res/, else <exe>/../share/folioscope.
std::string ResolveApplicationFolder(const std::string& option);

// The registry hive file: --registry, else $FOLIOSCOPE_REGISTRY, else
// $XDG_CONFIG_HOME/quillon/registry.reg (~/.config/quillon/registry.reg).
std::string ResolveRegistryPath(const std::string& option);

// Builds the layered settings store of one run: built-in defaults < the
// hive file at `registry_path` < this run's options. Returns null and sets
// `error` when an option is malformed or the hive cannot be read.
std::unique_ptr<SettingsBackend> MakeHostSettings(const std::string& registry_path,
                                                  const GlobalOptions& options, std::string* error);

using CommandSetup = void (*)(CLI::App& app, Host& host);

class CommandRegistration {
 public:
  explicit CommandRegistration(CommandSetup setup);
  static const std::vector<CommandSetup>& All();
};

}  // namespace folioscope

#endif  // FOLIOSCOPE_CLI_HOST_H_
