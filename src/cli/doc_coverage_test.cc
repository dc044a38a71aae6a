#include "cli/doc_coverage.h"

#include <gtest/gtest.h>

#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "infra/error_handler.h"
#include "infra/recording_platform.h"
#include "infra/test_folder.h"
#include "infra/test_progress.h"
#include "model/vb6_reader.h"

namespace folioscope {
namespace {

constexpr ListedScopes kPublic{true, false, false};
constexpr ListedScopes kAll{true, true, true};

// What coverage counts in one module's code (lines joined by "\n").
struct Case {
  CoverageCounts expected;  // members, summary, params, described, returning, returns, incomplete
  ListedScopes scopes;
  const char* code;
  int32_t error_line = 0;  // the file line of the error that stops the reading
};

const Case kCases[] = {
    {{1, 1, 1, 1, 1, 1, 0},
     kPublic,  // fully documented
     "'/// <summary>Adds.</summary>\n'/// <param name=\"a\">First.</param>\n"
     "'/// <returns>The sum.</returns>\nPublic Function Add(a As Long) As Long\nEnd Function"},
    {{1, 0, 2, 0, 0, 0, 0}, kPublic, "Public Sub Clear(a As Long, b As Long)\nEnd Sub"},
    // Members count when their scope is listed; no scope written is Public.
    {{1, 0, 0, 0, 0, 0, 0}, kPublic, "Private Sub A()\nEnd Sub\nFriend Sub B()\nEnd Sub\nSub C()"},
    {{3, 0, 0, 0, 0, 0, 0}, kAll, "Private Sub A()\nEnd Sub\nFriend Sub B()\nEnd Sub\nSub C()"},
    // Only Functions and Property Gets need <returns>; Let and Sub read it
    // (or not) without counting.
    {{3, 0, 1, 0, 1, 1, 0},
     kPublic,
     "'/// <returns>x</returns>\nPublic Property Get V() As Long\nEnd Property\n"
     "'/// <returns>x</returns>\nPublic Property Let V(n As Long)\nEnd Property\n"
     "'/// <returns>x</returns>\nPublic Sub S()\nEnd Sub"},
    // A misnamed parameter ends the parameter reading with a fault.
    {{1, 1, 1, 0, 1, 0, 1},
     kPublic,
     "'/// <summary>Adds.</summary>\n'/// <param name=\"b\">Renamed.</param>\n"
     "Public Function Add(a As Long) As Long\nEnd Function",
     3},
    {{1, 0, 0, 0, 0, 0, 1}, kPublic, "'/// <summary>Unclosed.\nPublic Sub Add()\nEnd Sub", 2},
    // Blocks of blanks show nothing.
    {{1, 0, 1, 0, 0, 0, 0},
     kPublic,
     "'/// <summary>\n'/// </summary>\n'/// <param name=\"a\">\n'/// </param>\n"
     "Public Sub S(a As Long)\nEnd Sub"},
    // The module line reads the summary first, which lets every later scan
    // see the member's last line: here the only parameter block.
    {{1, 0, 1, 1, 0, 0, 0},
     kPublic,
     "Public Sub S(a As Long)\nEnd Sub\n'/// <param name=\"a\">Late.</param>"},
};

// Reads a one-module project from the module's code, the way the project
// reader reads it.
class DocCoverageTest : public ::testing::Test {
 protected:
  DocCoverageTest() : platform_(folder_.string()), scoped_(&platform_) {}

  std::unique_ptr<SourceProject> ReadOneModuleProject(const std::string& code) {
    std::ofstream(folder_ / "Module1.bas", std::ios::binary) << "Attribute VB_Name = \"Module1\"\n"
                                                             << code << "\n";
    std::ofstream(folder_ / "P.vbp", std::ios::binary)
        << "Type=Exe\r\nModule=Module1; Module1.bas\r\nName=\"P\"\r\n";
    return std::move(ReadProject((folder_ / "P.vbp").string()).project);
  }

  TestFolder scratch_;
  const std::filesystem::path folder_ = scratch_.path();
  RecordingPlatform platform_;
  ScopedPlatform scoped_;
  ProgressRecorder progress_;
  const int64_t reports_before_ = CErrorHandler::Instance().ReportCount();
};

std::vector<int64_t> Fields(const CoverageCounts& c) {
  return {c.members,   c.with_summary, c.parameters, c.described,
          c.returning, c.with_returns, c.incomplete};
}

TEST_F(DocCoverageTest, CountsWhatTheReportShowsAndNamesWhereItFails) {
  for (const Case& c : kCases) {
    std::unique_ptr<SourceProject> project = ReadOneModuleProject(c.code);
    ASSERT_TRUE(project) << c.code;
    const ProjectCoverage measured = MeasureProject(*project, c.scopes);
    ASSERT_EQ(1u, measured.modules.size());
    EXPECT_EQ(Fields(c.expected), Fields(measured.total)) << c.code;
    // A member not read to the end has the lint's error, on its tag's line.
    const std::vector<LintFinding>& findings = measured.modules[0].findings;
    EXPECT_EQ(c.expected.incomplete, static_cast<int64_t>(findings.size())) << c.code;
    for (const LintFinding& f : findings) EXPECT_EQ(c.error_line, f.line) << c.code;
  }
  // Messages and faults went to the findings, not to the host's channel or
  // the error log; afterwards the host's channel is in place again.
  EXPECT_TRUE(progress_.messages.empty());
  EXPECT_EQ(reports_before_, CErrorHandler::Instance().ReportCount());
  AddLog("after", kIconProgress);
  EXPECT_EQ(1u, progress_.messages.size());
}

}  // namespace
}  // namespace folioscope
