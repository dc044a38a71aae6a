#include "cli/command_project.h"

#include <cstdio>

#include "infra/registry.h"
#include "infra/text_encoding.h"
#include "infra/vb_runtime.h"
#include "model/vb6_reader.h"

namespace folioscope {

std::unique_ptr<SourceProject> ReadCommandProject(Host& host, const std::string& path) {
  ProjectReadResult read = ReadProject(path);
  for (const ReaderDiagnostic& d : read.diagnostics) {
    std::fprintf(stderr, "%s\n", Cp1252ToUtf8(d.ToText()).c_str());
  }
  if (!read.project) host.exit_status = kExitUsage;
  return std::move(read.project);
}

ListedScopes ScopesFromSettings() {
  CRegistry registry;
  auto on = [&](const char* name) {
    return registry.ReadRegWord(kHkeyCurrentUser, kConfigKey, name, 0) == 1;
  };
  return {on("ToolBarPublicValue"), on("ToolBarFriendValue"), on("ToolBarPrivateValue")};
}

bool ScopesFromNames(const std::vector<std::string>& names, ListedScopes* scopes) {
  *scopes = {};
  for (const std::string& name : names) {
    const std::string word = vb::LCase(vb::Trim(name));
    if (word == "public") {
      scopes->public_members = true;
    } else if (word == "friend") {
      scopes->friend_members = true;
    } else if (word == "private") {
      scopes->private_members = true;
    } else {
      return false;
    }
  }
  return true;
}

}  // namespace folioscope
