// The lint's findings as the host prints them: text lines, a JSON array, or
// a SARIF 2.1.0 log for code-scanning dashboards. Texts come out as UTF-8.
#ifndef FOLIOSCOPE_CLI_LINT_OUTPUT_H_
#define FOLIOSCOPE_CLI_LINT_OUTPUT_H_

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "cli/lint_doc.h"
#include "engine/doc_lint.h"

namespace folioscope {

// The path a user opens: a leading "./" dropped.
std::string DisplayPath(const std::string& path);

// "path(line): severity: message [rule-id]", one line each.
std::string LintText(const std::vector<LintFinding>& findings);

// One object per finding: file, line, rule, severity, message, module, member.
nlohmann::ordered_json LintJson(const std::vector<LintFinding>& findings);
// Reads LintJson's output back (file names and texts as UTF-8 gave them).
std::vector<LintFinding> LintFindingsFromJson(const nlohmann::ordered_json& json);

// A SARIF log with one run: every rule in tool.driver.rules with its help
// from `doc`, each result located by its path relative to the project
// folder, whose file: URI is `project_folder_uri` (ending in '/').
nlohmann::ordered_json LintSarif(const std::vector<LintFinding>& findings,
                                 const std::vector<LintDocEntry>& doc,
                                 const std::string& project_folder_uri);

}  // namespace folioscope

#endif  // FOLIOSCOPE_CLI_LINT_OUTPUT_H_
