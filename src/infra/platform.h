// Everything the component needs from the operating system, behind one
// interface (the component never calls the OS for these directly).
//
// PosixPlatform is the console implementation for the Linux host;
// RecordingPlatform records every interaction for tests. The component
// reaches the platform of the process through CurrentPlatform(); the host
// installs its platform once at start-up, before any component object is
// created, and keeps it alive until the end.
#ifndef FOLIOSCOPE_INFRA_PLATFORM_H_
#define FOLIOSCOPE_INFRA_PLATFORM_H_

#include <cstdint>
#include <string>
#include <vector>

#include "infra/file_stamp.h"
#include "infra/os_path.h"
#include "infra/settings_backend.h"

// windows.h turns MessageBox into MessageBoxA; Platform::MessageBox keeps
// its own name in every file that includes windows.h first.
#ifdef MessageBox
#undef MessageBox
#endif

namespace folioscope {

// Message box styles, as VB's MsgBox constants.
enum MessageBoxStyle : int32_t {
  kMbOkOnly = 0,
  kMbCritical = 16,
  kMbExclamation = 48,
  kMbInformation = 64,
};

// Choices of the error dialog.
enum ErrorDialogChoice : int32_t {
  kChoiceIgnore = 3,      // "Ignorieren"
  kChoiceEndProgram = 4,  // "Programm beenden"
};

struct AppVersion {
  int32_t major = 0;
  int32_t minor = 0;
  int32_t revision = 0;
};

// What the error dialog's click labels do while it is open ("Drucken",
// "Bericht senden"); supplied by CErrorHandler.
class ErrorDialogActions {
 public:
  virtual ~ErrorDialogActions() = default;
  virtual void Print() = 0;
  virtual void SendMail() = 0;
};

// The help compiler of this system.
struct HelpCompiler {
  // The program's full path; "" when the system has none.
  std::string path;
  // hhc.exe is copied next to the pages and run there by compile.bat;
  // chmcmd runs where it is installed, on a project file derived for it
  // (chm/help_compiler.h).
  bool runs_beside_pages = false;
};

class Platform {
 public:
  virtual ~Platform() = default;

  // The settings store (the current user's registry).
  virtual SettingsBackend& Settings() = 0;

  // A modal message box with an OK button; `style` is a MessageBoxStyle.
  // Returns the pressed button (1 = OK). Text and title are Windows-1252.
  virtual int32_t MessageBox(const std::string& text, int32_t style, const std::string& title) = 0;

  // Shows the error dialog with `report_text` modally and returns the
  // user's choice (kChoiceIgnore or kChoiceEndProgram).
  virtual int32_t ShowErrorDialog(const std::string& report_text, ErrorDialogActions& actions) = 0;

  // Lets the host's pending messages run once (VB's DoEvents).
  virtual void PumpMessages() = 0;

  // How many times this platform has let the host's own code run: a message
  // dispatched by PumpMessages or RunAndWait, a modal dialog closed. Such
  // code may change the settings; what was read before the count moved may
  // be stale. A platform that never runs host code returns 0.
  virtual uint64_t HostCodeRuns() const { return 0; }

  // Opens an address (a mailto: URL) with the system's default handler.
  virtual bool OpenAddress(const std::string& address) = 0;

  // Prints a text report on the default printer.
  virtual bool PrintText(const std::string& text) = 0;

  // Starts `argv` in `working_folder` and waits for its end, letting pending
  // messages run while waiting when `pump_messages` is set. Returns the exit
  // code, or -1 when the program could not be started.
  virtual int32_t RunAndWait(const std::vector<std::string>& argv,
                             const std::string& working_folder, bool pump_messages) = 0;

  // The program line that runs `command_line` through the system's command
  // interpreter, for RunAndWait. A hidden run's console output goes nowhere.
  virtual std::vector<std::string> ShellCommand(const std::string& command_line, bool hidden) = 0;

  // Where the help compiler lies and how it is run.
  virtual HelpCompiler FindHelpCompiler() = 0;

  // The entries of `folder` (a component path), as os_path.h's ListFolder
  // gives them.
  virtual std::vector<FolderEntry> ListFolder(const std::string& folder) = 0;

  // The stamp of the file at `path` (a component path), as file_stamp.h's
  // StampOfFile gives it.
  virtual FileStamp StampOfFile(const std::string& path) = 0;

  // The application folder (holds Res, sfn.dat, ErrorLog.txt), without a
  // trailing separator.
  virtual std::string ApplicationFolder() = 0;

  // A folder for ErrorLog.txt when the application folder is not writable.
  virtual std::string FallbackLogFolder() = 0;

  // The program file's name and version (for error reports).
  virtual std::string ApplicationFileName() = 0;
  virtual AppVersion ApplicationVersion() = 0;

  // VB's Now as text ("23.11.2026 14:05:09").
  virtual std::string NowText() = 0;

  // The last system error code (GetLastError / errno).
  virtual uint32_t LastSystemError() = 0;

  // Digit-group separator of the user's regional settings.
  virtual std::string NumberGroupSeparator() = 0;

  // True only while running inside the development environment; enables
  // the "***Ausgabe nur in der IDE***" diagnostics.
  virtual bool InDevelopmentEnvironment() = 0;
};

// The platform of this process. Aborts when none was installed.
Platform& CurrentPlatform();
// Installs `platform` (not owned) and returns the previous one.
Platform* SetCurrentPlatform(Platform* platform);

// Installs a platform for the lifetime of the scope (tests).
class ScopedPlatform {
 public:
  explicit ScopedPlatform(Platform* p) : previous_(SetCurrentPlatform(p)) {}
  ~ScopedPlatform() { SetCurrentPlatform(previous_); }
  ScopedPlatform(const ScopedPlatform&) = delete;
  ScopedPlatform& operator=(const ScopedPlatform&) = delete;

 private:
  Platform* previous_;
};

}  // namespace folioscope

#endif  // FOLIOSCOPE_INFRA_PLATFORM_H_
