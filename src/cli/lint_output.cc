#include "cli/lint_output.h"

#include <algorithm>
#include <string>

#include "infra/text_encoding.h"

namespace folioscope {

using nlohmann::ordered_json;

namespace {

constexpr const char* kSarifSchema = "https://json.schemastore.org/sarif-2.1.0.json";
constexpr const char* kProjectRoot = "PROJECTROOT";

LintSeverity SeverityFromName(const std::string& name) {
  if (name == "error") return LintSeverity::kError;
  if (name == "warning") return LintSeverity::kWarning;
  return LintSeverity::kNote;
}

ordered_json SarifRule(const LintRule& rule, const std::vector<LintDocEntry>& doc) {
  const auto entry =
      std::find_if(doc.begin(), doc.end(), [&](const LintDocEntry& e) { return e.id == rule.id; });
  const std::string short_text = entry != doc.end() ? entry->ShortDescription() : "";
  const std::string help = entry != doc.end() ? entry->description : "";
  return ordered_json{
      {"id", std::string(rule.id)},
      {"shortDescription", {{"text", short_text}}},
      {"help", {{"text", help}, {"markdown", help}}},
      {"defaultConfiguration", {{"level", std::string(SeverityName(rule.severity))}}}};
}

ordered_json SarifResult(const LintFinding& f) {
  const auto& rules = LintRules();
  const auto rule =
      std::find_if(rules.begin(), rules.end(), [&](const LintRule& r) { return r.id == f.rule; });
  ordered_json location = {
      {"physicalLocation",
       {{"artifactLocation", {{"uri", Cp1252ToUtf8(f.relative_path)}, {"uriBaseId", kProjectRoot}}},
        {"region", {{"startLine", f.line}}}}}};
  return ordered_json{{"ruleId", f.rule},
                      {"ruleIndex", rule - rules.begin()},
                      {"level", std::string(SeverityName(f.severity))},
                      {"message", {{"text", Cp1252ToUtf8(f.message)}}},
                      {"locations", ordered_json::array({location})}};
}

}  // namespace

std::string DisplayPath(const std::string& path) {
  return path.rfind("./", 0) == 0 ? path.substr(2) : path;
}

std::string LintText(const std::vector<LintFinding>& findings) {
  std::string text;
  for (LintFinding f : findings) {
    f.file = DisplayPath(f.file);
    text += Cp1252ToUtf8(f.ToText());
    text += '\n';
  }
  return text;
}

ordered_json LintJson(const std::vector<LintFinding>& findings) {
  ordered_json array = ordered_json::array();
  for (const LintFinding& f : findings) {
    array.push_back({{"file", Cp1252ToUtf8(DisplayPath(f.file))},
                     {"line", f.line},
                     {"rule", f.rule},
                     {"severity", std::string(SeverityName(f.severity))},
                     {"message", Cp1252ToUtf8(f.message)},
                     {"module", Cp1252ToUtf8(f.module)},
                     {"member", Cp1252ToUtf8(f.member)}});
  }
  return array;
}

std::vector<LintFinding> LintFindingsFromJson(const ordered_json& json) {
  std::vector<LintFinding> findings;
  for (const ordered_json& o : json) {
    LintFinding f;
    f.file = Utf8ToCp1252(o.at("file").get<std::string>());
    f.line = o.at("line").get<int32_t>();
    f.rule = o.at("rule").get<std::string>();
    f.severity = SeverityFromName(o.at("severity").get<std::string>());
    f.message = Utf8ToCp1252(o.at("message").get<std::string>());
    f.module = Utf8ToCp1252(o.at("module").get<std::string>());
    f.member = Utf8ToCp1252(o.at("member").get<std::string>());
    findings.push_back(std::move(f));
  }
  return findings;
}

ordered_json LintSarif(const std::vector<LintFinding>& findings,
                       const std::vector<LintDocEntry>& doc,
                       const std::string& project_folder_uri) {
  ordered_json rules = ordered_json::array();
  for (const LintRule& rule : LintRules()) rules.push_back(SarifRule(rule, doc));
  ordered_json results = ordered_json::array();
  for (const LintFinding& f : findings) results.push_back(SarifResult(f));
  ordered_json driver = {{"name", "folioscope"},
                         {"semanticVersion", std::to_string(FOLIOSCOPE_VERSION_MAJOR) + "." +
                                                 std::to_string(FOLIOSCOPE_VERSION_MINOR) + "." +
                                                 std::to_string(FOLIOSCOPE_VERSION_REVISION)},
                         {"rules", std::move(rules)}};
  ordered_json run = {{"tool", {{"driver", std::move(driver)}}},
                      {"originalUriBaseIds", {{kProjectRoot, {{"uri", project_folder_uri}}}}},
                      {"results", std::move(results)}};
  return ordered_json{
      {"$schema", kSarifSchema}, {"version", "2.1.0"}, {"runs", ordered_json::array({run})}};
}

}  // namespace folioscope
