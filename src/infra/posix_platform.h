// The console platform of the Linux host: message boxes and the error
// dialog are printed to stderr (UTF-8, prefixed "Quillon: "), the error
// dialog answers "Ignorieren", programs run with fork/exec and are polled
// with a short sleep so the wait does not burn a core.
#ifndef FOLIOSCOPE_INFRA_POSIX_PLATFORM_H_
#define FOLIOSCOPE_INFRA_POSIX_PLATFORM_H_

#include <string>

#include "infra/platform.h"

namespace folioscope {

class PosixPlatform : public Platform {
 public:
  // `settings` is not owned and must outlive the platform.
  PosixPlatform(SettingsBackend* settings, std::string application_folder);

  SettingsBackend& Settings() override { return *settings_; }
  int32_t MessageBox(const std::string& text, int32_t style, const std::string& title) override;
  int32_t ShowErrorDialog(const std::string& report_text, ErrorDialogActions& actions) override;
  void PumpMessages() override {}
  bool OpenAddress(const std::string& address) override;
  bool PrintText(const std::string& text) override;
  int32_t RunAndWait(const std::vector<std::string>& argv, const std::string& working_folder,
                     bool pump_messages) override;
  std::vector<std::string> ShellCommand(const std::string& command_line, bool hidden) override;
  // The program named by $FOLIOSCOPE_HHC, else chmcmd on PATH.
  HelpCompiler FindHelpCompiler() override;
  std::vector<FolderEntry> ListFolder(const std::string& folder) override;
  FileStamp StampOfFile(const std::string& path) override;
  std::string ApplicationFolder() override { return application_folder_; }
  std::string FallbackLogFolder() override;
  std::string ApplicationFileName() override { return "folioscope"; }
  AppVersion ApplicationVersion() override;
  std::string NowText() override;
  uint32_t LastSystemError() override;
  std::string NumberGroupSeparator() override { return "."; }
  bool InDevelopmentEnvironment() override { return false; }

 private:
  SettingsBackend* settings_;
  std::string application_folder_;
};

// Looks `program` up on PATH; empty when not found.
std::string FindOnPath(const std::string& program);

}  // namespace folioscope

#endif  // FOLIOSCOPE_INFRA_POSIX_PLATFORM_H_
