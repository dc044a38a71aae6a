// The generated projects must read back through the VB6 reader exactly as
// the generator describes them; otherwise the benchmark would time a report
// of something other than what it claims.
#include "project_generator.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <set>
#include <string>

#include "infra/test_folder.h"
#include "model/vb6_reader.h"

namespace folioscope::bench {
namespace {

namespace fs = std::filesystem;

class GeneratedProjectTest : public ::testing::Test {
 protected:
  TestFolder scratch_;
  const fs::path folder_ = scratch_.path();
};

TEST_F(GeneratedProjectTest, ReadsBackAsGenerated) {
  GeneratorOptions options;
  options.modules = 40;
  options.seed = 7;
  GeneratedProject generated = GenerateProject(options);
  std::string error;
  ASSERT_TRUE(WriteProject(generated, folder_.string(), &error)) << error;

  ProjectReadResult read = ReadProject((folder_ / "Grossprojekt.vbp").string());
  ASSERT_NE(read.project, nullptr);
  for (const ReaderDiagnostic& d : read.diagnostics) ADD_FAILURE() << d.ToText();
  ASSERT_EQ(read.project->Modules.Count(), static_cast<int32_t>(generated.modules.size()));
  EXPECT_EQ(read.project->Name, "Grossprojekt");

  for (size_t i = 0; i < generated.modules.size(); ++i) {
    const GeneratedModule& want = generated.modules[i];
    const SourceComponent& component = read.project->Components.Item(static_cast<int32_t>(i + 1));
    SourceModule& module = read.project->Modules.Item(static_cast<int32_t>(i + 1));
    SCOPED_TRACE(want.name);
    EXPECT_EQ(component.Name, want.name);
    EXPECT_EQ(component.Kind, want.kind);
    EXPECT_EQ(component.RelativePath, want.relative_path);
    ASSERT_EQ(module.Members.Count(), static_cast<int32_t>(want.members.size()));
    for (size_t m = 0; m < want.members.size(); ++m) {
      const GeneratedMember& w = want.members[m];
      SourceMember& got = module.Members.Item(static_cast<int32_t>(m + 1));
      SCOPED_TRACE(w.name);
      EXPECT_EQ(got.Name, w.name);
      EXPECT_EQ(got.Kind, w.kind);
      EXPECT_EQ(got.Scope, w.scope);
      EXPECT_EQ(got.ReturnType, w.return_type);
      if (w.name.starts_with("Let ") || w.name.starts_with("Set ")) continue;
      EXPECT_EQ(got.HelpContextId, w.help_context_id);
      EXPECT_EQ(!got.Description.empty(), w.has_description);
      ASSERT_EQ(got.Parameters.Count(), static_cast<int32_t>(w.parameters.size()));
      for (size_t p = 0; p < w.parameters.size(); ++p) {
        const GeneratedParameter& wp = w.parameters[p];
        const SourceParameter& gp = got.Parameters.Item(static_cast<int32_t>(p + 1));
        EXPECT_EQ(gp.Name, wp.name);
        EXPECT_EQ(gp.Type, wp.type);
        EXPECT_EQ(gp.Passing, wp.passing);
        EXPECT_EQ(gp.Optional, wp.optional);
        EXPECT_EQ(gp.ParamArray, wp.param_array);
        EXPECT_EQ(gp.HasDefault, wp.has_default);
        EXPECT_EQ(gp.Default, wp.default_value);
      }
    }
  }
}

// Size, mix and bytes: every module kind, about the asked number of
// procedures, CR LF only, Windows-1252 umlauts, and the same bytes for the
// same seed (but not for another one).
TEST(GenerateProjectTest, ShapeAndDeterminism) {
  GeneratorOptions options;
  options.modules = 60;
  options.seed = 3;
  GeneratedProject a = GenerateProject(options);
  GeneratedProject b = GenerateProject(options);
  options.seed = 4;
  GeneratedProject c = GenerateProject(options);

  ASSERT_EQ(a.modules.size(), 60u);
  EXPECT_EQ(a.vbp_text, b.vbp_text);
  EXPECT_NE(a.vbp_text, c.vbp_text);
  std::set<std::string> kinds;
  std::set<std::string> names;
  std::map<std::string, int> scopes;
  for (size_t i = 0; i < a.modules.size(); ++i) {
    const GeneratedModule& m = a.modules[i];
    EXPECT_EQ(m.text, b.modules[i].text) << m.name;
    kinds.insert(m.kind);
    EXPECT_TRUE(names.insert(m.name).second) << "duplicate module " << m.name;
    EXPECT_LE(m.name.size(), 40u) << m.name;
    for (const GeneratedMember& member : m.members) ++scopes[member.scope];
    for (size_t pos = m.text.find('\n'); pos != std::string::npos;
         pos = m.text.find('\n', pos + 1)) {
      ASSERT_TRUE(pos > 0 && m.text[pos - 1] == '\r') << m.name << " has a bare LF";
    }
    EXPECT_TRUE(m.text.ends_with("\r\n")) << m.name;
    EXPECT_EQ(m.text.find("\xC3"), std::string::npos) << m.name << " holds UTF-8";
  }
  EXPECT_EQ(kinds.size(), 6u);
  EXPECT_GT(scopes["Friend"], 0);
  EXPECT_GT(scopes["Private"], 0);
  EXPECT_NEAR(a.ProcedureCount() / 60.0, 20.0, 4.0);
  std::string all;
  for (const GeneratedModule& m : a.modules) all += m.text;
  EXPECT_NE(all.find("\xFC"), std::string::npos);  // u umlaut
  EXPECT_NE(all.find("\xDF"), std::string::npos);  // sharp s
  EXPECT_NE(all.find("ParamArray "), std::string::npos);
  EXPECT_NE(all.find(", _\r\n"), std::string::npos);
}

}  // namespace
}  // namespace folioscope::bench
