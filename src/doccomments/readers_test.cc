// The tag readers against tests/examples/doc_comments.txt, and what a
// table of examples cannot show: reads that depend on an earlier read.
#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "doccomments/code_reader.h"
#include "doccomments/param_reader.h"
#include "doccomments/tag_readers.h"
#include "infra/error_handler.h"
#include "infra/recording_platform.h"
#include "infra/test_examples.h"
#include "infra/test_folder.h"
#include "infra/test_progress.h"

namespace folioscope {
namespace {

using Lines = std::vector<std::string>;

std::unique_ptr<SourceMember> MakeMember(const Lines& lines, std::string name = "DoIt",
                                         std::string kind = "Function") {
  auto m = std::make_unique<SourceMember>();
  m->Name = std::move(name);
  m->Kind = std::move(kind);
  for (size_t i = 0; i < lines.size(); ++i) m->CodeLines.Add(static_cast<int32_t>(i + 1), lines[i]);
  m->LineCount = static_cast<int32_t>(lines.size());
  return m;
}

void AddParameter(SourceMember& m, const std::string& name) {
  auto p = std::make_unique<SourceParameter>();
  p->Name = name;
  m.Parameters.Add(std::move(p));
}

class Readers : public ::testing::Test {
 protected:
  Readers() : platform_(folder_.path().string()), scoped_(&platform_) {}

  int64_t FaultsSince(int64_t before) const {
    return CErrorHandler::Instance().ReportCount() - before;
  }

  TestFolder folder_;
  RecordingPlatform platform_;
  ScopedPlatform scoped_;
  ProgressRecorder progress_;
};

// Runs the example's reader on its member; returns the reader's content, or
// for the parameter reader the descriptions, one per line.
std::string RunReader(const Example& e, SourceMember& m) {
  const std::string reader = e.Attribute("reader");
  if (reader == "summary") {
    CSummary r;
    r.GetSummary(m);
    return r.SumaryContent();
  }
  if (reader == "remarks") {
    CRemarks r;
    r.GetRemarks(m);
    return r.RemarksContent();
  }
  if (reader == "returns") {
    CReturns r;
    r.GetReturns(m);
    return r.ReturnsContent();
  }
  if (reader == "code" || reader == "preformatted") {
    CCode r;
    r.SetGetAsPraeformated(reader == "preformatted");
    r.GetCode(m);
    return r.CodeContent();
  }
  CParam r;
  r.GetParam(m);
  std::string descriptions;
  for (const auto& p : m.Parameters) descriptions += p->Description + "\n";
  return descriptions;
}

TEST_F(Readers, Examples) {
  for (const Example& e : ReadExamples("doc_comments.txt")) {
    SCOPED_TRACE(e.where + ": " + e.title);
    progress_.messages.clear();
    platform_.error_dialogs.clear();
    platform_.in_ide = e.Attribute("ide") == "yes";
    auto m = MakeMember(e.Lines("lines"), e.Attribute("member", "DoIt"),
                        e.Attribute("kind", "Function"));
    std::istringstream parameters(e.Attribute("parameters"));
    for (std::string name; parameters >> name;) AddParameter(*m, name);
    const int64_t before = CErrorHandler::Instance().ReportCount();

    std::string expected = e.Text("content");
    if (e.Attribute("reader") == "param") {
      Lines descriptions = e.Lines("descriptions");
      descriptions.resize(m->Parameters.Count());
      expected.clear();
      for (const std::string& d : descriptions) expected += d + "\n";
    }
    EXPECT_EQ(RunReader(e, *m), expected);

    Lines messages;
    for (const auto& [text, icon] : progress_.messages)
      messages.push_back(std::to_string(icon) + " " + text);
    EXPECT_EQ(messages, e.Lines("messages"));
    EXPECT_EQ(FaultsSince(before), std::stoi(e.Attribute("faults", "0")));
    for (const std::string& piece : e.Lines("error")) {
      ASSERT_EQ(platform_.error_dialogs.size(), 1u);
      EXPECT_NE(platform_.error_dialogs[0].find(piece), std::string::npos) << piece;
    }
  }
}

// The opening scan reads keys 0..Count-1 and adds key 0, so a second scan
// of the same dictionary reaches the last line; copying the lines of a
// member read before adds the key past its end too, whether or not the
// member holds a tag (readers that skip tag-less members must keep this).
TEST_F(Readers, ASecondReadSeesTheKeysTheFirstOneAdded) {
  auto m = MakeMember({"Sub X()", "'/// <summary>Late</summary>"});
  CSummary reader;
  reader.GetSummary(*m);
  EXPECT_EQ(reader.SumaryContent(), "");
  EXPECT_TRUE(m->CodeLines.Exists(vb::DictKey::Long(0)));
  reader.GetSummary(*m);
  EXPECT_EQ(reader.SumaryContent(), "Late");

  CRemarks remarks;  // content is emptied by each call
  remarks.GetRemarks(*MakeMember({"'/// <remarks>R</remarks>", "x"}));
  remarks.GetRemarks(*MakeMember({"x", "y"}));
  EXPECT_EQ(remarks.RemarksContent(), "");

  for (const Lines& lines : {Lines{"'/// <param name=\"a\">A</param>", "Sub S(a)"},
                             Lines{"'/// <summary>s</summary>", "Sub S(a)"}}) {
    auto for_param = MakeMember(lines);
    AddParameter(*for_param, "a");
    for_param->CodeLines.Item(0);
    CParam param;
    param.GetParam(*for_param);
    EXPECT_EQ(for_param->CodeLines.Count(), 4) << lines[0];
    EXPECT_EQ(for_param->CodeLines.Item(1), lines[0]);

    auto for_code = MakeMember(lines);
    for_code->CodeLines.Item(0);
    CCode code;
    code.GetCode(*for_code);
    EXPECT_EQ(for_code->CodeLines.Count(), 4) << lines[0];
  }
}

// The first parameter of a name takes every block of that name, and
// 100,000 blocks take one pass over the lines, not one per block.
TEST_F(Readers, ManyParameterBlocksStayLinear) {
  Lines lines;
  auto add_block = [&](const std::string& name, const std::string& text) {
    lines.push_back("'/// <param name=\"" + name + "\">" + text);
    lines.push_back("'/// </param>");
  };
  add_block("p", "first");
  add_block("p", "again");
  constexpr int kMany = 100000;
  for (int i = kMany - 1; i >= 0; --i) add_block("q" + std::to_string(i), std::to_string(i));
  lines.push_back("Sub S()");
  auto m = MakeMember(lines);
  AddParameter(*m, "p");
  AddParameter(*m, "p");
  for (int i = 0; i < kMany; ++i) AddParameter(*m, "q" + std::to_string(i));
  CParam reader;
  reader.GetParam(*m);
  EXPECT_EQ(m->Parameters.Item(1).Description, "again ");
  EXPECT_EQ(m->Parameters.Item(2).Description, "");
  EXPECT_EQ(m->Parameters.Item(3).Description, "0 ");
  EXPECT_EQ(m->Parameters.Item(kMany + 2).Description, std::to_string(kMany - 1) + " ");
}

}  // namespace
}  // namespace folioscope
