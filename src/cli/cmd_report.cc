// folioscope report PROJECT.vbp -o DIR [--module NAME [--member NAME]]
//
// Writes the web report of a VB6 project into DIR: the whole report
// (SaveMode 0), one module's page (--module, SaveMode 1) or one member's
// page (--module and --member, SaveMode 2). DIR is the report object's
// PlainPath with an empty FolderName, so only its last level is created.
// Progress is drawn as a bar on stderr when stderr is a terminal; at the
// end the doc comments the readers failed on are listed on stderr with file
// and line, and the path of the page to open is printed on stdout. A DIR
// that holds files but no earlier report is refused unless --force is given
// (output_folder.h).
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "cli/command_project.h"
#include "cli/host.h"
#include "cli/lint_output.h"
#include "cli/output_folder.h"
#include "cli/progress_bar.h"
#include "cli/project_left_to_exit.h"
#include "engine/doc_lint.h"
#include "engine/folioscope.h"
#include "infra/file_system.h"
#include "infra/fs_communicator.h"
#include "infra/os_path.h"
#include "infra/text_encoding.h"
#include "infra/vb_runtime.h"
#include "model/source_model.h"

namespace folioscope {
namespace {

struct ReportOptions {
  std::string project;
  std::string output;
  std::string module;
  std::string member;
  bool force = false;
};

// The output folder as PlainPath: trailing separators dropped, since the
// folder test treats "dir/" as absent.
std::string OutputFolder(std::string path) {
  while (path.size() > 1 && path.back() == '/') path.pop_back();
  return path;
}

// The page a reader opens first: the frame page of a whole report, else the
// page that was written.
std::string PageToOpen(const ReportOptions& o) {
  if (o.module.empty()) return "_Index.htm";
  if (o.member.empty()) return vb::Replace(o.module, " ", "_") + ".htm";
  return o.module + "_" + vb::Replace(o.member, " ", "_") + ".htm";
}

// Draws the progress bar for the run when stderr is a terminal.
class ProgressScope {
 public:
  explicit ProgressScope(const GlobalOptions& options) {
    const int columns = TerminalColumns(STDERR_FILENO);
    if (options.no_progress || columns == 0 || ProgressChannel() == nullptr) return;
    const bool quiet = options.quiet;
    bar_ = std::make_unique<ProgressBar>(
        stderr, columns, [quiet](int32_t icon) { return !(quiet && icon == kIconProgress); });
    ProgressChannel()->AddListener(bar_.get());
  }
  ~ProgressScope() {
    if (!bar_) return;
    bar_->Finish();
    if (ProgressChannel() != nullptr) ProgressChannel()->RemoveListener(bar_.get());
  }

 private:
  std::unique_ptr<ProgressBar> bar_;
};

// The doc-comment faults the run met, with file and line: the messages of
// the readers and the error reports name neither.
void PrintWhereItFailed(const std::vector<LintFinding>& findings) {
  if (findings.empty()) return;
  std::fprintf(stderr, "folioscope: the doc comments the report failed on:\n%s",
               LintText(findings).c_str());
}

void RunReport(Host& host, const ReportOptions& o) {
  if (!host.Start()) return;
  std::unique_ptr<SourceProject> read = ReadCommandProject(host, o.project);
  if (!read) return;
  const ProjectLeftToExit leave_project(read);
  if (!ClaimOutputFolder(host, OutputFolder(o.output), o.force)) return;
  SourceProject& project = *read;
  CFolioscope report;
  report.Projekt = &project;
  report.ProjektName = project.Name;
  report.PlainPath = OutputFolder(o.output);
  report.FolderName = "";
  report.ModuleName = o.module;
  report.MemberName = o.member;
  const int32_t save_mode = o.module.empty() ? 0 : (o.member.empty() ? 1 : 2);
  std::vector<LintFinding> failed_on;
  {
    const LintRecorder recorder(project);
    ProgressScope progress(host.options);
    report.SaveReport(save_mode);
    failed_on = recorder.Findings();
  }
  PrintWhereItFailed(failed_on);
  MarkReportFolder(report.PlainPath);
  if (!report.Ready()) {
    host.exit_status = kExitFailed;
    return;
  }
  if (host.FinalStatus() != kExitDone) return;
  std::error_code ec;
  const std::filesystem::path page =
      std::filesystem::absolute(OsPath(JoinPath(report.PlainPath, PageToOpen(o))), ec);
  const std::string shown = PathFromOs(page.string());
  if (std::filesystem::exists(page, ec)) {
    Host::PrintLine("Open the report: " + shown);
  } else {
    host.Fail(kExitFailed, "no page was written: " + shown);
  }
}

void Setup(CLI::App& app, Host& host) {
  auto options = std::make_shared<ReportOptions>();
  CLI::App* cmd = app.add_subcommand("report", "Write the web report of a VB6 project");
  cmd->add_option("PROJECT", options->project, "The project file (.vbp)")->required();
  cmd->add_option("-o,--output", options->output, "Output folder (created, one level)")->required();
  CLI::Option* module =
      cmd->add_option("--module", options->module, "Write only this module's page");
  cmd->add_option("--member", options->member, "Write only this member's page (needs --module)")
      ->needs(module);
  cmd->add_flag("--force", options->force,
                "Write into DIR even when it holds files but no earlier report");
  cmd->callback([&host, options] { RunReport(host, *options); });
}

CommandRegistration reg(&Setup);

}  // namespace
}  // namespace folioscope
