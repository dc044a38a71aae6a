#include "doccomments/param_reader.h"

#include <gtest/gtest.h>

#include "doccomments/code_reader.h"
#include "doccomments/reader_test_support.h"

namespace folioscope {
namespace {

using testing_support::AddParameter;
using testing_support::LoggedMessage;
using testing_support::MakeMember;
using Lines = std::vector<std::string>;

class ParamReader : public testing_support::ReaderTest {};

std::vector<std::string> Descriptions(const SourceMember& m) {
  std::vector<std::string> out;
  for (const auto& p : m.Parameters) out.push_back(p->Description);
  return out;
}

TEST_F(ParamReader, BlocksFileTheirTextUnderTheNamedParameter) {
  struct Case {
    const char* what;
    Lines lines;
    std::vector<std::string> params;
    std::vector<std::string> descriptions;
  };
  const Case cases[] = {
      {"two blocks in source order",
       {"'/// <param name=\"a\">first", "'/// a end</param>", "'/// <param name=\"b\">second",
        "'/// </param>", "Public Sub S(a As Long, b As Long)"},
       {"a", "b"},
       {"first a end", "second "}},
      {"blanks in the opening tag are removed",
       {"'/// <param name = \"Value\" >Text</param>", "Sub S(Value)"},
       {"Value"},
       {"Text"}},
      {"tag case ignored, name case kept",
       {"'/// <PARAM NAME=\"X\">Big</PARAM>", "Sub S(X)"},
       {"X"},
       {"Big"}},
      {"three-line block",
       {"'/// <param name=\"p\">one", "'/// two", "'/// three</param>", "Sub S(p)"},
       {"p"},
       {"one two three"}},
      {"opening tag without '>' reuses the previous name",
       {"'/// <param name=\"a\">A</param>", "'/// <param name \"b\"", "'/// late</param>",
        "Sub S(a, b)"},
       {"a", "b"},
       {" late", ""}},
      {"no block at all", {"' just a comment", "Sub S(a)"}, {"a"}, {""}},
  };
  for (const Case& c : cases) {
    auto m = MakeMember(c.lines);
    for (const auto& p : c.params) AddParameter(*m, p);
    CParam reader;
    EXPECT_EQ(reader.GetParam(*m), 0);
    EXPECT_EQ(Descriptions(*m), c.descriptions) << c.what;
  }
  EXPECT_EQ(FaultsReported(), 0);
  EXPECT_TRUE(Messages().empty());
}

TEST_F(ParamReader, UnknownOrMiscasedNameFaultsAfterEarlierWrites) {
  const char* names[] = {"value", "Missing"};
  for (const char* name : names) {
    auto m = MakeMember({"'/// <param name=\"a\">A</param>",
                         std::string("'/// <param name=\"") + name + "\">V</param>",
                         "'/// <param name=\"Value\">never</param>", "Sub S(a, Value)"});
    AddParameter(*m, "a");
    AddParameter(*m, "Value");
    int64_t before = FaultsReported();
    CParam reader;
    EXPECT_EQ(reader.GetParam(*m), 0);
    EXPECT_EQ(FaultsReported(), before + 1) << name;
    EXPECT_EQ(Descriptions(*m), (std::vector<std::string>{"A", ""})) << name;
  }
  ASSERT_FALSE(platform_.error_dialogs.empty());
  EXPECT_NE(platform_.error_dialogs.back().find("CParam"), std::string::npos);
  EXPECT_NE(platform_.error_dialogs.back().find("GetParam"), std::string::npos);
}

TEST_F(ParamReader, MissingTagStopsTheCallWithAMessage) {
  const std::string tail = " Param-Tag gefunden werden. Die Verarbeitung wird abgebrochen.";
  struct Case {
    Lines lines;
    std::string message;
  };
  const Case cases[] = {
      {{"'/// <param name=\"a\">A</param>", "'/// <param name=\"b\">open", "x", "y"},
       "F\xFCr eine vorhandene Parameterbeschreibung konnte kein schlie\337endes" + tail},
      {{"'/// <param name=\"a\">A</param>", "'/// close</param>", "x", "y"},
       "F\xFCr eine vorhandene Parameterbeschreibung konnte kein \366ffnendes" + tail},
  };
  for (const Case& c : cases) {
    recorder_.messages.clear();
    auto m = MakeMember(c.lines);
    AddParameter(*m, "a");
    AddParameter(*m, "b");
    CParam reader;
    reader.GetParam(*m);
    EXPECT_EQ(Messages(), (std::vector<LoggedMessage>{{c.message, kIconFailure}}));
    EXPECT_EQ(Descriptions(*m), (std::vector<std::string>{"A", ""}));
  }
}

TEST_F(ParamReader, HeaderAndNamelessBlocksWriteNothing) {
  auto header = MakeMember({"'/// <param name=\"a\">A</param>", "x"}, "hEaDeR");
  AddParameter(*header, "a");
  CParam reader;
  reader.GetParam(*header);
  EXPECT_EQ(Descriptions(*header), (std::vector<std::string>{""}));
  EXPECT_EQ(header->CodeLines.Count(), 2);  // not even scanned

  // A fresh reader has no name yet: a block without '>' is skipped.
  auto nameless = MakeMember({"'/// <param name", "'/// text</param>", "x"});
  AddParameter(*nameless, "a");
  CParam fresh;
  fresh.GetParam(*nameless);
  EXPECT_EQ(Descriptions(*nameless), (std::vector<std::string>{""}));
  EXPECT_EQ(FaultsReported(), 0);
  EXPECT_TRUE(Messages().empty());
}

TEST_F(ParamReader, MemberLinesStayUntouchedExceptKeyZero) {
  const Lines lines = {"'/// <param name=\"a\">A</param>", "Sub S(a)"};
  auto m = MakeMember(lines);
  AddParameter(*m, "a");
  CParam reader;
  reader.GetParam(*m);
  EXPECT_EQ(m->CodeLines.Count(), 2);
  EXPECT_EQ(m->CodeLines.Item(1), lines[0]);
  EXPECT_EQ(reader.ParamContent(), "");  // the last pass found no block
}

// Once an earlier reader added key 0, a member's Count covers a key past
// its last line: copying the lines adds that key too, whether or not the
// member holds any tag (readers that skip tag-less members must keep this).
TEST_F(ParamReader, CopyingAMemberReadBeforeAddsTheKeyPastItsEnd) {
  for (const Lines& lines : {Lines{"'/// <param name=\"a\">A</param>", "Sub S(a)"},
                             Lines{"'/// <summary>s</summary>", "Sub S(a)"}}) {
    auto for_param = MakeMember(lines);
    AddParameter(*for_param, "a");
    for_param->CodeLines.Item(0);
    CParam reader;
    reader.GetParam(*for_param);
    EXPECT_EQ(for_param->CodeLines.Count(), 4) << lines[0];
    EXPECT_EQ(reader.ParamContent(), "");

    auto for_code = MakeMember(lines);
    for_code->CodeLines.Item(0);
    CCode code;
    code.GetCode(*for_code);
    EXPECT_EQ(for_code->CodeLines.Count(), 4) << lines[0];
  }
}

// Members with many parameters: the first parameter of a name gets the
// text, an unknown name still faults after the earlier writes, and 100,000
// blocks take one pass over the lines, not one per block.
TEST_F(ParamReader, ManyBlocksAndParametersKeepTheRulesAndStayLinear) {
  Lines lines;
  auto add_block = [&](const std::string& name, const std::string& text) {
    lines.push_back("'/// <param name=\"" + name + "\">" + text);
    lines.push_back("'/// </param>");
  };
  for (int i = 19; i >= 0; --i) add_block("p" + std::to_string(i), "t" + std::to_string(i));
  add_block("p3", "again");
  add_block("nobody", "x");
  add_block("p5", "never");
  lines.push_back("Sub S()");
  auto m = MakeMember(lines);
  for (int i = 0; i < 20; ++i) AddParameter(*m, "p" + std::to_string(i));
  auto second_p3 = std::make_unique<SourceParameter>();  // the first p3 takes every p3 block
  second_p3->Name = "p3";
  m->Parameters.Add(std::move(second_p3));
  CParam reader;
  reader.GetParam(*m);
  EXPECT_EQ(FaultsReported(), 1) << "the unknown name";
  std::vector<std::string> expected;
  for (int i = 0; i < 20; ++i)
    expected.push_back(i == 3 ? "again " : "t" + std::to_string(i) + " ");
  expected.push_back("");
  EXPECT_EQ(Descriptions(*m), expected);

  constexpr int kMany = 100000;
  lines.clear();
  for (int i = kMany - 1; i >= 0; --i) add_block("q" + std::to_string(i), std::to_string(i));
  lines.push_back("Sub S()");
  auto many = MakeMember(lines);
  for (int i = 0; i < kMany; ++i) AddParameter(*many, "q" + std::to_string(i));
  reader.GetParam(*many);
  EXPECT_EQ(FaultsReported(), 1);
  EXPECT_EQ(many->Parameters.Item(1).Description, "0 ");
  EXPECT_EQ(many->Parameters.Item(kMany).Description, std::to_string(kMany - 1) + " ");
}

TEST_F(ParamReader, DiagnosticMessageNamesMemberAndParameter) {
  platform_.in_ide = true;
  CParam reader;
  auto m = MakeMember({"'/// <param name=\"a\">A</param>", "x"});
  AddParameter(*m, "a");
  reader.GetParam(*m);
  EXPECT_EQ(Messages(), (std::vector<LoggedMessage>{
                            {"***Ausgabe nur in der IDE***: Erfassung des Param-Tag f\xFCr Member "
                             "DoIt Parameter a erfolgreich beendet.",
                             kIconProgress}}));
}

}  // namespace
}  // namespace folioscope
