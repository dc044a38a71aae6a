// folioscope: documentation reports for Visual Basic 6 projects.
#include <CLI/CLI.hpp>
#include <cstdio>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include "cli/arguments.h"
#include "cli/completion.h"
#include "cli/host.h"
#include "infra/text_encoding.h"

namespace {

// "folioscope 1.1.0", from the project version the build passes in.
std::string VersionText() {
  return "folioscope " + std::to_string(FOLIOSCOPE_VERSION_MAJOR) + "." +
         std::to_string(FOLIOSCOPE_VERSION_MINOR) + "." +
         std::to_string(FOLIOSCOPE_VERSION_REVISION);
}

}  // namespace

int main(int argc, char** argv) {
  folioscope::Host host;
  CLI::App app{"Folioscope: HTML and CHM documentation from the '/// comments of VB6 projects",
               "folioscope"};
  app.set_version_flag("--version", VersionText());
  app.require_subcommand(1);
  app.fallthrough();
  auto& o = host.options;
  app.add_option("--app-dir", o.app_dir, "Application folder (holds Res/, sfn.dat, ErrorLog.txt)");
  app.add_option("--registry", o.registry, "Settings hive file (REGEDIT format)");
  app.add_option("--set", o.set, "Report set folder for this run (ReportPath)");
  app.add_option("--language", o.language, "Report language for this run (ReportLanguage)");
  app.add_option("--option", o.options, "NAME=VALUE: any setting, for this run only");
  app.add_flag("--quiet", o.quiet, "Print failures only");
  app.add_flag("--no-progress", o.no_progress, "Draw no progress bar");
  for (auto setup : folioscope::CommandRegistration::All()) setup(app, host);
  // Hidden: the build writes the installed bash completion with it.
  app.add_flag_callback(
         "--bash-completion",
         [&app] {
           std::cout << folioscope::BashCompletionScript(app);
           throw CLI::Success();
         },
         "Print the bash completion script")
      ->group("");
  std::vector<std::string> arguments;
  std::string error;
  if (!folioscope::ArgumentsInCp1252(argc, argv, &arguments, &error)) {
    std::fprintf(stderr, "folioscope: %s\n", error.c_str());
    return folioscope::kExitUsage;
  }
  std::vector<const char*> converted;
  for (const std::string& a : arguments) converted.push_back(a.c_str());
  try {
    app.parse(argc, converted.data());
  } catch (const CLI::ParseError& e) {
    // The messages repeat arguments, which are Windows-1252 by now.
    std::ostringstream out, err;
    int code = app.exit(e, out, err);
    std::fputs(folioscope::Cp1252ToUtf8(out.str()).c_str(), stdout);
    std::fputs(folioscope::Cp1252ToUtf8(err.str()).c_str(), stderr);
    return code == 0 ? 0 : folioscope::kExitUsage;
  }
  return host.FinalStatus();
}
