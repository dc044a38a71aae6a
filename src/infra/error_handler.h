// CErrorHandler: the one central reporter of trapped run-time faults.
//
// Each component operation traps its faults (see Trap below) and hands them
// here with its class and procedure name. Report() fills the record, appends
// the report to ErrorLog.txt in the application folder (or in the platform's
// fallback folder when that is not writable), shows the error dialog through
// the platform and returns the user's choice. The reporter itself never
// raises: a fault while logging or showing the dialog is ignored.
#ifndef FOLIOSCOPE_INFRA_ERROR_HANDLER_H_
#define FOLIOSCOPE_INFRA_ERROR_HANDLER_H_

#include <cstdint>
#include <exception>
#include <functional>
#include <string>

#include "infra/vb_runtime.h"

namespace folioscope {

// The support mailbox that "Bericht senden" writes to.
inline constexpr const char* kSupportMailbox = "support@folioscope.org";

class CErrorHandler {
 public:
  // The shared reporter, created on first use.
  static CErrorHandler& Instance();

  // Reports `error`, trapped in `procedure` of class `module` at `line`.
  // Returns kChoiceIgnore (3) or kChoiceEndProgram (4).
  int32_t Report(const vb::RuntimeError& error, const std::string& procedure, int32_t line,
                 const std::string& hint, const std::string& module);

  // The report text shown in the dialog for the last fault.
  const std::string& ReportText() const { return report_text_; }

  void Clear();
  void PrintBericht();
  void SendMail();
  // The mailto: address that SendMail opens.
  std::string MailAddress() const;

  // Number of faults reported since start (the host's exit status uses it).
  int64_t ReportCount() const { return report_count_; }

  // A command that runs the component only to measure what it reads (and
  // writes no report) takes the faults itself: while a diversion is set,
  // Report() hands each fault to it and returns kChoiceIgnore; the fault is
  // not counted, logged or shown. Returns the diversion set before.
  using FaultDiversion = std::function<void(
      const vb::RuntimeError& error, const std::string& procedure, const std::string& module)>;
  FaultDiversion DivertFaults(FaultDiversion diversion);

  // The record, as readable properties.
  const std::string& Beschreibung() const { return beschreibung_; }
  const std::string& FehlerNummer() const { return fehler_nummer_; }
  const std::string& DLLFehlerNummer() const { return dll_fehler_nummer_; }
  const std::string& Hinweis() const { return hinweis_; }
  const std::string& Modul() const { return modul_; }
  const std::string& Member() const { return member_; }
  const std::string& Zeile() const { return zeile_; }
  const std::string& Zeit() const { return zeit_; }
  const std::string& Anwendung() const { return anwendung_; }
  const std::string& Quelle() const { return quelle_; }
  const std::string& ApplicationVersion() const { return application_version_; }

  // The path ErrorLog.txt was last written to (empty when none).
  const std::string& LogPath() const { return log_path_; }

 private:
  CErrorHandler();
  void EnsureApplicationFields();
  std::string BuildReportText(const vb::RuntimeError& error, const std::string& procedure,
                              int32_t line, const std::string& hint,
                              const std::string& module) const;
  void AppendToLog();

  std::string beschreibung_, fehler_nummer_, dll_fehler_nummer_, hinweis_, modul_, member_,
      zeile_, zeit_, anwendung_, quelle_, application_version_;
  std::string report_text_;
  std::string log_path_;
  int64_t report_count_ = 0;
  FaultDiversion diversion_;
};

// Converts any exception escaping an operation into a VB run-time error:
// vb::RuntimeError as it is, std::bad_alloc as error 7, anything else as
// error 51 with its message.
vb::RuntimeError AsRuntimeError(const std::exception& e);

// The trap of every public and private operation: runs `body`; a fault is
// reported to CErrorHandler with `module` and `procedure`. Returns true when
// `body` completed without a fault.
template <typename Body>
bool Trap(const char* module, const char* procedure, Body&& body) {
  try {
    body();
    return true;
  } catch (const std::exception& e) {
    CErrorHandler::Instance().Report(AsRuntimeError(e), procedure, 0, "", module);
    return false;
  }
}

}  // namespace folioscope

#endif  // FOLIOSCOPE_INFRA_ERROR_HANDLER_H_
