// Reader tests: the module files of tests/examples/vb6_modules.txt, the
// statement reading, bad input, project files and the Kontor sample project.
#include "model/vb6_reader.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "infra/recording_platform.h"
#include "infra/test_examples.h"
#include "infra/test_folder.h"
#include "model/vb6_declaration.h"

namespace folioscope {
namespace {

namespace fs = std::filesystem;

// The reader lists folders through the platform: every test of this program
// runs with a recording one.
class RecordingPlatformEnvironment : public ::testing::Environment {
 public:
  void SetUp() override { previous_ = SetCurrentPlatform(&platform); }
  void TearDown() override { SetCurrentPlatform(previous_); }
  RecordingPlatform platform;

 private:
  Platform* previous_ = nullptr;
};

RecordingPlatformEnvironment* const g_environment = static_cast<RecordingPlatformEnvironment*>(
    ::testing::AddGlobalTestEnvironment(new RecordingPlatformEnvironment));

// Lines joined with CR LF, each line ended.
std::string Crlf(const std::vector<std::string>& lines) {
  std::string text;
  for (const auto& line : lines) text += line + "\r\n";
  return text;
}

ModuleReadResult ReadText(const TestFolder& folder, const std::string& bytes,
                          const std::string& file = "Test.cls") {
  return ReadModuleFile(folder.Write(file, bytes), "Class", "Test");
}

// One line per member (with its parameters indented below), as the
// members section of tests/examples/vb6_modules.txt writes them.
std::vector<std::string> DescribeMembers(const SourceModule& module) {
  std::vector<std::string> out;
  for (const auto& m : module.Members) {
    std::string line = std::to_string(m->FirstLine) + "+" + std::to_string(m->LineCount);
    for (const std::string& part : {m->Scope, m->Kind}) {
      if (!part.empty()) line += " " + part;
    }
    line += " " + m->Name;
    if (!m->ReturnType.empty()) line += " As " + m->ReturnType;
    if (m->HelpContextId != 0) line += " [help " + std::to_string(m->HelpContextId) + "]";
    if (!m->Description.empty()) line += " \"" + m->Description + "\"";
    out.push_back(line);
    for (const auto& p : m->Parameters) {
      std::string param = "  ";
      if (p->Optional) param += "Optional ";
      if (p->ParamArray) param += "ParamArray ";
      param += p->Passing + " " + p->Name + " As " + p->Type;
      if (p->HasDefault) param += " = " + p->Default;
      out.push_back(param);
    }
  }
  return out;
}

std::string DescribeModule(const SourceModule& module) {
  std::string line = module.Name;
  if (module.HelpContextId != 0) line += " [help " + std::to_string(module.HelpContextId) + "]";
  if (!module.Description.empty()) line += " \"" + module.Description + "\"";
  return line;
}

TEST(Vb6ModuleFile, Examples) {
  TestFolder folder;
  for (const Example& e : ReadExamples("vb6_modules.txt")) {
    SCOPED_TRACE(e.where + ": " + e.title);
    const bool lf = e.Attribute("line ends") == "LF";
    const std::string bytes = lf ? e.Text("file", "\n") : e.Text("file", "\r\n") + "\r\n";
    ModuleReadResult read =
        ReadModuleFile(folder.Write(e.Attribute("file", "Test.cls"), bytes),
                       e.Attribute("kind", "Class"), e.Attribute("name", "Test"));
    std::vector<std::string> diagnostics;
    for (const ReaderDiagnostic& d : read.diagnostics) {
      diagnostics.push_back(std::to_string(d.line) +
                            (d.severity == DiagnosticSeverity::kError ? " error" : " warning"));
    }
    EXPECT_EQ(diagnostics, e.Lines("diagnostics"));
    ASSERT_EQ(read.module != nullptr, e.Has("module"));
    if (!read.module) continue;
    SourceModule& m = *read.module;
    EXPECT_EQ(DescribeModule(m), e.Text("module"));
    EXPECT_EQ(DescribeMembers(m), e.Lines("members"));
    if (e.Has("code")) {
      std::vector<std::string> code;
      for (int32_t i = 1; i <= m.CodeLines.Count(); ++i) code.push_back(m.CodeLines.Item(i));
      EXPECT_EQ(code, e.Lines("code"));
    }
    if (e.Has("file lines")) {
      std::string lines;
      for (int32_t k = 0; k <= m.CodeLines.Count() + 1; ++k)
        lines += (k ? " " : "") + std::to_string(m.FileLines.FileLine(k));
      EXPECT_EQ(lines, e.Text("file lines"));
    }
    // Each member's lines are the module's lines from its first one on.
    for (const auto& member : m.Members) {
      if (member->LineCount == 0) continue;
      EXPECT_EQ(member->CodeLines.Count(), member->LineCount) << member->Name;
      EXPECT_EQ(member->CodeLines.Item(1), m.CodeLines.Item(member->FirstLine)) << member->Name;
    }
  }
}

// The module and its members share one copy of the lines, which no
// dictionary's own changes may reach: a member's key 0 and a changed line
// stay in that member (Header holds every line; Done overlaps it in lines
// 2 and 3).
TEST(Vb6Members, SharedLinesKeepEachDictionarysChanges) {
  TestFolder folder;
  ModuleReadResult read =
      ReadText(folder, Crlf({"Attribute VB_Name = \"CRange\"", "Option Explicit", "' Event comment",
                             "Public Event Done(ByVal Ok As Boolean)", "Private mX As Long", ""}));
  ASSERT_TRUE(read.module);
  SourceModule& module = *read.module;
  SourceMember& done = module.Members.Item("Done");
  vb::Dictionary before_change = done.CodeLines;
  EXPECT_EQ(done.CodeLines.Item(0), "");
  done.CodeLines.SetItem(1, "changed");
  EXPECT_EQ(done.CodeLines.Count(), 3);
  EXPECT_EQ(done.CodeLines.KeyAt(1).long_value(), 2);
  EXPECT_EQ(done.CodeLines.Item(2), "Public Event Done(ByVal Ok As Boolean)");
  EXPECT_EQ(module.CodeLines.Item(2), "' Event comment");
  EXPECT_EQ(module.Members.Item("Header").CodeLines.Item(2), "' Event comment");
  EXPECT_EQ(module.Members.Item("Header").CodeLines.Count(), 5);
  EXPECT_EQ(module.CodeLines.Count(), 5);
  EXPECT_EQ(before_change.Item(1), "' Event comment");
}

TEST(Vb6Declaration, StatementKinds) {
  struct Case {
    const char* statement;
    StatementKind kind;
    const char* name;
  };
  const Case cases[] = {
      {"End Sub", StatementKind::kProcedureEnd, ""},
      {"  End   Function  ' done", StatementKind::kProcedureEnd, ""},
      {"x = 1: End Property", StatementKind::kProcedureEnd, ""},
      {"End If", StatementKind::kOther, ""},
      {"End", StatementKind::kOther, ""},
      {"MsgBox \"End Sub\"", StatementKind::kOther, ""},
      {"' Public Sub X()", StatementKind::kBlank, ""},
      {"Rem Sub X()", StatementKind::kBlank, ""},
      {"Public Event Ready()", StatementKind::kEvent, "Ready"},
      {"RaiseEvent Ready", StatementKind::kOther, ""},
      {"Private WithEvents mX As CKonto", StatementKind::kOther, ""},
      {"Public Property Get Wert() As Long", StatementKind::kProcedure, "Wert"},
      {"Public Property Wert As Long", StatementKind::kOther, ""},
      {"Sub Main", StatementKind::kProcedure, "Main"},
      {"Rem", StatementKind::kBlank, ""},
      {"Remark = 1", StatementKind::kOther, ""},
      {"Static Function F()", StatementKind::kProcedure, "F"},
      {"Private Static Sub S()", StatementKind::kProcedure, "S"},
      {"Private mKonto As CKonto", StatementKind::kOther, ""},
      {"end   PROPERTY", StatementKind::kProcedureEnd, ""},
      {"End With", StatementKind::kOther, ""},
  };
  for (const Case& c : cases) {
    const ParsedStatement parsed = ParseStatement(c.statement);
    EXPECT_EQ(parsed.kind, c.kind) << c.statement;
    EXPECT_EQ(parsed.name, c.name) << c.statement;
  }
  EXPECT_TRUE(IsValidIdentifier("Gr\xF6\337e_2"));
  EXPECT_FALSE(IsValidIdentifier("2Fast"));
  EXPECT_FALSE(IsValidIdentifier("[Mein Name]"));
  EXPECT_FALSE(IsValidIdentifier("a.b"));
  EXPECT_FALSE(IsValidIdentifier(""));
}

// The first-word shortcut must never change a statement's reading: random
// statements made of the words and characters that decide it.
TEST(Vb6Declaration, ShortcutAgreesWithTheFullParse) {
  const std::vector<std::string> pieces = {
      "Public", "private", "FRIEND", "Static", "Sub", "function", "Event", "Property", "Get",
      "Let",    "End",     "rem",    "Rem",    "X",   "x1",       "$",     "%",        ":",
      "'",      "\"",      " ",      "\t",     "(",   ")",        "[",     "]",        ",",
      "=",      "As",      "Long",   "If",     ":=",  "With",     "_"};
  uint64_t state = 20261123;
  auto pick = [&state](size_t n) {
    state = state * 6364136223846793005ull + 1442695040888963407ull;
    return static_cast<size_t>((state >> 33) % n);
  };
  for (int round = 0; round < 20000; ++round) {
    std::string statement;
    for (size_t n = pick(7); n > 0; --n) {
      statement += pieces[pick(pieces.size())];
      if (pick(2) == 0) statement += ' ';
    }
    const ParsedStatement quick = ParseStatement(statement);
    const ParsedStatement full = ParseStatementFully(statement);
    ASSERT_EQ(quick.kind, full.kind) << statement;
    ASSERT_EQ(quick.name, full.name) << statement;
    ASSERT_EQ(quick.keyword, full.keyword) << statement;
  }
}

TEST(Vb6Reader, GarbageNeverCrashes) {
  TestFolder folder;
  std::string binary;
  for (int i = 0; i < 4096; ++i) binary += static_cast<char>((i * 131 + 7) % 256);
  const std::vector<std::string> inputs = {
      "",
      "\r\n\r\n",
      binary,
      "VERSION 5.00\r\nBegin VB.Form f\r\n   Begin VB.Label l\r\n",  // block never closed
      "Sub\r\nFunction (\r\nProperty Get\r\nEnd Sub\r\nEnd Sub\r\n",
      "Public Sub A(ByVal x As Long\r\nEnd Sub\r\n",  // unbalanced parenthesis
      "Sub A(Optional = 3, , ByVal)\r\n",
      "Sub A() _\r\n",
      "Sub A(\"\r\nEnd Sub",
      "Attribute\r\nAttribute .VB_HelpID = 99999999999999\r\nAttribute VB_HelpID\r\n",
      "Sub A()\r\nSub B()\r\nEnd Sub\r\nEnd Sub\r\nEnd Sub\r\n",
      "Public Event\r\nEvent E(\r\n",
      std::string(100000, 'x') + "\r\nSub " + std::string(300, 'a') + "()\r\nEnd Sub",
  };
  for (size_t i = 0; i < inputs.size(); ++i) {
    ModuleReadResult read = ReadText(folder, inputs[i], "g" + std::to_string(i) + ".bas");
    if (!read.module) continue;
    // Whatever was read, the ranges stay inside the module.
    for (const auto& member : read.module->Members) {
      EXPECT_GE(member->FirstLine, 1) << i;
      EXPECT_LE(member->FirstLine - 1 + member->LineCount, read.module->CodeLines.Count()) << i;
    }
  }
  for (const std::string& vbp : {std::string(""), binary, std::string("Module=\r\nClass=;\r\n"),
                                 std::string("Form=..\\..\\..\\..\\nowhere.frm\r\nName=\"\r\n")}) {
    ProjectReadResult read = ReadProject(folder.Write("g.vbp", vbp));
    EXPECT_TRUE(read.project);
  }
  ProjectReadResult missing = ReadProject((folder.path() / "none.vbp").string());
  EXPECT_FALSE(missing.project);
  ASSERT_EQ(missing.diagnostics.size(), 1u);
  EXPECT_EQ(missing.diagnostics[0].severity, DiagnosticSeverity::kError);
}

TEST(Vb6Reader, ProjectFileOrderPathsAndMissingModules) {
  TestFolder folder;
  folder.Write("Sub/Module1.BAS", "Attribute VB_Name = \"modEins\"\r\nSub Main()\r\nEnd Sub\r\n");
  folder.Write("cZwei.cls", "VERSION 1.0 CLASS\r\nBEGIN\r\nEND\r\nOption Explicit\r\n");
  folder.Write(
      "frmDrei.frm",
      "VERSION 5.00\r\nBegin VB.Form frmDrei\r\nEnd\r\nAttribute VB_Name = \"frmDrei\"\r\n");
  const std::string vbp = folder.Write("P.vbp", Crlf({
                                                    "Type=Exe",
                                                    "Class=CZwei; CZWEI.cls",
                                                    "Module=modEins; sub\\module1.bas",
                                                    "Form=Fehlt.frm",
                                                    "Form=FRMDREI.FRM",
                                                    "Name=\"Probe\"",
                                                    "MajorVer=2",
                                                    "RevisionVer=5",
                                                    "[MS Transaction Server]",
                                                    "Module=Nicht; da.bas",
                                                }));
  ProjectReadResult read = ReadProject(vbp);
  ASSERT_TRUE(read.project);
  const SourceProject& p = *read.project;
  EXPECT_EQ(p.Name, "Probe");
  EXPECT_EQ(p.Version, "2.0.5");
  ASSERT_EQ(p.Modules.Count(), 3);
  EXPECT_EQ(p.Components.Item(1).Name, "CZwei");  // from the .vbp: the file has no VB_Name
  EXPECT_EQ(p.Components.Item(1).Kind, "Class");
  EXPECT_EQ(p.Components.Item(2).Name, "modEins");
  EXPECT_EQ(p.Components.Item(2).RelativePath, "sub\\module1.bas");
  EXPECT_EQ(fs::path(p.Components.Item(2).FilePath), folder.path() / "Sub/Module1.BAS");
  EXPECT_EQ(p.Components.Item(3).Name, "frmDrei");
  EXPECT_EQ(p.Components.Item(3).Kind, "Form");
  EXPECT_EQ(p.Modules.Item("CZWEI").Members.Count(), 1);
  ASSERT_EQ(read.diagnostics.size(), 1u);
  EXPECT_EQ(read.diagnostics[0].severity, DiagnosticSeverity::kWarning);
  EXPECT_EQ(read.diagnostics[0].line, 4);
  EXPECT_NE(read.diagnostics[0].text.find("Fehlt.frm"), std::string::npos);
}

// Module files as a Git checkout (UTF-8 names) or an old archive (a raw
// Windows-1252 byte) leaves them, named in the .vbp in Windows-1252 and in
// any case.
TEST(Vb6Reader, UmlautFileNamesInAnyCaseAndEncoding) {
  TestFolder folder;
  folder.Write("frmPr\xC3\274fung.frm", "Attribute VB_Name = \"frmPr\374fung\"\r\n");
  folder.Write("Unter\xC3\xA4/CB\xC3\274cher.cls", "Attribute VB_Name = \"CB\374cher\"\r\n");
  folder.Write("mod\xC4nderung.bas", "Attribute VB_Name = \"mod\xC4nderung\"\r\n");
  const std::string vbp = folder.Write("P.vbp", Crlf({
                                                    "Form=FRMPR\334FUNG.FRM",
                                                    "Class=CB\374cher; unter\xC4\\cb\334cher.CLS",
                                                    "Module=mod\xC4nderung; MOD\xE4NDERUNG.bas",
                                                }));
  g_environment->platform.listed_folders.clear();
  ProjectReadResult read = ReadProject(vbp);
  ASSERT_TRUE(read.project);
  EXPECT_TRUE(read.diagnostics.empty()) << read.diagnostics[0].ToText();
  const std::string base = folder.path().string() + "/";
  // Names in another case are looked up in the platform's folder listings.
  EXPECT_EQ(g_environment->platform.listed_folders.size(), 4u);
  const std::vector<std::pair<std::string, std::string>> expected = {
      {"frmPr\374fung", base + "frmPr\374fung.frm"},
      {"CB\374cher", base + "Unter\xE4/CB\374cher.cls"},
      {"mod\xC4nderung", base + "mod\xC4nderung.bas"},
  };
  std::vector<std::pair<std::string, std::string>> found;
  for (int32_t k = 1; k <= read.project->Components.Count(); ++k) {
    const SourceComponent& c = read.project->Components.Item(k);
    found.emplace_back(c.Name, c.FilePath);
  }
  EXPECT_EQ(found, expected);
}

// The name in a '/// <param name="..."> tag, empty when the line has none.
std::string ParamTagName(const std::string& line) {
  const std::string tag = "<param name=\"";
  const size_t start = line.find(tag);
  if (start == std::string::npos) return std::string();
  const size_t end = line.find('"', start + tag.size());
  return line.substr(start + tag.size(), end - start - tag.size());
}

// The sample project documents the main command: it must read cleanly and
// its doc comments must name real parameters.
TEST(Vb6Reader, KontorSampleProject) {
  ProjectReadResult read =
      ReadProject(std::string(FOLIOSCOPE_SOURCE_DIR) + "/examples/Kontor/Kontor.vbp");
  ASSERT_TRUE(read.project);
  for (const auto& d : read.diagnostics) ADD_FAILURE() << d.ToText();
  const SourceProject& p = *read.project;
  EXPECT_EQ(p.Name, "Kontor");
  EXPECT_EQ(p.Version, "1.4.2");
  std::vector<std::string> kinds;
  for (const auto& c : p.Components) kinds.push_back(c->Kind);
  EXPECT_EQ(kinds, (std::vector<std::string>{"Form", "Module", "Class", "Class", "Class",
                                             "UserControl", "PropertyPage", "Designer"}));

  int32_t members = 0;
  for (const auto& module : p.Modules) {
    members += module->Members.Count();
    // Header and procedures cover the module's lines without gap or overlap.
    int32_t next = 1;
    for (const auto& member : module->Members) {
      if (member->Kind == "OutEvent") continue;
      EXPECT_EQ(member->FirstLine, next) << module->Name << "." << member->Name;
      next = member->FirstLine + member->LineCount;
    }
    EXPECT_EQ(next, module->CodeLines.Count() + 1) << module->Name;

    for (const auto& member : module->Members) {
      if (member->Name == "Header") continue;  // holds the event declarations again
      for (int32_t i = 1; i <= member->CodeLines.Count(); ++i) {
        const std::string line = member->CodeLines.Item(i);
        const std::string name = ParamTagName(line);
        if (!name.empty()) {
          EXPECT_TRUE(member->Parameters.Exists(name))
              << module->Name << "." << member->Name << ": " << name;
        }
      }
    }
  }
  EXPECT_EQ(members, 68);  // every procedure and event found, plus one Header each
  const SourceModule& buchung = p.Modules.Item("CBuchung");
  for (const char* name : {"Get Gegenkonto", "Let Gegenkonto", "Set Gegenkonto"}) {
    EXPECT_TRUE(buchung.Members.Exists(name)) << name;
  }
  EXPECT_EQ(p.Modules.Item("CKonto").Members.Item("Buchen").HelpContextId, 3003);
  EXPECT_EQ(p.Modules.Item("CKasse").Members.Item("TagAbgeschlossen").Kind, "OutEvent");
}

}  // namespace
}  // namespace folioscope
