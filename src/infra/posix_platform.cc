#include "infra/posix_platform.h"

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <thread>

#include "infra/os_path.h"
#include "infra/text_encoding.h"
#include "infra/vb_runtime.h"

#ifndef FOLIOSCOPE_VERSION_MAJOR
#define FOLIOSCOPE_VERSION_MAJOR 1
#define FOLIOSCOPE_VERSION_MINOR 0
#define FOLIOSCOPE_VERSION_REVISION 0
#endif

namespace folioscope {

PosixPlatform::PosixPlatform(SettingsBackend* settings, std::string application_folder)
    : settings_(settings), application_folder_(std::move(application_folder)) {}

int32_t PosixPlatform::MessageBox(const std::string& text, int32_t, const std::string& title) {
  std::fprintf(stderr, "%s: %s\n", Cp1252ToUtf8(title).c_str(), Cp1252ToUtf8(text).c_str());
  return 1;
}

int32_t PosixPlatform::ShowErrorDialog(const std::string& report_text, ErrorDialogActions&) {
  std::fprintf(stderr, "%s\n", Cp1252ToUtf8(report_text).c_str());
  return kChoiceIgnore;
}

std::string FindOnPath(const std::string& program) {
  if (program.find('/') != std::string::npos)
    return ::access(program.c_str(), X_OK) == 0 ? program : "";
  const char* path = std::getenv("PATH");
  std::string dirs = path ? path : "/usr/local/bin:/usr/bin:/bin";
  size_t from = 0;
  while (from <= dirs.size()) {
    size_t colon = dirs.find(':', from);
    std::string dir =
        dirs.substr(from, colon == std::string::npos ? std::string::npos : colon - from);
    std::string candidate = dir.empty() ? std::string(".") : dir;
    candidate.append("/").append(program);
    struct stat st {};
    if (::stat(candidate.c_str(), &st) == 0 && S_ISREG(st.st_mode) &&
        ::access(candidate.c_str(), X_OK) == 0)
      return candidate;
    if (colon == std::string::npos) break;
    from = colon + 1;
  }
  return "";
}

bool PosixPlatform::OpenAddress(const std::string& address) {
  if (std::getenv("DISPLAY") && !FindOnPath("xdg-open").empty())
    return RunAndWait({"xdg-open", address}, ".", false) == 0;
  std::fprintf(stderr, "%s\n", Cp1252ToUtf8(address).c_str());
  return true;
}

bool PosixPlatform::PrintText(const std::string& text) {
  std::string lpr = FindOnPath("lpr");
  if (lpr.empty()) {
    std::fprintf(stderr, "%s\n", Cp1252ToUtf8(text).c_str());
    return true;
  }
  std::FILE* pipe = ::popen("lpr", "w");
  if (!pipe) return false;
  std::string utf8 = Cp1252ToUtf8(text);
  std::fwrite(utf8.data(), 1, utf8.size(), pipe);
  return ::pclose(pipe) == 0;
}

int32_t PosixPlatform::RunAndWait(const std::vector<std::string>& argv,
                                  const std::string& working_folder, bool pump_messages) {
  if (argv.empty()) return -1;
  const std::string os_folder = OsPath(working_folder);
  pid_t pid = ::fork();
  if (pid < 0) return -1;
  if (pid == 0) {
    if (!working_folder.empty() && ::chdir(os_folder.c_str()) != 0) ::_exit(127);
    std::vector<char*> args;
    for (const auto& a : argv) args.push_back(const_cast<char*>(a.c_str()));
    args.push_back(nullptr);
    ::execvp(args[0], args.data());
    ::_exit(127);
  }
  int status = 0;
  while (true) {
    if (pump_messages) PumpMessages();
    pid_t r = ::waitpid(pid, &status, WNOHANG);
    if (r == pid) break;
    if (r < 0 && errno != EINTR) return -1;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  if (WIFEXITED(status)) return WEXITSTATUS(status);
  return -1;
}

std::vector<std::string> PosixPlatform::ShellCommand(const std::string& command_line, bool hidden) {
  return {"/bin/sh", "-c", hidden ? command_line + " >/dev/null 2>&1" : command_line};
}

namespace {

bool IsExecutableFile(const std::string& path) {
  struct stat st {};
  return ::stat(path.c_str(), &st) == 0 && S_ISREG(st.st_mode) && ::access(path.c_str(), X_OK) == 0;
}

}  // namespace

HelpCompiler PosixPlatform::FindHelpCompiler() {
  const char* configured = std::getenv("FOLIOSCOPE_HHC");
  const std::string program =
      (configured != nullptr && *configured != '\0') ? configured : "chmcmd";
  if (program.find('/') != std::string::npos)
    return HelpCompiler{IsExecutableFile(program) ? program : "", false};
  const char* path = std::getenv("PATH");
  for (const std::string& dir : vb::Split(path != nullptr ? path : "", ":")) {
    const std::string candidate = (dir.empty() ? std::string(".") : dir) + "/" + program;
    if (IsExecutableFile(candidate)) return HelpCompiler{candidate, false};
  }
  return HelpCompiler{};
}

std::vector<FolderEntry> PosixPlatform::ListFolder(const std::string& folder) {
  return folioscope::ListFolder(folder);
}

FileStamp PosixPlatform::StampOfFile(const std::string& path) {
  return folioscope::StampOfFile(path);
}

std::string PosixPlatform::FallbackLogFolder() {
  // The environment holds the file system's bytes; the component's paths
  // are Windows-1252.
  if (const char* state = std::getenv("XDG_STATE_HOME"); state && *state)
    return PathFromOs(state) + "/folioscope";
  if (const char* home = std::getenv("HOME"); home && *home)
    return PathFromOs(home) + "/.local/state/folioscope";
  return "";
}

AppVersion PosixPlatform::ApplicationVersion() {
  return AppVersion{FOLIOSCOPE_VERSION_MAJOR, FOLIOSCOPE_VERSION_MINOR,
                    FOLIOSCOPE_VERSION_REVISION};
}

std::string PosixPlatform::NowText() {
  std::time_t t = std::time(nullptr);
  std::tm tm{};
  ::localtime_r(&t, &tm);
  char buffer[32];
  std::strftime(buffer, sizeof buffer, "%d.%m.%Y %H:%M:%S", &tm);
  return buffer;
}

uint32_t PosixPlatform::LastSystemError() { return static_cast<uint32_t>(errno); }

}  // namespace folioscope
