// The lint agrees with the report: over many generated members with random
// doc blocks, a member has an error from LintProject exactly when a report
// run sends a failure message or an error report while writing its module,
// each error stands on the line of the tag it names, and a LintRecorder
// around the report run finds the same errors.
#include "engine/doc_lint.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>
#include <set>

#include "engine/report_test_support.h"
#include "infra/vb_runtime.h"
#include "model/vb6_module_file.h"
#include "model/vb6_reader.h"

namespace folioscope {
namespace {

using report_testing::ReadBytes;
using report_testing::ReportTest;
using report_testing::WriteBytes;

// Doc-comment pieces: tags right, doubled, misnamed, unquoted, unended, and
// text that is no HTML.
const char* const kPieces[] = {"<summary>",
                               "</summary>",
                               "<remarks>",
                               "</remarks>",
                               "<returns>",
                               "</returns>",
                               "<code>",
                               "</code>",
                               "</param>",
                               "<param name=\"Value\">",
                               "<param name=\"value\">",
                               "<param name=\"Count\">",
                               "<param name=\"Other\">",
                               "<param name=Value>",
                               "<param name=V>",
                               "<param name=\"Count\"",
                               "<SUMMARY>",
                               "Text",
                               "a < b",
                               "x & y",
                               "Dim a As Long",
                               "</summary> <summary>"};

const char* const kDeclarations[][2] = {
    {"Public Function F(ByVal Value As Long, Count As Integer) As Long", "End Function"},
    {"Public Sub F(ByVal Value As Long)", "End Sub"},
    {"Public Property Get F() As Long", "End Property"},
    {"Public Property Let F(ByVal Value As Long)", "End Property"},
};

// A module file with one member under a random doc block.
std::string RandomModule(int index, std::mt19937& random) {
  auto pick = [&](size_t n) { return static_cast<size_t>(random() % n); };
  std::string text =
      "Attribute VB_Name = \"M" + std::to_string(index) + "\"\r\nOption Explicit\r\n";
  const size_t doc_lines = pick(7);
  for (size_t i = 0; i < doc_lines; ++i) {
    text += "'///";
    for (size_t n = 1 + pick(3); n > 0; --n)
      text += std::string(" ") + kPieces[pick(std::size(kPieces))];
    text += "\r\n";
  }
  const auto& declaration = kDeclarations[pick(std::size(kDeclarations))];
  text += std::string(declaration[0]) + "\r\nAttribute F.VB_Description = \"d\"\r\n";
  if (pick(4) == 0) text += std::string("'/// ") + kPieces[pick(std::size(kPieces))] + "\r\n";
  return text + "    x = 1\r\n" + declaration[1] + "\r\n";
}

// The tag a finding's message names, as it stands in the line: "</x>", or
// the opening tag ("<param name" for parameters).
std::string TagOfMessage(const std::string& message) {
  const size_t open = message.find('<');
  const std::string tag = message.substr(open, message.find('>', open) - open + 1);
  return tag == "<param>" || tag.rfind("<param name", 0) == 0 ? "<param name" : tag;
}

class DocLintTest : public ReportTest {
 protected:
  // Writes `count` random modules and their project; returns the .vbp.
  std::string WriteProject(int count) {
    std::mt19937 random(20261124);
    std::string vbp;
    for (int i = 0; i < count; ++i) {
      const std::string file = "M" + std::to_string(i) + ".bas";
      WriteBytes(root_ / "src" / file, RandomModule(i, random));
      vbp += "Module=M" + std::to_string(i) + "; " + file + "\r\n";
    }
    WriteBytes(root_ / "src" / "P.vbp", vbp + "Name=\"P\"\r\n");
    return (root_ / "src" / "P.vbp").string();
  }
};

// Marks the module being written when a failure message or an error
// report comes.
class FailureWatch : public CFSCommunicatorEvents {
 public:
  void Message(std::string&, int32_t& icon) override {
    if (icon == kIconFailure) failed.insert(module_);
  }
  void OnReportStart(int32_t&) override {}
  void OnReportWorks(int32_t&, std::string& name, bool&) override {
    Finish();
    module_ = name;
  }
  // Ends the module being written.
  void Finish() {
    const int64_t reports = CErrorHandler::Instance().ReportCount();
    if (reports > reports_at_start_) failed.insert(module_);
    reports_at_start_ = reports;
  }
  std::set<std::string> failed;

 private:
  std::string module_;  // OnReportWorks names the module it starts
  int64_t reports_at_start_ = CErrorHandler::Instance().ReportCount();
};

TEST_F(DocLintTest, ErrorsAreExactlyTheReportsFailuresOnTheTagLine) {
  constexpr int kModules = 400;
  const std::string vbp = WriteProject(kModules);

  ProjectReadResult for_report = ReadProject(vbp);
  ASSERT_TRUE(for_report.project);
  FailureWatch watch;
  channel_->AddListener(&watch);
  std::vector<LintFinding> recorded;
  {
    LintRecorder recorder(*for_report.project);
    CFolioscope report;
    report.Projekt = for_report.project.get();
    report.ProjektName = "P";
    report.PlainPath = OutDir().string();
    report.SaveReport(0);
    watch.Finish();
    recorded = recorder.Findings();
  }
  channel_->RemoveListener(&watch);

  ProjectReadResult for_lint = ReadProject(vbp);
  ASSERT_TRUE(for_lint.project);
  const std::set<std::string>& reported = watch.failed;
  std::set<std::string> linted;
  std::vector<std::string> lint_errors;
  for (const LintFinding& f : LintProject(*for_lint.project, {{true, true, true}, false})) {
    if (f.severity != LintSeverity::kError) continue;
    linted.insert(f.module);
    lint_errors.push_back(f.ToText());
    const std::vector<std::string> lines = PhysicalLines(ReadBytes(f.file));
    ASSERT_GE(f.line, 1) << f.ToText();
    EXPECT_THAT(vb::LCase(lines.at(static_cast<size_t>(f.line - 1))),
                ::testing::HasSubstr(vb::LCase(TagOfMessage(f.message))))
        << f.ToText();
  }
  EXPECT_EQ(linted, reported);
  EXPECT_GT(reported.size(), kModules / 10u);
  EXPECT_LT(reported.size(), kModules * 9u / 10u);

  std::vector<std::string> recorded_errors;
  for (const LintFinding& f : recorded) recorded_errors.push_back(f.ToText());
  EXPECT_EQ(recorded_errors, lint_errors);
}

}  // namespace
}  // namespace folioscope
