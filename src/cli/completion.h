// Bash completion for the command line, written from the CLI11 application
// itself: every subcommand and option that a command file registers is
// completed without a list kept anywhere else.
//
// The script completes, after the subcommands typed so far, the options and
// subcommands of that level and of the levels above it (global options may
// stand anywhere), the choices of a positional argument that has a fixed set
// of values (`page project|module|member`), and file names after an option
// that takes a value and for positional arguments. Hidden options (those
// without a help group) are left out.
#ifndef FOLIOSCOPE_CLI_COMPLETION_H_
#define FOLIOSCOPE_CLI_COMPLETION_H_

#include <CLI/CLI.hpp>
#include <string>

namespace folioscope {

// The bash script for the program `app.get_name()`: one function and the
// `complete` command that binds it.
std::string BashCompletionScript(const CLI::App& app);

}  // namespace folioscope

#endif  // FOLIOSCOPE_CLI_COMPLETION_H_
