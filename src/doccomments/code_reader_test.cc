#include "doccomments/code_reader.h"

#include <gtest/gtest.h>

#include "doccomments/reader_test_support.h"

namespace folioscope {
namespace {

using testing_support::LoggedMessage;
using testing_support::MakeMember;
using Lines = std::vector<std::string>;

class CodeReader : public testing_support::ReaderTest {};

const Lines kExample = {"Public Sub S()", "'/// <code>", "'/// Dim a As Long", "'/// </code>",
                        "End Sub"};

TEST_F(CodeReader, JoinedBlockShapes) {
  struct Case {
    const char* what;
    Lines lines;
    std::string content;
  };
  const Case cases[] = {
      {"inner lines keep their prefix", kExample, "<br>'/// Dim a As Long<br><br>"},
      {"inner lines keep their indent",
       {"'/// <code>", "    '///   If x Then", "'/// </code>", "x"},
       "<br>    '///   If x Then<br><br>"},
      {"code behind the opening tag is dropped",
       {"'/// <code>Dim a", "'/// b", "'/// last</code>", "x"},
       "<br>'/// b<br>last<br>"},
      {"two lines join with a blank", {"'/// <CODE>", "'/// x = 1</Code>", "x"}, " x = 1"},
      {"no block", {"' x", "y"}, ""},
  };
  for (const Case& c : cases) {
    auto m = MakeMember(c.lines);
    CCode reader;
    EXPECT_EQ(reader.GetCode(*m), 0);
    EXPECT_EQ(reader.CodeContent(), c.content) << c.what;
    EXPECT_EQ(m->CodeLines.Count(), static_cast<int32_t>(c.lines.size())) << c.what;
  }
  EXPECT_EQ(FaultsReported(), 0);
  EXPECT_TRUE(Messages().empty());
}

TEST_F(CodeReader, PreformattedGivesTheFormattedInnerLinesAsFragment) {
  auto m = MakeMember(kExample);
  CCode reader;
  reader.SetGetAsPraeformated(true);
  reader.GetCode(*m);
  EXPECT_EQ(reader.CodeContent(),
            "<FONT COLOR=#000000><FONT style='font-family: Courier New;'><PRE>"
            "<FONT COLOR=#000000>&#160;</FONT><FONT COLOR=#009900> '/// Dim a As Long<BR></FONT>"
            "</PRE>");
  EXPECT_TRUE(std::filesystem::exists(folder_ / "sfn.dat"));
}

TEST_F(CodeReader, OneLineExampleFaultReachesTheErrorReporter) {
  auto m = MakeMember({"Sub S()", "'/// <code>x = 1</code>", "End Sub"});
  CCode reader;
  EXPECT_EQ(reader.GetCode(*m), 0);
  EXPECT_EQ(reader.CodeContent(), "");
  EXPECT_EQ(FaultsReported(), 1);
  ASSERT_EQ(platform_.error_dialogs.size(), 1u);
  const std::string& report = platform_.error_dialogs[0];
  EXPECT_NE(report.find("CCode"), std::string::npos);
  EXPECT_NE(report.find("GetCode"), std::string::npos);
  EXPECT_NE(report.find("[Nummer]  \t5"), std::string::npos);
}

TEST_F(CodeReader, MissingTagsHeaderAndDiagnostics) {
  const std::string tail = " Code-Tag gefunden werden. Die Verarbeitung wird abgebrochen.";
  struct Case {
    Lines lines;
    std::vector<LoggedMessage> messages;
  };
  const Case cases[] = {
      {{"'/// <code>", "x", "y"},
       {{"F\xFCr eine vorhandene Codebeschreibung konnte kein schlie\337endes" + tail,
         kIconFailure}}},
      {{"'/// </code>", "x", "y"},
       {{"F\xFCr eine vorhandene Codebeschreibung konnte kein \366ffnendes" + tail, kIconFailure}}},
  };
  for (const Case& c : cases) {
    recorder_.messages.clear();
    auto m = MakeMember(c.lines);
    CCode reader;
    reader.GetCode(*m);
    EXPECT_EQ(reader.CodeContent(), "");
    EXPECT_EQ(Messages(), c.messages);
  }

  recorder_.messages.clear();
  auto header = MakeMember(kExample, "Header");
  CCode reader;
  reader.GetCode(*header);
  EXPECT_EQ(reader.CodeContent(), "");
  EXPECT_TRUE(Messages().empty());

  platform_.in_ide = true;
  CCode in_ide;
  auto m = MakeMember(kExample);
  in_ide.GetCode(*m);
  EXPECT_EQ(Messages(), (std::vector<LoggedMessage>{
                            {"***Ausgabe nur in der IDE***: Erfassung des Code-Tag f\xFCr Member "
                             "DoIt erfolgreich beendet.",
                             kIconProgress}}));
  EXPECT_EQ(FaultsReported(), 0);
}

}  // namespace
}  // namespace folioscope
