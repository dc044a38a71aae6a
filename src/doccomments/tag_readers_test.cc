#include "doccomments/tag_readers.h"

#include <gtest/gtest.h>

#include "doccomments/reader_test_support.h"

namespace folioscope {
namespace {

using testing_support::LoggedMessage;
using testing_support::MakeMember;
using Lines = std::vector<std::string>;

class TagReaders : public testing_support::ReaderTest {};

const char kNoClosingSummary[] =
    "F\xFCr Member DoIt konnte kein schlie\337endes  Summary-Tag gefunden werden.";
const char kNoOpeningSummary[] =
    "F\xFCr Member DoIt konnte kein \366ffnendes  Summary-Tag gefunden werden.";

TEST_F(TagReaders, SummaryContentFromBlockShapes) {
  struct Case {
    const char* what;
    Lines lines;
    std::string content;
  };
  const Case cases[] = {
      {"one line", {"'/// <summary>Adds two values.</summary>", "Sub X()"}, "Adds two values."},
      {"one line cuts by length, not at the tag",
       {"'/// <summary>Text</summary> more", "Sub X()"},
       "Text</sum"},
      {"two lines",
       {"'/// <summary>Line one", "'/// line two</summary>", "Sub X()"},
       "Line one line two"},
      {"empty closing part keeps its blank",
       {"Public Function F()", "'/// <summary>First", "'/// second", "'/// </summary>"},
       "First second "},
      {"tag case ignored, text case kept",
       {"'/// <SUMMARY>Mixed Case", "  '/// </Summary>", "Sub X()"},
       "Mixed Case "},
      {"inner lines lose four characters unchecked",
       {"'/// <summary>a", "   x = 1", "'///b", "'/// </summary>", "Sub X()"},
       "a 1 b "},
      {"markup passes through",
       {"'/// <summary>a < b & <i>c</i></summary>", "x"},
       "a < b & <i>c</i>"},
      {"closing above opening", {"'/// tail</summary>", "'/// <summary>head", "x"}, "head tail"},
      {"''' prefix is no doc line", {"'''/// <summary>x</summary>", "Sub X()"}, ""},
      {"blank inside the tag", {"'/// < summary>x</summary>", "Sub X()"}, ""},
  };
  for (const Case& c : cases) {
    auto m = MakeMember(c.lines);
    CSummary reader;
    EXPECT_EQ(reader.GetSummary(*m), 0);
    EXPECT_EQ(reader.SumaryContent(), c.content) << c.what;
  }
  EXPECT_EQ(FaultsReported(), 0);
}

TEST_F(TagReaders, ScanSkipsTheLastLineUntilKeyZeroExists) {
  // The opening scan reads keys 0..Count-1 and adds key 0, so the closing
  // scan right after it already reaches the last line.
  auto m = MakeMember({"Sub X()", "'/// <summary>Late</summary>"});
  CSummary reader;
  reader.GetSummary(*m);
  EXPECT_EQ(reader.SumaryContent(), "");
  EXPECT_EQ(Messages(), (std::vector<LoggedMessage>{{kNoOpeningSummary, kIconFailure}}));
  EXPECT_EQ(m->CodeLines.Count(), 3);
  EXPECT_TRUE(m->CodeLines.Exists(vb::DictKey::Long(0)));

  // A second scan of the same dictionary sees the whole member.
  reader.GetSummary(*m);
  EXPECT_EQ(reader.SumaryContent(), "Late");
  EXPECT_EQ(Messages().size(), 1u);

  // The single line of a one-line member is never an opening line.
  auto single = MakeMember({"'/// <summary>Only</summary>"});
  CSummary other;
  other.GetSummary(*single);
  EXPECT_EQ(other.SumaryContent(), "");
}

TEST_F(TagReaders, MissingTagsAreLoggedNotReported) {
  struct Case {
    Lines lines;
    std::vector<LoggedMessage> messages;
  };
  const Case cases[] = {
      {{"'/// <summary>open only", "x", "y"}, {{kNoClosingSummary, kIconFailure}}},
      {{"'/// close only</summary>", "x", "y"}, {{kNoOpeningSummary, kIconFailure}}},
      {{"' plain comment", "x"}, {}},
  };
  for (const Case& c : cases) {
    recorder_.messages.clear();
    auto m = MakeMember(c.lines);
    CSummary reader;
    reader.GetSummary(*m);
    EXPECT_EQ(reader.SumaryContent(), "");
    EXPECT_EQ(Messages(), c.messages);
  }
  EXPECT_EQ(FaultsReported(), 0);
  EXPECT_TRUE(platform_.error_dialogs.empty());
}

TEST_F(TagReaders, ContentIsEmptiedByEachCall) {
  auto with = MakeMember({"'/// <remarks>R</remarks>", "x"});
  auto without = MakeMember({"x", "y"});
  CRemarks reader;
  reader.GetRemarks(*with);
  EXPECT_EQ(reader.RemarksContent(), "R");
  reader.GetRemarks(*without);
  EXPECT_EQ(reader.RemarksContent(), "");
}

TEST_F(TagReaders, RemarksAndReturnsNameTheirTag) {
  auto m = MakeMember({"'/// <remarks>open", "'/// <returns>open", "x"}, "Calc");
  CRemarks remarks;
  remarks.GetRemarks(*m);
  CReturns returns;
  returns.GetReturns(*m);
  EXPECT_EQ(Messages(),
            (std::vector<LoggedMessage>{
                {"F\xFCr Member Calc konnte kein schlie\337endes  Remarks-Tag gefunden werden.",
                 kIconFailure},
                {"F\xFCr Member Calc konnte kein schlie\337endes  Returns-Tag gefunden werden.",
                 kIconFailure}}));
}

TEST_F(TagReaders, ReturnsOnlyForFunctionsAndProperties) {
  const Lines block = {"'/// <returns>The sum.</returns>", "x"};
  struct Case {
    std::string name, kind, content;
  };
  const Case cases[] = {
      {"Sum", "Function", "The sum."},   {"Get Value", "Property", "The sum."},
      {"Sum", " function ", "The sum."}, {"Sum", "Sub", ""},
      {"Changed", "OutEvent", ""},       {"Header", "", ""},
      {"HEADER", "Function", ""},
  };
  for (const Case& c : cases) {
    auto m = MakeMember(block, c.name, c.kind);
    CReturns reader;
    reader.GetReturns(*m);
    EXPECT_EQ(reader.ReturnsContent(), c.content) << c.name << "/" << c.kind;
  }
  auto sub = MakeMember({"'/// <returns>open only", "x"}, "DoIt", "Sub");
  CReturns reader;
  reader.GetReturns(*sub);
  EXPECT_TRUE(Messages().empty());
}

TEST_F(TagReaders, DiagnosticMessagesOnlyInDevelopmentEnvironment) {
  auto m = MakeMember({"'/// <summary>S</summary>", "x"});
  CSummary shipped;
  shipped.GetSummary(*m);
  EXPECT_TRUE(Messages().empty());

  platform_.in_ide = true;
  CSummary in_ide;  // the mode is fixed when the reader is made
  platform_.in_ide = false;
  in_ide.GetSummary(*m);
  EXPECT_EQ(Messages(),
            (std::vector<LoggedMessage>{
                {"***Ausgabe nur in der IDE***: Erfassung des Summary-Tag f\xFCr Member DoIt "
                 "erfolgreich beendet.",
                 kIconProgress}}));
}

TEST_F(TagReaders, NegativeCutReachesTheErrorReporter) {
  // Closing tag in front of the opening tag on one line: the text behind
  // the opening tag is empty and cannot lose ten characters.
  auto m = MakeMember({"'/// </summary> <summary>", "x"});
  CSummary reader;
  EXPECT_EQ(reader.GetSummary(*m), 0);
  EXPECT_EQ(reader.SumaryContent(), "");
  EXPECT_EQ(FaultsReported(), 1);
  ASSERT_EQ(platform_.error_dialogs.size(), 1u);
  EXPECT_NE(platform_.error_dialogs[0].find("CSummary"), std::string::npos);
  EXPECT_NE(platform_.error_dialogs[0].find("GetSummary"), std::string::npos);
  EXPECT_TRUE(Messages().empty());
}

}  // namespace
}  // namespace folioscope
