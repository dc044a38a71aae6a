// The lint against its rule reference (docs/lint.md: the bad examples are
// the fixture, the good ones must pass) and the sample project, and its JSON
// and SARIF outputs.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "cli/host.h"
#include "cli/lint_doc.h"
#include "cli/lint_output.h"
#include "engine/doc_lint.h"
#include "infra/platform.h"
#include "infra/recording_platform.h"
#include "infra/test_folder.h"
#include "model/vb6_reader.h"

namespace folioscope {
namespace {

namespace fs = std::filesystem;
using nlohmann::ordered_json;

class LintTest : public ::testing::Test {
 protected:
  // The findings of the project `vbp`, every scope counted, file names
  // without their folder.
  std::vector<LintFinding> Lint(const std::string& vbp, bool missing) {
    ProjectReadResult read = ReadProject(vbp);
    EXPECT_TRUE(read.project) << vbp;
    if (!read.project) return {};
    std::vector<LintFinding> findings = LintProject(*read.project, {{true, true, true}, missing});
    for (LintFinding& f : findings) f.file = fs::path(f.file).filename().string();
    return findings;
  }

  // An example of the rule reference as module Example.bas, the file VB6
  // would save (CR LF), its first line the example's first.
  std::vector<LintFinding> LintExample(const std::string& id, const std::string& text) {
    std::string crlf;
    for (char c : text) crlf += c == '\n' ? std::string("\r\n") : std::string(1, c);
    const fs::path dir = scratch_.path() / id;
    fs::create_directories(dir);
    std::ofstream(dir / "P.vbp", std::ios::binary) << "Module=Example; Example.bas\r\n";
    std::ofstream(dir / "Example.bas", std::ios::binary) << crlf;
    return Lint((dir / "P.vbp").string(), id.rfind("missing-", 0) == 0);
  }

  std::vector<LintFinding> AllBadExamples() {
    std::vector<LintFinding> all;
    for (const LintDocEntry& e : ParseLintDoc(BuiltInLintDoc())) {
      for (LintFinding& f : LintExample(e.id, e.bad)) all.push_back(std::move(f));
    }
    return all;
  }

  TestFolder scratch_;
  RecordingPlatform platform_{scratch_.path().string()};
  ScopedPlatform scoped_{&platform_};
};

TEST_F(LintTest, RuleReferenceExamplesAreTheFixture) {
  const std::vector<LintDocEntry> entries = ParseLintDoc(BuiltInLintDoc());
  std::vector<std::string> documented;
  for (const LintDocEntry& e : entries) documented.push_back(e.id);
  std::vector<std::string> rules;
  for (const LintRule& r : LintRules()) rules.push_back(std::string(r.id));
  EXPECT_EQ(documented, rules);
  for (const LintDocEntry& e : entries) {
    EXPECT_EQ(LintText(LintExample(e.id + "-bad", e.bad)), e.expected) << e.id;
    EXPECT_EQ(LintText(LintExample(e.id + "-good", e.good)), "") << e.id;
    EXPECT_NE(e.expected, "") << e.id;
    EXPECT_NE(e.ShortDescription(), "") << e.id;
  }
}

TEST_F(LintTest, SampleProjectHasNotesOnly) {
  const std::string source = FOLIOSCOPE_SOURCE_DIR;
  std::ifstream expected_file(source + "/tests/lint/kontor-missing.txt", std::ios::binary);
  std::stringstream expected;
  expected << expected_file.rdbuf();
  EXPECT_EQ(LintText(Lint(source + "/examples/Kontor/Kontor.vbp", true)), expected.str());
}

TEST_F(LintTest, JsonRoundTripsAndSarifHasWhatCodeScanningNeeds) {
  const std::vector<LintFinding> findings = AllBadExamples();
  ASSERT_GE(findings.size(), LintRules().size());

  const std::vector<LintFinding> back =
      LintFindingsFromJson(ordered_json::parse(LintJson(findings).dump(2)));
  ASSERT_EQ(back.size(), findings.size());
  for (size_t i = 0; i < back.size(); ++i) {
    const LintFinding& a = findings[i];
    const LintFinding& b = back[i];
    EXPECT_EQ(std::tie(a.file, a.line, a.rule, a.severity, a.message, a.module, a.member),
              std::tie(b.file, b.line, b.rule, b.severity, b.message, b.module, b.member));
  }

  const ordered_json log =
      ordered_json::parse(LintSarif(findings, ParseLintDoc(BuiltInLintDoc()), "file:///p/").dump());
  EXPECT_EQ(log.at("version"), "2.1.0");
  ASSERT_EQ(log.at("runs").size(), 1u);
  const ordered_json& run = log["runs"][0];
  const ordered_json& rules = run.at("tool").at("driver").at("rules");
  EXPECT_EQ(run["tool"]["driver"].at("name"), "folioscope");
  ASSERT_EQ(rules.size(), LintRules().size());
  for (const ordered_json& rule : rules) {
    EXPECT_FALSE(rule.at("shortDescription").at("text").get<std::string>().empty()) << rule;
    EXPECT_FALSE(rule.at("help").at("text").get<std::string>().empty()) << rule;
  }
  const ordered_json& results = run.at("results");
  ASSERT_EQ(results.size(), findings.size());
  for (const ordered_json& r : results) {
    EXPECT_EQ(rules.at(r.at("ruleIndex").get<size_t>()).at("id"), r.at("ruleId"));
    EXPECT_TRUE(r.at("level") == "error" || r.at("level") == "warning" || r.at("level") == "note");
    EXPECT_FALSE(r.at("message").at("text").get<std::string>().empty());
    const ordered_json& where = r.at("locations").at(0).at("physicalLocation");
    EXPECT_EQ(where.at("artifactLocation").at("uri"), "Example.bas");
    EXPECT_EQ(where["artifactLocation"].at("uriBaseId"), "PROJECTROOT");
    EXPECT_GE(where.at("region").at("startLine").get<int>(), 1);
  }
  EXPECT_EQ(run.at("originalUriBaseIds").at("PROJECTROOT").at("uri"), "file:///p/");
}

// The command as main() runs it; returns the exit status.
int RunCommandLine(std::vector<std::string> args) {
  Host host;
  CLI::App app;
  app.require_subcommand(1);
  app.fallthrough();
  app.add_option("--app-dir", host.options.app_dir);
  app.add_option("--registry", host.options.registry);
  app.add_option("--option", host.options.options);
  for (auto setup : CommandRegistration::All()) setup(app, host);
  std::reverse(args.begin(), args.end());
  try {
    app.parse(args);
  } catch (const CLI::ParseError& e) {
    return e.get_exit_code() == 0 ? 0 : kExitUsage;
  }
  return host.FinalStatus();
}

TEST_F(LintTest, ExitStatusFollowsFailOnScopeAndSettings) {
  const fs::path dir = scratch_.path() / "cli";
  fs::create_directories(dir);
  std::ofstream(dir / "P.vbp", std::ios::binary) << "Module=Example; Example.bas\r\n";
  // One warning (a second summary) on a Public Sub with an undescribed parameter.
  std::ofstream(dir / "Example.bas", std::ios::binary)
      << "'/// <summary>A.</summary>\r\n'/// <summary>B.</summary>\r\n"
         "Public Sub Add(ByVal Value As Long)\r\nEnd Sub\r\n";
  const std::string vbp = (dir / "P.vbp").string();
  const std::vector<std::string> common = {"--app-dir", scratch_.path().string(), "--registry",
                                           (dir / "none.reg").string()};
  struct Case {
    std::vector<std::string> args;
    int status;
  };
  const Case cases[] = {
      {{"lint", vbp}, kExitDone},
      {{"lint", vbp, "--fail-on", "warning"}, kExitFailed},
      {{"lint", vbp, "--fail-on", "note"}, kExitFailed},
      {{"lint", vbp, "--fail-on", "warning", "--scope", "friend,private"}, kExitDone},
      {{"--option", "ToolBarPublicValue=0", "lint", vbp, "--fail-on", "warning"}, kExitDone},
      {{"lint", vbp, "--scope", "publik"}, kExitUsage},
      {{"lint", vbp, "--format", "xml"}, kExitUsage},
      {{"lint", (dir / "missing.vbp").string()}, kExitUsage},
  };
  for (const Case& c : cases) {
    std::vector<std::string> args = common;
    args.insert(args.end(), c.args.begin(), c.args.end());
    EXPECT_EQ(RunCommandLine(args), c.status) << ::testing::PrintToString(c.args);
  }
}

}  // namespace
}  // namespace folioscope
