#include "infra/error_handler.h"

#include <cstdio>
#include <new>
#include <utility>

#include "infra/file_system.h"
#include "infra/os_path.h"
#include "infra/platform.h"

namespace folioscope {

namespace {

constexpr const char* kCrLf = "\r\n";

class DialogActions : public ErrorDialogActions {
 public:
  explicit DialogActions(CErrorHandler& handler) : handler_(handler) {}
  void Print() override { handler_.PrintBericht(); }
  void SendMail() override { handler_.SendMail(); }

 private:
  CErrorHandler& handler_;
};

bool AppendBytes(const std::string& path, const std::string& bytes) {
  std::FILE* f = std::fopen(OsPath(path).c_str(), "ab");
  if (!f) return false;
  bool ok = std::fwrite(bytes.data(), 1, bytes.size(), f) == bytes.size();
  return (std::fclose(f) == 0) && ok;
}

}  // namespace

vb::RuntimeError AsRuntimeError(const std::exception& e) {
  if (auto* rt = dynamic_cast<const vb::RuntimeError*>(&e)) return *rt;
  if (dynamic_cast<const std::bad_alloc*>(&e)) return vb::RuntimeError(vb::kOutOfMemory);
  return vb::RuntimeError(51, std::string("Interner Fehler: ") + e.what());
}

namespace {
thread_local FaultObserver* fault_observer = nullptr;
}  // namespace

FaultObserver* CurrentFaultObserver() { return fault_observer; }

FaultObserver* SetFaultObserver(FaultObserver* observer) {
  FaultObserver* previous = fault_observer;
  fault_observer = observer;
  return previous;
}

void ReportTrappedFault(const vb::RuntimeError& error, const char* module, const char* procedure) {
  if (fault_observer != nullptr && fault_observer->OnFault(error, module, procedure)) return;
  CErrorHandler::Instance().Report(error, procedure, 0, "", module);
}

CErrorHandler& CErrorHandler::Instance() {
  static CErrorHandler handler;
  return handler;
}

CErrorHandler::CErrorHandler() = default;

void CErrorHandler::EnsureApplicationFields() {
  if (!anwendung_.empty()) return;
  Platform& p = CurrentPlatform();
  anwendung_ = "Anwendung " + p.ApplicationFileName();
  AppVersion v = p.ApplicationVersion();
  application_version_ = ", Version " + vb::CStr(v.major) + "." + vb::CStr(v.minor) + "." +
                         vb::CStr(v.revision) + " " + " verursachte folgenden Fehler:";
}

std::string CErrorHandler::BuildReportText(const vb::RuntimeError& error,
                                           const std::string& procedure, int32_t line,
                                           const std::string& hint,
                                           const std::string& module) const {
  Platform& p = CurrentPlatform();
  std::string t;
  t += anwendung_ + application_version_ + kCrLf;
  t += error.description() + "." + kCrLf + kCrLf;
  t += hint;
  t += std::string(kCrLf) + kCrLf + "Der Fehler wird in Datei " + p.ApplicationFolder() + " " +
       kPathSeparatorText + "ErrorLog.txt protokolliert.";
  t += std::string(kCrLf) + kCrLf;
  t += std::string(" [Nummer]  ") + "\t" + vb::Trim(vb::CStr(error.number())) + kCrLf;
  t += std::string(" [DLL Nummer] ") + "\t" + vb::CStr(p.LastSystemError()) + kCrLf;
  t += std::string(" [Modul]      ") + "\t" + module + kCrLf;
  t += std::string(" [Funktion]   ") + "\t" + procedure + kCrLf;
  t += std::string(" [Zeile]      ") + "\t" + vb::CStr(line) + kCrLf;
  t += std::string(" [Quelle]     ") + "\t" + error.source();
  return t;
}

void CErrorHandler::AppendToLog() {
  Platform& p = CurrentPlatform();
  std::string entry = anwendung_ + application_version_ + kCrLf + zeit_ + kCrLf + kCrLf +
                      report_text_ + kCrLf + kCrLf + kCrLf + kCrLf;
  std::string primary = JoinPath(p.ApplicationFolder(), "ErrorLog.txt");
  if (AppendBytes(primary, entry)) {
    log_path_ = primary;
    return;
  }
  std::string folder = p.FallbackLogFolder();
  if (folder.empty()) return;
  CreateFolders(folder);
  std::string fallback = JoinPath(folder, "ErrorLog.txt");
  if (AppendBytes(fallback, entry)) log_path_ = fallback;
}

int32_t CErrorHandler::Report(const vb::RuntimeError& error, const std::string& procedure,
                              int32_t line, const std::string& hint, const std::string& module) {
  try {
    Platform& p = CurrentPlatform();
    EnsureApplicationFields();
    ++report_count_;
    beschreibung_ = "Beschreibung: " + error.description();
    fehler_nummer_ = "Fehlernummer: " + vb::CStr(error.number());
    dll_fehler_nummer_ = "DLL-Fehlernummer: " + vb::CStr(p.LastSystemError());
    hinweis_ = "Hinweis: " + hint;
    modul_ = module;
    member_ = "   Prozedur: " + procedure;
    zeile_ = "   Zeile: " + vb::CStr(line);
    zeit_ = "Datum/Zeit: " + p.NowText();
    quelle_ = "Quelle: " + error.source();
    report_text_ = BuildReportText(error, procedure, line, hint, module);
    AppendToLog();
    DialogActions actions(*this);
    return p.ShowErrorDialog(report_text_, actions);
  } catch (...) {
    return kChoiceIgnore;
  }
}

void CErrorHandler::Clear() {
  beschreibung_.clear();
  fehler_nummer_.clear();
  dll_fehler_nummer_.clear();
  hinweis_.clear();
  modul_.clear();
  member_.clear();
  zeile_.clear();
  zeit_.clear();
  quelle_.clear();
  report_text_.clear();
}

void CErrorHandler::PrintBericht() {
  try {
    CurrentPlatform().PrintText(report_text_);
  } catch (...) {
  }
}

std::string CErrorHandler::MailAddress() const {
  std::string body = vb::Replace(report_text_, kCrLf, "%0D%0A");
  return std::string("mailto:") + kSupportMailbox + "?subject=Fehlerbericht " + anwendung_ + " " +
         application_version_ + "&body=" + CurrentPlatform().NowText() + "%0D%0A" + body;
}

void CErrorHandler::SendMail() {
  try {
    EnsureApplicationFields();
    CurrentPlatform().OpenAddress(MailAddress());
  } catch (...) {
  }
}

}  // namespace folioscope
