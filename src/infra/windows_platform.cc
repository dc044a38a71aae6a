#include "infra/windows_platform.h"

#include <windows.h>
// After windows.h, which they build on:
#include <shellapi.h>
#include <winspool.h>

#include <cstdio>
#include <string_view>

#include "infra/command_line.h"
#include "infra/error_handler.h"
#include "infra/file_system.h"
#include "infra/windows_registry_settings.h"

// windows.h maps MessageBox to MessageBoxA; here it is the platform's member.
#undef MessageBox

#ifndef FOLIOSCOPE_VERSION_MAJOR
#define FOLIOSCOPE_VERSION_MAJOR 1
#define FOLIOSCOPE_VERSION_MINOR 0
#define FOLIOSCOPE_VERSION_REVISION 0
#endif

namespace folioscope {

namespace {

constexpr UINT kCp1252 = 1252;

std::wstring Wide(std::string_view text) {
  if (text.empty()) return L"";
  int n = ::MultiByteToWideChar(kCp1252, 0, text.data(), static_cast<int>(text.size()), nullptr, 0);
  std::wstring out(static_cast<size_t>(n), L'\0');
  ::MultiByteToWideChar(kCp1252, 0, text.data(), static_cast<int>(text.size()), out.data(), n);
  return out;
}

HMODULE ThisModule() {
  HMODULE module = nullptr;
  ::GetModuleHandleExA(
      GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
      reinterpret_cast<LPCSTR>(&ThisModule), &module);
  return module;
}

// The owner of modal windows: the calling thread's active window (the
// host's main window), so that the host is disabled while they are open.
HWND OwnerWindow() { return ::GetActiveWindow(); }

// --- Unattended runs --------------------------------------------------------

// A variable of the process environment, "" when unset. Read from the
// process block rather than the C runtime's copy, so that a host's
// SetEnvironmentVariable after start-up counts too.
std::string EnvironmentVariable(const char* name) {
  char value[MAX_PATH + 1];
  DWORD n = ::GetEnvironmentVariableA(name, value, sizeof value);
  if (n == 0) return "";
  if (n < sizeof value) return std::string(value, n);
  std::string longer(n, '\0');
  n = ::GetEnvironmentVariableA(name, longer.data(), n);
  longer.resize(n);
  return longer;
}

// The file named by FOLIOSCOPE_DIALOG_LOG, or "" when dialogs are shown.
std::string DialogLogPath() { return EnvironmentVariable("FOLIOSCOPE_DIALOG_LOG"); }

void AppendDialogLog(const std::string& path, const std::string& entry) {
  if (std::FILE* f = std::fopen(path.c_str(), "ab")) {
    std::fwrite(entry.data(), 1, entry.size(), f);
    std::fclose(f);
  }
}

// --- The error dialog -------------------------------------------------------

// A dialog template built in memory (DLGTEMPLATE and DLGITEMTEMPLATE
// records), so that the DLL needs no dialog resource.
class DialogTemplate {
 public:
  DialogTemplate(const std::string& title, short cx, short cy) {
    Dword(DS_MODALFRAME | DS_CENTER | DS_SETFONT | WS_POPUP | WS_CAPTION | WS_SYSMENU);
    Dword(0);                   // extended style
    count_at_ = words_.size();  // number of items, filled in by Add
    words_.push_back(0);
    Short(0), Short(0), Short(cx), Short(cy);
    words_.push_back(0);  // no menu
    words_.push_back(0);  // the standard dialog class
    String(Wide(title));
    words_.push_back(8);  // point size of the font
    String(L"Tahoma");
  }

  void Add(WORD id, WORD window_class, DWORD style, short x, short y, short cx, short cy,
           const std::string& text) {
    if (words_.size() % 2 != 0) words_.push_back(0);  // items are DWORD-aligned
    Dword(style | WS_CHILD | WS_VISIBLE);
    Dword(0);
    Short(x), Short(y), Short(cx), Short(cy);
    words_.push_back(id);
    words_.push_back(0xFFFF);  // predefined class by atom
    words_.push_back(window_class);
    String(Wide(text));
    words_.push_back(0);  // no creation data
    ++words_[count_at_];
  }

  const DLGTEMPLATE* get() const { return reinterpret_cast<const DLGTEMPLATE*>(words_.data()); }

 private:
  void Dword(DWORD v) {
    words_.push_back(LOWORD(v));
    words_.push_back(HIWORD(v));
  }
  void Short(short v) { words_.push_back(static_cast<WORD>(v)); }
  void String(const std::wstring& s) {
    for (wchar_t c : s) words_.push_back(static_cast<WORD>(c));
    words_.push_back(0);
  }

  std::vector<WORD> words_;
  size_t count_at_ = 0;
};

constexpr WORD kButtonClass = 0x0080;
constexpr WORD kEditClass = 0x0081;
constexpr WORD kStaticClass = 0x0082;
constexpr WORD kReportId = 100;
constexpr WORD kPrintId = 101;
constexpr WORD kMailId = 102;

struct ErrorDialogState {
  std::wstring report;
  ErrorDialogActions* actions;
};

INT_PTR CALLBACK ErrorDialogProc(HWND dialog, UINT message, WPARAM wparam, LPARAM lparam) {
  switch (message) {
    case WM_INITDIALOG: {
      auto* state = reinterpret_cast<ErrorDialogState*>(lparam);
      ::SetWindowLongPtrW(dialog, DWLP_USER, lparam);
      ::SetDlgItemTextW(dialog, kReportId, state->report.c_str());
      ::SetForegroundWindow(dialog);
      // Focus on "Ignorieren" rather than on the report, which would come up
      // all selected.
      ::SetFocus(::GetDlgItem(dialog, kChoiceIgnore));
      return FALSE;
    }
    case WM_COMMAND: {
      auto* state = reinterpret_cast<ErrorDialogState*>(::GetWindowLongPtrW(dialog, DWLP_USER));
      switch (LOWORD(wparam)) {
        case kPrintId:
          state->actions->Print();
          return TRUE;
        case kMailId:
          state->actions->SendMail();
          return TRUE;
        case kChoiceIgnore:
        case kChoiceEndProgram:
          ::EndDialog(dialog, LOWORD(wparam));
          return TRUE;
        case IDCANCEL:  // Escape or the close box: the harmless choice
          ::EndDialog(dialog, kChoiceIgnore);
          return TRUE;
      }
      return FALSE;
    }
  }
  return FALSE;
}

DialogTemplate ErrorDialogTemplate() {
  DialogTemplate t("Fehler", 300, 262);
  const DWORD text = SS_LEFT;
  const DWORD button = BS_PUSHBUTTON | WS_TABSTOP;
  t.Add(0xFFFF, kStaticClass, text, 7, 7, 286, 18,
        "Quillon (VBFolioscope) hat einen unerwarteten Fehler entdeckt. Die "
        "Programmausf\xFChrung musste unterbrochen werden.");
  t.Add(0xFFFF, kStaticClass, text, 7, 28, 286, 18,
        "Bitte teilen Sie dem Entwicklungsteam den folgenden Fehlerbericht mit, damit der "
        "Fehler behoben werden kann.");
  t.Add(kReportId, kEditClass,
        ES_MULTILINE | ES_READONLY | ES_AUTOVSCROLL | WS_VSCROLL | WS_BORDER | WS_TABSTOP, 7, 49,
        286, 112, "");
  t.Add(0xFFFF, kStaticClass, text, 7, 167, 286, 9, "Vorgehensweise f\xFCr den Fehlerbericht:");
  t.Add(kPrintId, kButtonClass, button, 7, 179, 70, 14, "Drucken");
  t.Add(0xFFFF, kStaticClass, text, 83, 182, 210, 9, "Druckt den Fehlerbericht aus.");
  t.Add(kMailId, kButtonClass, button, 7, 197, 70, 14, "Bericht senden");
  t.Add(0xFFFF, kStaticClass, text, 83, 200, 210, 9,
        std::string("Sendet den Fehlerbericht per E-Mail an ") + kSupportMailbox + ".");
  t.Add(0xFFFF, kStaticClass, text, 7, 219, 286, 9,
        "Bitte w\xE4hlen Sie die weitere Vorgehensweise f\xFCr den Programmablauf:");
  t.Add(kChoiceEndProgram, kButtonClass, button, 7, 233, 80, 14, "Programm beenden");
  t.Add(kChoiceIgnore, kButtonClass, BS_DEFPUSHBUTTON | WS_TABSTOP, 213, 233, 80, 14, "Ignorieren");
  return t;
}

// --- Printing ---------------------------------------------------------------

// Prints `text` line by line on `dc`, tabs expanded, half-inch margins.
bool PrintLines(HDC dc, const std::string& text) {
  DOCINFOA doc{};
  doc.cbSize = sizeof doc;
  doc.lpszDocName = "Fehlerbericht";
  if (::StartDocA(dc, &doc) <= 0) return false;
  TEXTMETRICA metrics{};
  ::GetTextMetricsA(dc, &metrics);
  const int line_height = metrics.tmHeight + metrics.tmExternalLeading;
  const int margin = ::GetDeviceCaps(dc, LOGPIXELSY) / 2;
  const int bottom = ::GetDeviceCaps(dc, VERTRES) - margin;
  bool ok = ::StartPage(dc) > 0;
  int y = margin;
  size_t from = 0;
  while (ok && from <= text.size()) {
    size_t end = text.find("\r\n", from);
    std::string line = text.substr(from, end == std::string::npos ? std::string::npos : end - from);
    if (y + line_height > bottom) {
      ok = ::EndPage(dc) > 0 && ::StartPage(dc) > 0;
      y = margin;
    }
    ::TabbedTextOutA(dc, margin, y, line.c_str(), static_cast<int>(line.size()), 0, nullptr,
                     margin);
    y += line_height;
    if (end == std::string::npos) break;
    from = end + 2;
  }
  ok = ::EndPage(dc) > 0 && ok;
  if (!ok) {
    ::AbortDoc(dc);
    return false;
  }
  return ::EndDoc(dc) > 0;
}

}  // namespace

std::string ThisModulePath() {
  std::string path(MAX_PATH, '\0');
  for (;;) {
    DWORD n = ::GetModuleFileNameA(ThisModule(), path.data(), static_cast<DWORD>(path.size()));
    if (n == 0) return "";
    if (n < path.size()) {
      path.resize(n);
      return path;
    }
    path.resize(path.size() * 2);  // truncated: try a larger buffer
  }
}

WindowsPlatform::WindowsPlatform()
    : owned_settings_(std::make_unique<WindowsRegistrySettings>()),
      settings_(owned_settings_.get()) {}

WindowsPlatform::WindowsPlatform(SettingsBackend* settings) : settings_(settings) {}

WindowsPlatform::~WindowsPlatform() = default;

int32_t WindowsPlatform::MessageBox(const std::string& text, int32_t style,
                                    const std::string& title) {
  std::string log = DialogLogPath();
  if (!log.empty()) {
    AppendDialogLog(
        log, "MessageBox " + std::to_string(style) + " " + title + "\r\n" + text + "\r\n\r\n");
    return IDOK;
  }
  // VB's MsgBox styles are the MB_ flags.
  // The box's own loop dispatches the host's messages while it is open.
  const int32_t pressed = ::MessageBoxW(OwnerWindow(), Wide(text).c_str(), Wide(title).c_str(),
                                        static_cast<UINT>(style) | MB_SETFOREGROUND);
  ++host_code_runs_;
  return pressed;
}

int32_t WindowsPlatform::ShowErrorDialog(const std::string& report_text,
                                         ErrorDialogActions& actions) {
  std::string log = DialogLogPath();
  if (!log.empty()) {
    AppendDialogLog(log, "ErrorDialog\r\n" + report_text + "\r\n\r\n");
    return kChoiceIgnore;
  }
  ErrorDialogState state{Wide(report_text), &actions};
  DialogTemplate dialog = ErrorDialogTemplate();
  INT_PTR choice = ::DialogBoxIndirectParamW(ThisModule(), dialog.get(), OwnerWindow(),
                                             &ErrorDialogProc, reinterpret_cast<LPARAM>(&state));
  ++host_code_runs_;
  return choice == kChoiceEndProgram ? kChoiceEndProgram : kChoiceIgnore;
}

void WindowsPlatform::PumpMessages() {
  MSG message;
  while (::PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
    if (message.message == WM_QUIT) {
      // The host's own loop must still see the request to end.
      ::PostQuitMessage(static_cast<int>(message.wParam));
      return;
    }
    ::TranslateMessage(&message);
    ::DispatchMessageA(&message);
    ++host_code_runs_;
  }
}

bool WindowsPlatform::OpenAddress(const std::string& address) {
  HINSTANCE result =
      ::ShellExecuteA(OwnerWindow(), "open", address.c_str(), nullptr, nullptr, SW_SHOWNORMAL);
  return reinterpret_cast<INT_PTR>(result) > 32;
}

bool WindowsPlatform::PrintText(const std::string& text) {
  char printer[512];
  DWORD size = sizeof printer;
  if (!::GetDefaultPrinterA(printer, &size)) return false;
  HDC dc = ::CreateDCA("WINSPOOL", printer, nullptr, nullptr);
  if (!dc) return false;
  bool ok = PrintLines(dc, text);
  ::DeleteDC(dc);
  return ok;
}

int32_t WindowsPlatform::RunAndWait(const std::vector<std::string>& argv,
                                    const std::string& working_folder, bool pump_messages) {
  if (argv.empty()) return -1;
  std::string line = WindowsCommandLine(argv);
  STARTUPINFOA startup{};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_USESHOWWINDOW;
  startup.wShowWindow = SW_HIDE;
  PROCESS_INFORMATION process{};
  if (!::CreateProcessA(nullptr, line.data(), nullptr, nullptr, FALSE, CREATE_NO_WINDOW, nullptr,
                        working_folder.empty() ? nullptr : working_folder.c_str(), &startup,
                        &process))
    return -1;
  ::CloseHandle(process.hThread);
  if (pump_messages) {
    // Wake for the end of the process or for any message of this thread.
    while (::MsgWaitForMultipleObjects(1, &process.hProcess, FALSE, INFINITE, QS_ALLINPUT) !=
           WAIT_OBJECT_0) {
      PumpMessages();
    }
  } else {
    ::WaitForSingleObject(process.hProcess, INFINITE);
  }
  DWORD exit_code = 0;
  BOOL got = ::GetExitCodeProcess(process.hProcess, &exit_code);
  ::CloseHandle(process.hProcess);
  return got ? static_cast<int32_t>(exit_code) : -1;
}

std::vector<std::string> WindowsPlatform::ShellCommand(const std::string& command_line, bool) {
  return {"cmd.exe", "/c", command_line};
}

HelpCompiler WindowsPlatform::FindHelpCompiler() {
  const std::string compiler = ApplicationFolder() + "\\hhc.exe";
  if (!CFileSystem().IsDateiVorhanden(compiler)) return HelpCompiler{};
  return HelpCompiler{compiler, true};
}

std::vector<FolderEntry> WindowsPlatform::ListFolder(const std::string& folder) {
  return folioscope::ListFolder(folder);
}

FileStamp WindowsPlatform::StampOfFile(const std::string& path) {
  return folioscope::StampOfFile(path);
}

std::string WindowsPlatform::ApplicationFolder() {
  std::string path = ThisModulePath();
  size_t separator = path.find_last_of("\\/");
  return separator == std::string::npos ? std::string() : path.substr(0, separator);
}

std::string WindowsPlatform::FallbackLogFolder() {
  char folder[MAX_PATH + 1];
  DWORD n = ::GetTempPathA(sizeof folder, folder);
  if (n == 0 || n > MAX_PATH) return "";
  std::string result(folder, n);
  while (!result.empty() && (result.back() == '\\' || result.back() == '/')) result.pop_back();
  return result;
}

std::string WindowsPlatform::ApplicationFileName() {
  // VB's App.EXEName: the module's file name without folder and extension.
  std::string path = ThisModulePath();
  size_t separator = path.find_last_of("\\/");
  std::string name = separator == std::string::npos ? path : path.substr(separator + 1);
  size_t dot = name.rfind('.');
  return dot == std::string::npos ? name : name.substr(0, dot);
}

AppVersion WindowsPlatform::ApplicationVersion() {
  return AppVersion{FOLIOSCOPE_VERSION_MAJOR, FOLIOSCOPE_VERSION_MINOR,
                    FOLIOSCOPE_VERSION_REVISION};
}

std::string WindowsPlatform::NowText() {
  SYSTEMTIME t;
  ::GetLocalTime(&t);
  char text[32];
  std::snprintf(text, sizeof text, "%02u.%02u.%04u %02u:%02u:%02u", t.wDay, t.wMonth, t.wYear,
                t.wHour, t.wMinute, t.wSecond);
  return text;
}

uint32_t WindowsPlatform::LastSystemError() { return ::GetLastError(); }

std::string WindowsPlatform::NumberGroupSeparator() {
  char separator[8] = {};
  if (::GetLocaleInfoA(LOCALE_USER_DEFAULT, LOCALE_STHOUSAND, separator, sizeof separator) == 0)
    return ".";
  return separator;
}

bool WindowsPlatform::InDevelopmentEnvironment() {
  return EnvironmentVariable("FOLIOSCOPE_IDE_DIAGNOSTICS") == "1";
}

}  // namespace folioscope
