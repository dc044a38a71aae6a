// folioscope lint PROJECT.vbp [--format text|json|sarif] [--fail-on LEVEL]
//                             [--missing] [--scope public,friend,private]
//
// Prints the doc-comment faults of a project, one per line, as
// "path(line): severity: message [rule-id]", sorted by file and line: the
// places where the report logs a failure (errors), where a page shows
// something else than the comment seems to say (warnings) and, with
// --missing, what is not documented (notes). docs/lint.md describes every
// rule. Exit status 0 when nothing at or above --fail-on (default error) was
// found, 1 otherwise, 2 for usage errors and unreadable projects. Writes no
// file.
#include <cstdio>
#include <filesystem>
#include <iostream>
#include <memory>
#include <string>

#include "cli/command_project.h"
#include "cli/host.h"
#include "cli/lint_doc.h"
#include "cli/lint_output.h"
#include "cli/project_left_to_exit.h"
#include "engine/doc_lint.h"
#include "infra/os_path.h"
#include "infra/text_encoding.h"
#include "infra/vb_runtime.h"

namespace folioscope {
namespace {

struct LintCommandOptions {
  std::string project;
  std::string format = "text";
  std::string fail_on = "error";
  std::string scope;  // empty: the report's scope settings
  bool missing = false;
};

// The project folder's file: URI, in UTF-8 as JSON carries it.
std::string FolderUri(const std::string& project) {
  std::error_code ec;
  std::string folder =
      std::filesystem::absolute(std::filesystem::path(OsPath(project)), ec).parent_path().string();
  if (folder.empty() || folder.back() != '/') folder += '/';
  return "file://" + Cp1252ToUtf8(PathFromOs(folder));
}

void PrintFindings(const LintCommandOptions& o, const std::vector<LintFinding>& findings) {
  if (o.format == "json") {
    std::cout << LintJson(findings).dump(2) << '\n';
  } else if (o.format == "sarif") {
    std::cout << LintSarif(findings, ParseLintDoc(BuiltInLintDoc()), FolderUri(o.project)).dump(2)
              << '\n';
  } else {
    std::cout << LintText(findings);
  }
  std::cout.flush();
}

void RunLint(Host& host, const LintCommandOptions& o) {
  if (!host.Start()) return;
  LintOptions options;
  options.missing = o.missing;
  options.scopes = ScopesFromSettings();
  if (!o.scope.empty() && !ScopesFromNames(vb::Split(o.scope, ","), &options.scopes)) {
    return host.Fail(kExitUsage, "--scope takes public, friend and private: " + o.scope);
  }
  std::unique_ptr<SourceProject> project = ReadCommandProject(host, o.project);
  if (!project) return;
  const ProjectLeftToExit leave_project(project);
  const std::vector<LintFinding> findings = LintProject(*project, options);
  PrintFindings(o, findings);
  const LintSeverity threshold = o.fail_on == "note"      ? LintSeverity::kNote
                                 : o.fail_on == "warning" ? LintSeverity::kWarning
                                                          : LintSeverity::kError;
  for (const LintFinding& f : findings) {
    if (f.severity >= threshold) host.exit_status = kExitFailed;
  }
}

void Setup(CLI::App& app, Host& host) {
  auto options = std::make_shared<LintCommandOptions>();
  CLI::App* cmd = app.add_subcommand("lint", "Check the doc comments of a VB6 project");
  cmd->add_option("PROJECT", options->project, "The project file (.vbp)")->required();
  cmd->add_option("--format", options->format, "text, json or sarif")
      ->check(CLI::IsMember({"text", "json", "sarif"}));
  cmd->add_option("--fail-on", options->fail_on, "Exit 1 at this severity or above")
      ->check(CLI::IsMember({"error", "warning", "note"}));
  cmd->add_flag("--missing", options->missing, "Also note what is not documented");
  cmd->add_option("--scope", options->scope,
                  "Members that count: public,friend,private (default: the report's settings)");
  cmd->callback([&host, options] { RunLint(host, *options); });
}

CommandRegistration reg(&Setup);

}  // namespace
}  // namespace folioscope
