// folioscope coverage PROJECT.vbp [--format text|json] [--html FILE]
//                     [--badge FILE] [--min PCT] [--scope public,friend,private]
//
// Measures how much of what the web report shows for the project's members
// is documented (doc_coverage.h): per module and in total, the members
// counted, those with a summary, the parameters with a description, the
// Functions and Property Gets with a <returns> block, and the documented
// share. The table or JSON goes to stdout; --html and --badge write a page
// and an SVG badge. Members whose comments the report cannot read to the end
// are named on stderr. Exit status 1 when the share is below --min, 2 for
// usage errors, unreadable projects and files that cannot be written.
#include <cstdio>
#include <fstream>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "cli/coverage_formats.h"
#include "cli/doc_coverage.h"
#include "cli/host.h"
#include "cli/project_left_to_exit.h"
#include "infra/os_path.h"
#include "infra/registry.h"
#include "infra/text_encoding.h"
#include "model/vb6_reader.h"

namespace folioscope {
namespace {

struct CoverageOptions {
  std::string project;
  std::string format = "text";
  std::string html;
  std::string badge;
  double min = -1;  // no gate
  std::vector<std::string> scopes;
};

// The scopes the module pages list: exactly 1 in the settings means on.
ListedScopes ScopesFromSettings() {
  CRegistry registry;
  auto on = [&](const char* name) {
    return registry.ReadRegWord(kHkeyCurrentUser, kConfigKey, name, 0) == 1;
  };
  return {on("ToolBarPublicValue"), on("ToolBarFriendValue"), on("ToolBarPrivateValue")};
}

ListedScopes ScopesFromOption(const std::vector<std::string>& names) {
  ListedScopes scopes;
  for (const std::string& n : names) {
    if (n == "public") scopes.public_members = true;
    if (n == "friend") scopes.friend_members = true;
    if (n == "private") scopes.private_members = true;
  }
  return scopes;
}

void PrintNotes(const ProjectCoverage& coverage) {
  for (const ModuleCoverage& m : coverage.modules) {
    for (const ReadingNote& n : m.notes) {
      std::fprintf(stderr, "%s: member %s: %s\n", Cp1252ToUtf8(m.file).c_str(),
                   Cp1252ToUtf8(n.member).c_str(), Cp1252ToUtf8(n.text).c_str());
    }
  }
}

bool WriteFile(Host& host, const std::string& path, const std::string& text) {
  std::ofstream out(OsPath(path), std::ios::binary | std::ios::trunc);
  out.write(text.data(), static_cast<std::streamsize>(text.size()));
  out.close();
  if (out) return true;
  host.Fail(kExitUsage, "cannot write " + path);
  return false;
}

void RunCoverage(Host& host, const CoverageOptions& o) {
  if (!host.Start()) return;
  ProjectReadResult read = ReadProject(o.project);
  for (const ReaderDiagnostic& d : read.diagnostics) {
    std::fprintf(stderr, "%s\n", Cp1252ToUtf8(d.ToText()).c_str());
  }
  if (!read.project) {
    host.exit_status = kExitUsage;
    return;
  }
  const ProjectLeftToExit leave_project(read.project);
  const ListedScopes scopes = o.scopes.empty() ? ScopesFromSettings() : ScopesFromOption(o.scopes);
  const ProjectCoverage coverage = MeasureProject(*read.project, scopes);
  PrintNotes(coverage);
  if (o.format == "json") {
    std::cout << CoverageJson(coverage).dump(2) << '\n';
  } else {
    std::cout << CoverageTable(coverage);
  }
  std::cout.flush();
  if (!o.html.empty() && !WriteFile(host, o.html, CoveragePage(coverage))) return;
  if (!o.badge.empty() && !WriteFile(host, o.badge, CoverageBadge(coverage.total.Share()))) return;
  if (o.min >= 0 && coverage.total.Share() < o.min) {
    host.Fail(kExitFailed, "documented share " + ShareText(coverage.total.Share()) +
                               " % is below the minimum of " + ShareText(o.min) + " %");
  }
}

void Setup(CLI::App& app, Host& host) {
  auto options = std::make_shared<CoverageOptions>();
  CLI::App* cmd = app.add_subcommand("coverage", "How much of the report is documented");
  cmd->footer(
      "The documented share is the documented items over all items: one item per member (its "
      "summary), one per parameter (its description) and one more per Function and Property "
      "Get (its <returns> block), as the report's pages show them; blank blocks count as "
      "missing. Shares are rounded down. The members counted are those the report writes "
      "pages for: the settings ToolBarPublicValue, ToolBarFriendValue and ToolBarPrivateValue "
      "(1 = listed), or --scope.");
  cmd->add_option("PROJECT", options->project, "The project file (.vbp)")->required();
  cmd->add_option("--format", options->format, "Output on stdout: text (a table) or json")
      ->check(CLI::IsMember({"text", "json"}));
  cmd->add_option("--html", options->html, "Also write the figures as an HTML page to FILE")
      ->type_name("FILE");
  cmd->add_option("--badge", options->badge, "Also write an SVG badge \"docs NN%\" to FILE")
      ->type_name("FILE");
  cmd->add_option("--min", options->min, "Exit status 1 when the share is below PCT")
      ->type_name("PCT")
      ->check(CLI::Range(0.0, 100.0));
  cmd->add_option("--scope", options->scopes,
                  "Count members of these scopes instead of the settings' choice")
      ->delimiter(',')
      ->check(CLI::IsMember({"public", "friend", "private"}));
  cmd->callback([&host, options] { RunCoverage(host, *options); });
}

CommandRegistration reg(&Setup);

}  // namespace
}  // namespace folioscope
