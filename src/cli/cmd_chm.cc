// folioscope chm PROJECT.vbp -o DIR [--module NAME [--member NAME]]
//
// Builds the compiled help file of a VB6 project in DIR: the whole project
// (SaveMode 0), one module (--module, SaveMode 1) or one member of it
// (--module and --member, SaveMode 2). The exit status is 1 when no
// <project name>.chm came out, whatever the reason. A DIR that holds files
// but no earlier report is refused unless --force is given
// (output_folder.h); the clean-up after the compile removes only files
// that the run wrote.
#include <filesystem>
#include <memory>
#include <string>
#include <system_error>

#include "cli/command_project.h"
#include "cli/host.h"
#include "cli/output_folder.h"
#include "cli/project_left_to_exit.h"
#include "engine/folioscope.h"
#include "infra/file_system.h"
#include "infra/os_path.h"

namespace folioscope {
namespace {

struct ChmOptions {
  std::string project;
  std::string output;
  std::string module;
  std::string member;
  bool force = false;
};

int32_t SaveModeOf(const ChmOptions& options) {
  if (!options.member.empty()) return 2;
  if (!options.module.empty()) return 1;
  return 0;
}

bool HelpFileWritten(const std::string& folder, const std::string& project_name) {
  std::error_code ec;
  const std::filesystem::path chm(OsPath(JoinPath(folder, project_name + ".chm")));
  return std::filesystem::is_regular_file(chm, ec) && std::filesystem::file_size(chm, ec) > 0;
}

void RunChm(Host& host, const ChmOptions& options) {
  if (!options.member.empty() && options.module.empty()) {
    host.Fail(kExitUsage, "--member needs --module");
    return;
  }
  if (!host.Start()) return;
  std::unique_ptr<SourceProject> project = ReadCommandProject(host, options.project);
  if (!project) return;
  const ProjectLeftToExit leave_project(project);
  if (!ClaimOutputFolder(host, options.output, options.force)) return;
  CFolioscope report;
  report.Projekt = project.get();
  report.PlainPath = options.output;
  report.ProjektName = project->Name;
  report.ModuleName = options.module;
  report.MemberName = options.member;
  report.SaveCHMReportSystem(SaveModeOf(options));
  MarkReportFolder(report.PlainPath);
  host.exit_status = host.FinalStatus();
  if (!report.Ready() || !HelpFileWritten(report.PlainPath, project->Name)) {
    host.exit_status = kExitFailed;
  }
}

void Setup(CLI::App& app, Host& host) {
  auto options = std::make_shared<ChmOptions>();
  CLI::App* cmd = app.add_subcommand("chm", "Compiled HTML Help file of a VB6 project");
  cmd->add_option("PROJECT", options->project, "The project file (.vbp)")->required();
  cmd->add_option("-o,--output", options->output, "Output folder")->required();
  cmd->add_option("--module", options->module, "Only this module");
  cmd->add_option("--member", options->member, "Only this member of --module");
  cmd->add_flag("--force", options->force,
                "Write into DIR even when it holds files but no earlier report");
  cmd->callback([&host, options] { RunChm(host, *options); });
}

CommandRegistration reg(&Setup);

}  // namespace
}  // namespace folioscope
