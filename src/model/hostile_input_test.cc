// The reader on inputs no IDE writes but a build server may meet: very long
// lines, very long modules, huge parameter lists, deep or unclosed designer
// blocks, and projects that list themselves or a folder. Each must be read
// completely or refused with a message naming file and line, in time and
// memory proportional to the input.
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <string>
#include <vector>

#include "infra/test_folder.h"
#include "model/vb6_reader.h"

namespace folioscope {
namespace {

namespace fs = std::filesystem;

class HostileInput : public ::testing::Test {
 protected:
  // Writes `lines`, each ended with CR LF.
  std::string Write(const std::string& name, const std::vector<std::string>& lines) const {
    std::string text;
    for (const auto& line : lines) text += line + "\r\n";
    return folder_.Write(name, text);
  }

  // Reads the project and checks that it took far less than a quadratic
  // reader would need (minutes); the bound leaves room for sanitizers and a
  // loaded machine.
  ProjectReadResult ReadInTime(const std::string& vbp) const {
    const auto start = std::chrono::steady_clock::now();
    ProjectReadResult read = ReadProject(vbp);
    const double seconds =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    EXPECT_LT(seconds, 30.0);
    return read;
  }

  std::vector<std::string> Messages(const ProjectReadResult& read) const {
    std::vector<std::string> texts;
    for (const auto& d : read.diagnostics) texts.push_back(d.ToText());
    return texts;
  }

  TestFolder folder_;
};

std::string ParameterList(const std::string& prefix, int count) {
  std::string list;
  for (int i = 0; i < count; ++i) list += (i ? ", ByVal " : "ByVal ") + prefix + std::to_string(i);
  return list;
}

TEST_F(HostileInput, HugeLinesAndParameterListsAreReadWhole) {
  constexpr int kParameters = 100000;
  const std::string literal = "  s = \"" + std::string(10 << 20, 'y') + "\"";
  std::vector<std::string> big = {"Attribute VB_Name = \"Big\"",
                                  "Public Sub Huge()",
                                  literal,
                                  "End Sub",
                                  "Public Sub Wide(" + ParameterList("p", kParameters) + ")",
                                  "End Sub",
                                  "Public Sub Tall( _"};
  for (int i = 0; i < kParameters; ++i)
    big.push_back("  ByVal q" + std::to_string(i) + (i + 1 < kParameters ? ", _" : ")"));
  big.push_back("End Sub");
  Write("Big.bas", big);
  const std::string vbp = Write("P.vbp", {"Type=Exe", "Module=Big; Big.bas"});

  ProjectReadResult read = ReadInTime(vbp);
  ASSERT_TRUE(read.project);
  EXPECT_EQ(Messages(read), std::vector<std::string>{});
  SourceModule& module = read.project->Modules.Item("Big");
  EXPECT_EQ(module.Members.Item("Huge").CodeLines.Item(2), literal);
  for (const char* name : {"Wide", "Tall"}) {
    SourceMember& member = module.Members.Item(name);
    ASSERT_EQ(member.Parameters.Count(), kParameters) << name;
    EXPECT_EQ(member.Parameters.Item(kParameters).Name,
              (name[0] == 'W' ? "p" : "q") + std::to_string(kParameters - 1));
  }
  EXPECT_EQ(module.Members.Item("Tall").LineCount, kParameters + 2);
}

TEST_F(HostileInput, AVeryLongModuleIsReadWhole) {
  constexpr int kLines = 300000;
  std::vector<std::string> tall = {"Attribute VB_Name = \"Tall\"", "Sub L()"};
  tall.insert(tall.end(), kLines, "x");
  tall.push_back("End Sub");
  Write("Tall.bas", tall);
  ProjectReadResult read = ReadInTime(Write("P.vbp", {"Module=Tall; Tall.bas"}));
  ASSERT_TRUE(read.project);
  SourceModule& tall_module = read.project->Modules.Item("Tall");
  EXPECT_EQ(tall_module.CodeLines.Count(), kLines + 2);
  EXPECT_EQ(tall_module.Members.Item("L").LineCount, kLines + 2);
}

TEST_F(HostileInput, DesignerBlocksAndProjectEntriesThatLeadNowhere) {
  constexpr int kDepth = 100000;
  std::vector<std::string> deep = {"VERSION 5.00", "Begin VB.Form Deep"};
  for (int i = 0; i < kDepth; ++i) deep.push_back("Begin VB.Frame F" + std::to_string(i));
  deep.insert(deep.end(), kDepth + 1, "End");
  deep.insert(deep.end(), {"Attribute VB_Name = \"Deep\"", "Public Sub D()", "End Sub"});
  Write("Deep.frm", deep);
  const std::string open =
      Write("Open.frm", {"VERSION 5.00", "Begin VB.Form Open", "Begin VB.Frame X",
                         "Attribute VB_Name = \"Open\"", "Public Sub O()", "End Sub"});
  fs::create_directories(folder_.path() / "Dir.bas");
  const std::string vbp = (folder_.path() / "P.vbp").string();
  Write("P.vbp", {"Type=Exe", "Form=Deep.frm", "Form=Open.frm", "Module=Self; P.vbp",
                  "Module=Dir; Dir.bas", "Module=Self2; p.VBP"});

  ProjectReadResult read = ReadInTime(vbp);
  ASSERT_TRUE(read.project);
  EXPECT_EQ(Messages(read),
            (std::vector<std::string>{
                open + "(2): warning: Begin-Block ohne End, der Code danach wird nicht gelesen.",
                vbp + "(4): warning: Die Projektdatei ist als Modul eingetragen, \xFC"
                      "bersprungen: P.vbp",
                vbp + "(5): warning: Moduldatei nicht gefunden, \xFC"
                      "bersprungen: Dir.bas",
                vbp + "(6): warning: Die Projektdatei ist als Modul eingetragen, \xFC"
                      "bersprungen: p.VBP"}));
  ASSERT_EQ(read.project->Modules.Count(), 2);
  EXPECT_EQ(read.project->Modules.Item("Deep").Members.Count(), 2) << "Header and D";
  EXPECT_EQ(read.project->Modules.Item("Open").Members.Count(), 1) << "Header only";
}

}  // namespace
}  // namespace folioscope
