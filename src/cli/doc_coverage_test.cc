#include "cli/doc_coverage.h"

#include <gtest/gtest.h>

#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "doccomments/reader_test_support.h"
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
     "Public Function Add(a As Long) As Long\nEnd Function"},
    {{1, 0, 0, 0, 0, 0, 1}, kPublic, "'/// <summary>Unclosed.\nPublic Sub Add()\nEnd Sub"},
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

// Reads a module from its code, the way the project reader reads a file.
class DocCoverageTest : public testing_support::ReaderTest {
 protected:
  std::unique_ptr<SourceModule> ReadModule(const std::string& code) {
    const std::string path = (folder_ / "Module1.bas").string();
    std::ofstream(path, std::ios::binary) << "Attribute VB_Name = \"Module1\"\n" << code << "\n";
    return std::move(ReadModuleFile(path, "Module").module);
  }
};

std::vector<int64_t> Fields(const CoverageCounts& c) {
  return {c.members,   c.with_summary, c.parameters, c.described,
          c.returning, c.with_returns, c.incomplete};
}

TEST_F(DocCoverageTest, CountsWhatTheReportShowsAndKeepsTheReadersQuiet) {
  for (const Case& c : kCases) {
    std::unique_ptr<SourceModule> module = ReadModule(c.code);
    ASSERT_TRUE(module) << c.code;
    const ModuleCoverage measured = MeasureModule(*module, c.scopes);
    EXPECT_EQ(Fields(c.expected), Fields(measured.counts)) << c.code;
    EXPECT_EQ(measured.counts.incomplete > 0, !measured.notes.empty()) << c.code;
  }
  // Messages and faults went to the notes, not to the host's channel or the
  // error log; afterwards the host's channel is in place again.
  EXPECT_TRUE(Messages().empty());
  EXPECT_EQ(0, FaultsReported());
  AddLog("after", kIconProgress);
  EXPECT_EQ(1u, Messages().size());
}

}  // namespace
}  // namespace folioscope
