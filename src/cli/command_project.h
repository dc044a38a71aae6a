// What the commands that read a project share: reading it with the
// reader's diagnostics on stderr, and the members they count.
#ifndef FOLIOSCOPE_CLI_COMMAND_PROJECT_H_
#define FOLIOSCOPE_CLI_COMMAND_PROJECT_H_

#include <memory>
#include <string>
#include <vector>

#include "chm/help_topics.h"
#include "cli/host.h"
#include "model/source_model.h"

namespace folioscope {

// Reads the project at `path` (Windows-1252) and prints the reader's
// diagnostics on stderr as UTF-8. Null, with the usage exit status set,
// when the project cannot be read.
std::unique_ptr<SourceProject> ReadCommandProject(Host& host, const std::string& path);

// The scopes the module pages list, from the settings ToolBarPublicValue,
// ToolBarFriendValue and ToolBarPrivateValue: exactly 1 means listed.
ListedScopes ScopesFromSettings();

// The scopes named by "public", "friend" and "private" (case and blanks
// ignored). False for any other word.
bool ScopesFromNames(const std::vector<std::string>& names, ListedScopes* scopes);

}  // namespace folioscope

#endif  // FOLIOSCOPE_CLI_COMMAND_PROJECT_H_
