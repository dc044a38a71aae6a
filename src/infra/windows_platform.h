// The platform of the Windows build (the in-process COM server): the real
// registry, real message boxes and the error dialog, the message loop of the
// calling thread, programs started with CreateProcessA, and the folder of the
// loaded DLL as application folder.
//
// Texts are the component's Windows-1252 bytes. Everything shown on screen
// goes through the wide functions after an explicit Windows-1252 conversion,
// so umlauts come out right whatever the system's ANSI code page; paths and
// registry names go through the ANSI functions, as the files and keys they
// name were written.
//
// Unattended runs (tests, build machines) set the environment variable
// FOLIOSCOPE_DIALOG_LOG to a file name: message boxes and the error dialog
// are then not shown but appended to that file (Windows-1252, CR LF) and
// answered with OK and "Ignorieren". "NUL" discards them.
//
//   MessageBox <style> <title>      ErrorDialog
//   <text>                          <report text>
//   <empty line>                    <empty line>
#ifndef FOLIOSCOPE_INFRA_WINDOWS_PLATFORM_H_
#define FOLIOSCOPE_INFRA_WINDOWS_PLATFORM_H_

#include <memory>
#include <string>
#include <vector>

#include "infra/platform.h"

namespace folioscope {

class WindowsPlatform : public Platform {
 public:
  // Settings in the real registry.
  WindowsPlatform();
  // Settings in `settings` (not owned; must outlive the platform).
  explicit WindowsPlatform(SettingsBackend* settings);
  ~WindowsPlatform() override;

  SettingsBackend& Settings() override { return *settings_; }
  int32_t MessageBox(const std::string& text, int32_t style, const std::string& title) override;
  int32_t ShowErrorDialog(const std::string& report_text, ErrorDialogActions& actions) override;
  void PumpMessages() override;
  uint64_t HostCodeRuns() const override { return host_code_runs_; }
  bool OpenAddress(const std::string& address) override;
  bool PrintText(const std::string& text) override;
  // Programs are started without a window (the component runs only the
  // help compiler's batch file). While waiting with `pump_messages` set the
  // thread's messages keep running, so the host stays responsive.
  int32_t RunAndWait(const std::vector<std::string>& argv, const std::string& working_folder,
                     bool pump_messages) override;
  // Command lines run through cmd.exe; every program starts without a
  // window anyway.
  std::vector<std::string> ShellCommand(const std::string& command_line, bool hidden) override;
  // hhc.exe in the application folder.
  HelpCompiler FindHelpCompiler() override;
  std::vector<FolderEntry> ListFolder(const std::string& folder) override;
  FileStamp StampOfFile(const std::string& path) override;
  std::string ApplicationFolder() override;
  std::string FallbackLogFolder() override;
  std::string ApplicationFileName() override;
  AppVersion ApplicationVersion() override;
  std::string NowText() override;
  uint32_t LastSystemError() override;
  std::string NumberGroupSeparator() override;
  // True when the environment variable FOLIOSCOPE_IDE_DIAGNOSTICS is "1".
  bool InDevelopmentEnvironment() override;

 private:
  std::unique_ptr<SettingsBackend> owned_settings_;
  SettingsBackend* settings_;
  uint64_t host_code_runs_ = 0;
};

// The full path of the module (DLL or program) that holds this code.
std::string ThisModulePath();

}  // namespace folioscope

#endif  // FOLIOSCOPE_INFRA_WINDOWS_PLATFORM_H_
