// The report object itself: construction, the readiness check that every
// public method runs first, the context it hands the page builders, and the
// page-file writer.
#include "engine/folioscope.h"

#include <memory>
#include <string>

#include "infra/error_handler.h"
#include "infra/fs_communicator.h"
#include "infra/path_guard.h"
#include "infra/platform.h"
#include "infra/vb_runtime.h"
#include "pages/search_index.h"
#include "pages/template_fill.h"

namespace folioscope {

namespace {

constexpr const char* kMessageBoxTitle = "Quillon";

const char kNoReportSetMessage[] =
    "Es wurde noch kein Report-Set ausgew\xE4hlt. Reports k\xF6nnen nicht erstellt werden. "
    "Bitte w\xE4hlen Sie im Men\xFC unter Extras / Einstellungen das gew\xFCnschte Report-Set "
    "aus.";

const char kReloadFailedMessage[] =
    "Die Reporterstellung wurde aufgrund von Initialisierungsfehlern abgebrochen.";

// The message for a report-set folder that is not there; `folder` is the
// path that was tested.
std::string MissingFolderMessage(const std::string& folder) {
  return std::string(
             "Der Dateipfad des ausgew\xE4hlten Report-Sets ist ung\xFCltig. M\xF6glicherweise "
             "wurde der Ordner verschoben, gel\xF6scht oder umbenannt. Es kann kein Report "
             "erstellt werden. W\xE4hlen Sie im Men\xFC unter Extras / Einstellungen ein "
             "g\xFCltiges Report-Set aus.\r\n"
             "Bitte beachten Sie, dass sich die Report-Sets immer im Unterordner Res\\ im "
             "Installationsordner von Quillon befinden m\xFCssen. Das von Ihnen eingestellte "
             "Report-Set muss sich im Ordner ") +
         folder + " befinden.";
}

// A path that still ends in a separator names no folder. With an empty
// ReportPath the tested path is "<app>/Res/", which the file system would
// happily accept on Linux, so the rule is stated here and not left to it.
bool ReportSetFolderExists(const CFileSystem& file_system, const std::string& folder) {
  if (folder.empty()) return false;
  const char last = folder.back();
  if (last == kPathSeparator || last == '\\' || last == '/') return false;
  return file_system.IsOrdnerVorhanden(folder);
}

}  // namespace

CFolioscope::CFolioscope()
    : file_system_(std::make_unique<CFileSystem>()), registry_(std::make_unique<CRegistry>()) {
  save_mode_ = -1;
  CheckOfReady();
}

CFolioscope::~CFolioscope() {
  file_system_.reset();
  registry_.reset();
}

void CFolioscope::CheckOfReady() {
  passed_check_.valid = false;
  Trap(kClass, "CheckOfReady", [&] {
    ready_ = false;
    CRegistry& reg = *registry_;
    // The settings below are one consistent reading: the store is asked
    // for outside changes once, not per value.
    CRegistry::ReadGroup read_group(reg);
    const std::string report_path = ReadReportSetChoice(reg);
    const int32_t reload_request = ReadReportSwitches(reg);
    const std::string message = MissingReportSetMessage(report_path);
    if (!message.empty()) {
      AddLog(message, kIconNotReady);
      CurrentPlatform().MessageBox(message, kMbOkOnly | kMbExclamation, kMessageBoxTitle);
      return;
    }
    ready_ = LoadReportSet(reg, reload_request);
  });
  if (!ready_) return;
  // Counted after the check, whose own messages reach the listeners too.
  passed_check_ = {true, ListenerCallsReturned(), CurrentPlatform().HostCodeRuns(),
                   report_set_path_};
}

// A save checks before every member page, as a caller may change the
// settings, the report-set folder or ask for the templates to be reloaded
// (LNR) while the save runs. Only code that runs in the save's own order can
// do that at a known page: a listener of the progress channel (progress
// events, log lines, from a COM event sink or the command line's progress
// bar) or host code run by a pumped message or a modal dialog. As long as
// neither has run since the last passed check, a re-read finds what that
// check found, so its outcome is kept: the switches and titles in
// settings_, the loaded templates, and the report-set prefix, which the
// save clears after its first check and the page check puts back. Another
// process may still change the settings store or remove the folder at any
// moment, but never at a page of ours it could know; the save treats such a
// change as if it came after the save. After any listener or host code the
// full check runs again, so a change made there is seen from the next page
// on, a reload request included.
void CFolioscope::CheckOfReadyForPage() {
  const bool unchanged = passed_check_.valid &&
                         passed_check_.listener_calls == ListenerCallsReturned() &&
                         passed_check_.host_code_runs == CurrentPlatform().HostCodeRuns();
  if (!unchanged) {
    CheckOfReady();
    return;
  }
  ready_ = true;
  report_set_path_ = passed_check_.report_set_path;
}

std::string CFolioscope::ReadReportSetChoice(CRegistry& reg) {
  settings_.ReportLanguage =
      vb::Trim(reg.ReadRegString(kHkeyCurrentUser, kCurrentReportKey, "ReportLanguage", ""));
  const std::string report_path =
      reg.ReadRegString(kHkeyCurrentUser, kCurrentReportKey, "ReportPath", "");
  report_set_path_ = CurrentPlatform().ApplicationFolder() + kPathSeparatorText + "Res" +
                     kPathSeparatorText + report_path + kPathSeparatorText;
  return report_path;
}

int32_t CFolioscope::ReadReportSwitches(CRegistry& reg) {
  auto word = [&](const char* name) {
    return reg.ReadRegWord(kHkeyCurrentUser, kConfigKey, name, 0);
  };
  ReportSettings& s = settings_;
  s.DelFilesAfterCHMCompiling = word("DelFilesAfterCHMCompiling");
  s.ShowModulePath = word("ShowModulePath");
  s.ShowModuleRelativePath = word("ShowModuleRelativePath");
  s.ShowLOCForModuls = word("ShowLOCForModuls");
  s.ShowLOCForProjects = word("ShowLOCForProjects");
  s.ShowHelpContextID = word("ShowHelpContextID");
  s.ShowVBInternDescription = word("ShowVBInternDescription");
  s.ToolBarPublicValue = word("ToolBarPublicValue");
  s.ToolBarFriendValue = word("ToolBarFriendValue");
  s.ToolBarPrivateValue = word("ToolBarPrivateValue");
  s.ReportStdTitle =
      vb::Trim(reg.ReadRegString(kHkeyCurrentUser, kConfigKey, "ReportStdTitle", ""));
  s.CHMReportTitle =
      vb::Trim(reg.ReadRegString(kHkeyCurrentUser, kConfigKey, "CHMReportTitle", ""));
  return word("LNR");
}

std::string CFolioscope::MissingReportSetMessage(const std::string& report_path) const {
  // A report set counts as chosen once one of its languages is chosen.
  if (settings_.ReportLanguage.empty()) return kNoReportSetMessage;
  const std::string folder =
      vb::Left(report_set_path_, static_cast<int64_t>(report_set_path_.size()) - 1);
  // A ReportPath that leads out of Res names no report set of ours.
  if (!IsSafeRelativePath(report_path) || !ReportSetFolderExists(*file_system_, folder)) {
    return MissingFolderMessage(folder);
  }
  return "";
}

bool CFolioscope::LoadReportSet(CRegistry& reg, int32_t reload_request) {
  if (!resources_) resources_ = std::make_unique<CRessource>();
  // Without a reload request the loaded templates are used as they are;
  // their own Ready is deliberately not consulted here.
  if (reload_request <= 0) return true;
  resources_.reset();
  resources_ = std::make_unique<CRessource>();
  reg.SaveRegWord(kHkeyCurrentUser, kConfigKey, "LNR", 0);
  if (resources_->Ready()) return true;
  AddLog(kReloadFailedMessage, kIconNotReady);
  resources_.reset();
  return false;
}

ReportContext CFolioscope::Context(const std::string& file_prefix) const {
  return {resources_.get(), Projekt, settings_, file_prefix, chm_mode_, search_index_.get()};
}

std::string CFolioscope::PagePrefix() const {
  return ResourceFilePrefix(save_mode_, chm_mode_, report_set_path_);
}

void CFolioscope::ListHelpFile(const std::string& name) {
  chm_file_list_ += name;
  chm_file_list_ += "\r\n";
}

void CFolioscope::WriteTextFile(const std::string& FileName, const std::string& Text, bool Append) {
  folioscope::WriteTextFile(FileName, Text, Append);
  written_files_.insert(FileName);
}

void CFolioscope::WritePageFile(const char* Procedure, const std::string& FileName,
                                std::string Text, bool Append) {
  if (page_writer_ == nullptr) {
    WriteTextFile(FileName, Text, Append);
    return;
  }
  written_files_.insert(FileName);
  page_writer_->Write(FileName, std::move(Text), Append, Procedure);
  ReportPageWriteFailures(page_writer_->TakeFailures());
}

// A page the writer could not write is reported as the procedure that
// handed it over would have reported it, only later.
void CFolioscope::ReportPageWriteFailures(const std::vector<PageWriteFailure>& failures) {
  for (const PageWriteFailure& failure : failures) {
    if (!failure.append) written_files_.erase(failure.path);
    CErrorHandler::Instance().Report(failure.error, failure.procedure, 0, "", kClass);
  }
}

void CFolioscope::FinishPageWriter() {
  if (page_writer_ == nullptr) return;
  const std::vector<PageWriteFailure> failures = page_writer_->Finish();
  page_writer_.reset();
  ReportPageWriteFailures(failures);
}

}  // namespace folioscope
