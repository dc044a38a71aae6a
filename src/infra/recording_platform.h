// A Platform for tests: an in-memory registry, a chosen application folder,
// a fixed clock, a chosen help compiler (none by default), and a record of
// every message box, error dialog, opened address, printed text, program
// run, folder listing and file stamp. Dialog answers and program runs can be
// scripted. Folder listings and file stamps are the real file system's; the
// shell command line is the POSIX one, so that a recorded run can be handed
// on to PosixPlatform.
#ifndef FOLIOSCOPE_INFRA_RECORDING_PLATFORM_H_
#define FOLIOSCOPE_INFRA_RECORDING_PLATFORM_H_

#include <functional>
#include <string>
#include <vector>

#include "infra/platform.h"
#include "infra/registry_tree.h"

namespace folioscope {

class RecordingPlatform : public Platform {
 public:
  struct MessageBoxCall {
    std::string text;
    int32_t style;
    std::string title;
  };
  struct ProgramRun {
    std::vector<std::string> argv;
    std::string working_folder;
    bool pump_messages;
  };

  explicit RecordingPlatform(std::string application_folder = "");

  SettingsBackend& Settings() override { return registry; }
  int32_t MessageBox(const std::string& text, int32_t style, const std::string& title) override;
  int32_t ShowErrorDialog(const std::string& report_text, ErrorDialogActions& actions) override;
  void PumpMessages() override {
    ++pump_count;
    if (!on_pump) return;
    on_pump();
    ++host_code_runs;
  }
  uint64_t HostCodeRuns() const override { return host_code_runs; }
  bool OpenAddress(const std::string& address) override;
  bool PrintText(const std::string& text) override;
  int32_t RunAndWait(const std::vector<std::string>& argv, const std::string& working_folder,
                     bool pump_messages) override;
  std::vector<std::string> ShellCommand(const std::string& command_line, bool hidden) override;
  HelpCompiler FindHelpCompiler() override;
  std::vector<FolderEntry> ListFolder(const std::string& folder) override;
  FileStamp StampOfFile(const std::string& path) override;
  std::string ApplicationFolder() override { return application_folder; }
  std::string FallbackLogFolder() override { return fallback_log_folder; }
  std::string ApplicationFileName() override { return "folioscope"; }
  AppVersion ApplicationVersion() override { return AppVersion{1, 0, 0}; }
  std::string NowText() override { return now_text; }
  uint32_t LastSystemError() override { return last_system_error; }
  std::string NumberGroupSeparator() override { return group_separator; }
  bool InDevelopmentEnvironment() override { return in_ide; }

  // State, freely set and inspected by tests.
  RegistryTree registry;
  std::string application_folder;
  std::string fallback_log_folder;
  std::string now_text = "23.11.2026 12:00:00";
  uint32_t last_system_error = 0;
  std::string group_separator = ".";
  bool in_ide = false;
  int32_t error_dialog_answer = kChoiceIgnore;
  // Called for each program run; returns the exit code (default 0).
  std::function<int32_t(const ProgramRun&)> on_run;
  // The host code a pump lets run (none by default); each run is counted.
  std::function<void()> on_pump;
  HelpCompiler help_compiler;

  std::vector<MessageBoxCall> message_boxes;
  std::vector<std::string> error_dialogs;
  std::vector<std::string> opened_addresses;
  std::vector<std::string> printed_texts;
  std::vector<ProgramRun> program_runs;
  int64_t pump_count = 0;
  uint64_t host_code_runs = 0;
  int64_t help_compiler_lookups = 0;
  std::vector<std::string> listed_folders;
  std::vector<std::string> stamped_files;
};

}  // namespace folioscope

#endif  // FOLIOSCOPE_INFRA_RECORDING_PLATFORM_H_
