#include "cli/host.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "infra/error_handler.h"
#include "infra/os_path.h"
#include "infra/text_encoding.h"

namespace folioscope {

namespace fs = std::filesystem;

// Prints the progress channel's messages as lines on stderr.
class ConsoleListener : public CFSCommunicatorEvents {
 public:
  explicit ConsoleListener(const GlobalOptions& options) : options_(options) {}
  void Message(std::string& Desc, int32_t& IconIndex) override {
    if (options_.quiet && IconIndex == kIconProgress) return;
    std::fprintf(stderr, "%s\n", Cp1252ToUtf8(Desc).c_str());
  }
  void OnReportStart(int32_t&) override {}
  void OnReportWorks(int32_t&, std::string&, bool&) override {}

 private:
  const GlobalOptions& options_;
};

Host::Host() = default;

Host::~Host() {
  if (channel_ && listener_) channel_->RemoveListener(listener_.get());
  if (started_) {
    SetProgressChannel(nullptr);
    SetCurrentPlatform(nullptr);
  }
}

namespace {

std::string ExecutableFolder() {
  std::error_code ec;
  fs::path exe = fs::read_symlink("/proc/self/exe", ec);
  if (ec) return ".";
  return PathFromOs(exe.parent_path().string());
}

bool IsFolder(const std::string& p) {
  struct stat st {};
  return ::stat(OsPath(p).c_str(), &st) == 0 && S_ISDIR(st.st_mode);
}

// A variable of the environment; paths there are in the file system's form.
std::string Env(const char* name) {
  const char* v = std::getenv(name);
  return v ? PathFromOs(v) : "";
}

}  // namespace

std::string ResolveApplicationFolder(const std::string& option) {
  std::string folder = option;
  if (folder.empty()) folder = Env("FOLIOSCOPE_HOME");
  if (folder.empty()) {
    std::string exe = ExecutableFolder();
    folder = IsFolder(exe + "/Res") ? exe : exe + "/../share/folioscope";
  }
  std::error_code ec;
  fs::path abs = fs::weakly_canonical(fs::absolute(OsPath(folder), ec), ec);
  std::string result = ec ? folder : PathFromOs(abs.string());
  while (result.size() > 1 && result.back() == '/') result.pop_back();
  return result;
}

std::string ResolveRegistryPath(const std::string& option) {
  if (!option.empty()) return option;
  std::string env = Env("FOLIOSCOPE_REGISTRY");
  if (!env.empty()) return env;
  std::string config = Env("XDG_CONFIG_HOME");
  if (config.empty()) config = Env("HOME") + "/.config";
  return config + "/quillon/registry.reg";
}

bool Host::Start() {
  if (started_) return true;
  application_folder_ = ResolveApplicationFolder(options.app_dir);
  registry_path_ = ResolveRegistryPath(options.registry);
  std::string error;
  settings_ = MakeHostSettings(registry_path_, options, &error);
  if (!settings_) {
    Fail(kExitUsage, error);
    return false;
  }
  platform_ = std::make_unique<PosixPlatform>(settings_.get(), application_folder_);
  SetCurrentPlatform(platform_.get());
  channel_ = std::make_shared<CFSCommunicator>();
  listener_ = std::make_unique<ConsoleListener>(options);
  channel_->AddListener(listener_.get());
  CFSDataLogger logger;
  logger.SetFSCommunicator(channel_);
  started_ = true;
  return true;
}

void Host::Fail(int status, const std::string& message) {
  std::fprintf(stderr, "folioscope: %s\n", Cp1252ToUtf8(message).c_str());
  exit_status = status;
}

void Host::PrintLine(const std::string& text) {
  std::string utf8 = Cp1252ToUtf8(text);
  std::fwrite(utf8.data(), 1, utf8.size(), stdout);
  std::fputc('\n', stdout);
}

int Host::FinalStatus() const {
  if (exit_status != kExitDone) return exit_status;
  return CErrorHandler::Instance().ReportCount() > 0 ? kExitFailed : kExitDone;
}

namespace {
std::vector<CommandSetup>& Registry() {
  static std::vector<CommandSetup> setups;
  return setups;
}
}  // namespace

CommandRegistration::CommandRegistration(CommandSetup setup) { Registry().push_back(setup); }

const std::vector<CommandSetup>& CommandRegistration::All() { return Registry(); }

}  // namespace folioscope
