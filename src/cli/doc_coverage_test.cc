#include "cli/doc_coverage.h"

#include <gtest/gtest.h>

#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "engine/fs_communicator.h"
#include "infra/error_handler.h"
#include "infra/recording_platform.h"
#include "infra/test_folder.h"
#include "model/vb6_reader.h"

namespace folioscope {
namespace {

constexpr ListedScopes kPublic{true, false, false};
constexpr ListedScopes kAll{true, true, true};

// One module's code (lines joined by "\n") and what coverage counts in it.
struct Case {
  const char* what;
  ListedScopes scopes;
  const char* code;
  CoverageCounts expected;  // members, summary, params, described, returning, returns, incomplete
};

const Case kCases[] = {
    {"fully documented function",
     kPublic,
     "'/// <summary>Adds.</summary>\n'/// <param name=\"a\">First.</param>\n"
     "'/// <returns>The sum.</returns>\nPublic Function Add(a As Long) As Long\nEnd Function",
     {1, 1, 1, 1, 1, 1, 0}},
    {"undocumented sub with two parameters",
     kPublic,
     "Public Sub Clear(a As Long, b As Long)\nEnd Sub",
     {1, 0, 2, 0, 0, 0, 0}},
    {"private and friend members are counted only when listed",
     kPublic,
     "Private Sub A()\nEnd Sub\nFriend Sub B()\nEnd Sub\nSub C()\nEnd Sub",
     {1, 0, 0, 0, 0, 0, 0}},
    {"the same members with every scope listed",
     kAll,
     "Private Sub A()\nEnd Sub\nFriend Sub B()\nEnd Sub\nSub C()\nEnd Sub",
     {3, 0, 0, 0, 0, 0, 0}},
    {"returns expected of Property Get only, read on Let and Sub but not counted",
     kPublic,
     "'/// <returns>x</returns>\nPublic Property Get V() As Long\nEnd Property\n"
     "'/// <returns>x</returns>\nPublic Property Let V(n As Long)\nEnd Property\n"
     "'/// <returns>x</returns>\nPublic Sub S()\nEnd Sub",
     {3, 0, 1, 0, 1, 1, 0}},
    {"a misnamed parameter ends the parameter reading with a fault",
     kPublic,
     "'/// <summary>Adds.</summary>\n'/// <param name=\"b\">Renamed.</param>\n"
     "Public Function Add(a As Long) As Long\nEnd Function",
     {1, 1, 1, 0, 1, 0, 1}},
    {"an unclosed summary shows no summary",
     kPublic,
     "'/// <summary>Adds.\nPublic Sub Add()\nEnd Sub",
     {1, 0, 0, 0, 0, 0, 1}},
    {"a block of blanks documents nothing",
     kPublic,
     "'/// <summary>\n'/// </summary>\n'/// <param name=\"a\">\n'/// </param>\n"
     "Public Sub S(a As Long)\nEnd Sub",
     {1, 0, 1, 0, 0, 0, 0}},
    // The module line reads the summary first, which lets every later scan
    // see the member's last line: here the only parameter block.
    {"a block on the member's last line is read as the report reads it",
     kPublic,
     "Public Sub S(a As Long)\nEnd Sub\n'/// <param name=\"a\">Late.</param>",
     {1, 0, 1, 1, 0, 0, 0}},
};

class Recorder : public CFSCommunicatorEvents {
 public:
  void Message(std::string&, int32_t&) override { ++messages; }
  void OnReportStart(int32_t&) override {}
  void OnReportWorks(int32_t&, std::string&, bool&) override {}
  int messages = 0;
};

class DocCoverageTest : public ::testing::Test {
 protected:
  DocCoverageTest() : platform_(folder_.path().string()), scoped_(&platform_) {
    channel_ = std::make_shared<CFSCommunicator>();
    channel_->AddListener(&recorder_);
    SetProgressChannel(channel_);
  }
  ~DocCoverageTest() override { SetProgressChannel(nullptr); }

  std::unique_ptr<SourceModule> ReadModule(const std::string& code) {
    const std::string path = (folder_.path() / "Module1.bas").string();
    std::ofstream(path, std::ios::binary) << "Attribute VB_Name = \"Module1\"\n" << code << "\n";
    ModuleReadResult read = ReadModuleFile(path, "Module");
    return std::move(read.module);
  }

  TestFolder folder_;
  RecordingPlatform platform_;
  ScopedPlatform scoped_;
  std::shared_ptr<CFSCommunicator> channel_;
  Recorder recorder_;
};

std::vector<int64_t> Fields(const CoverageCounts& c) {
  return {c.members,   c.with_summary, c.parameters, c.described,
          c.returning, c.with_returns, c.incomplete};
}

TEST_F(DocCoverageTest, CountsWhatTheReportShowsAndKeepsTheReadersQuiet) {
  const int64_t faults_before = CErrorHandler::Instance().ReportCount();
  for (const Case& c : kCases) {
    std::unique_ptr<SourceModule> module = ReadModule(c.code);
    ASSERT_TRUE(module) << c.what;
    const ModuleCoverage measured = MeasureModule(*module, c.scopes);
    EXPECT_EQ(Fields(c.expected), Fields(measured.counts)) << c.what;
    EXPECT_EQ(measured.counts.incomplete > 0, !measured.notes.empty()) << c.what;
  }
  // Messages and faults went to the notes, not to the host's channel or the
  // error log; afterwards the host's channel is in place again.
  EXPECT_EQ(0, recorder_.messages);
  EXPECT_EQ(faults_before, CErrorHandler::Instance().ReportCount());
  AddLog("after", kIconProgress);
  EXPECT_EQ(1, recorder_.messages);
}

TEST(CoverageCounts, ShareIsDocumentedOverDocumentable) {
  const struct {
    CoverageCounts counts;
    double share;
  } kShares[] = {
      {{0, 0, 0, 0, 0, 0, 0}, 100.0},  // nothing to document, nothing missing
      {{2, 1, 0, 0, 0, 0, 0}, 50.0},
      {{2, 2, 3, 1, 1, 0, 0}, 50.0},  // 3 of 6
      {{1, 1, 1, 1, 1, 1, 1}, 100.0},
  };
  for (const auto& s : kShares) EXPECT_DOUBLE_EQ(s.share, s.counts.Share());
}

}  // namespace
}  // namespace folioscope
