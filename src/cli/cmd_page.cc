// folioscope page project|module|member PROJECT.vbp [--module NAME] [--member NAME]
//
// Prints one page as the add-in's preview shows it: the HTML bytes exactly
// as built (Windows-1252), with resource files referred to in the report-set
// folder. A module or member that the project does not have reaches the
// error reporter; an unreadable project ends with exit status 2.
#include <iostream>
#include <memory>
#include <string>

#include "cli/command_project.h"
#include "cli/host.h"
#include "engine/folioscope.h"
#include "infra/error_handler.h"
#include "model/source_model.h"

namespace folioscope {
namespace {

struct PageOptions {
  std::string kind;
  std::string project;
  std::string module;
  std::string member;
};

std::string BuildPage(CFolioscope& report, SourceProject& project, const PageOptions& options) {
  if (options.kind == "project") return report.GetProjektSite();
  if (options.kind == "module") return report.GetModulContentSite(options.module);
  // The add-in hands over the member object itself; finding it by name is
  // the caller's part, and a wrong name is a fault like any other.
  std::string page;
  Trap("CFolioscope", "GetMemberContentSite", [&] {
    SourceMember& member = project.Modules.Item(options.module).Members.Item(options.member);
    page = report.GetMemberContentSite(member, project.Name, options.module);
  });
  return page;
}

void RunPage(Host& host, const PageOptions& options) {
  if (!host.Start()) return;
  std::unique_ptr<SourceProject> project = ReadCommandProject(host, options.project);
  if (!project) return;
  CFolioscope report;
  report.Projekt = project.get();
  report.ProjektName = project->Name;
  report.ModuleName = options.module;
  report.MemberName = options.member;
  const std::string page = BuildPage(report, *project, options);
  std::cout.write(page.data(), static_cast<std::streamsize>(page.size()));
  std::cout.flush();
  host.exit_status = host.FinalStatus();
  if (!report.Ready()) host.exit_status = kExitFailed;
}

void Setup(CLI::App& app, Host& host) {
  auto options = std::make_shared<PageOptions>();
  CLI::App* cmd = app.add_subcommand("page", "One page of the report as the preview shows it");
  cmd->add_option("KIND", options->kind, "project, module or member")
      ->required()
      ->check(CLI::IsMember({"project", "module", "member"}));
  cmd->add_option("PROJECT", options->project, "The project file (.vbp)")->required();
  cmd->add_option("--module", options->module, "The module (module and member pages)");
  cmd->add_option("--member", options->member, "The member (member page)");
  cmd->callback([&host, options] { RunPage(host, *options); });
}

CommandRegistration reg(&Setup);

}  // namespace
}  // namespace folioscope
