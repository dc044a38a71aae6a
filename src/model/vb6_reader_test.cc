// Reader tests on the shapes of file VB6 writes, on bad input, and on the
// Kontor sample project.
#include "model/vb6_reader.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "infra/recording_platform.h"
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

std::vector<std::string> CodeLines(const SourceModule& module) {
  std::vector<std::string> lines;
  for (int32_t i = 1; i <= module.CodeLines.Count(); ++i) {
    lines.push_back(const_cast<SourceModule&>(module).CodeLines.Item(i));
  }
  return lines;
}

std::vector<std::string> MemberNames(const SourceModule& module) {
  std::vector<std::string> names;
  for (const auto& member : module.Members) names.push_back(member->Name);
  return names;
}

ModuleReadResult ReadText(const TestFolder& folder, const std::string& bytes,
                          const std::string& file = "Test.cls") {
  return ReadModuleFile(folder.Write(file, bytes), "Class", "Test");
}

TEST(Vb6ModuleFile, HidesWhatTheIdeHides) {
  TestFolder folder;
  // A form: Object= lines, nested Begin blocks with BeginProperty sections.
  const std::string form = Crlf({
      "VERSION 5.00",
      "Object = \"{831FDD16-0C5C-11D2-A9FC-0000F8754DA1}#2.0#0\"; \"MSCOMCTL.OCX\"",
      "Begin VB.Form frmTest ",
      "   Caption         =   \"Test\"",
      "   Begin VB.Frame fra ",
      "      Begin VB.CommandButton cmd ",
      "         Caption = \"End\"",
      "      End",
      "   End",
      "   Begin MSComctlLib.ListView lvw ",
      "      BeginProperty Font {0BE35203-8F91-11CE-9DE3-00AA004BB851} ",
      "         Name = \"Tahoma\"",
      "      EndProperty",
      "   End",
      "End",
      "Attribute VB_Name = \"frmTest\"",
      "Attribute VB_Description = \"Ein Fenster f\xFCr Tests.\"",
      "Attribute VB_HelpID = 77",
      "Option Explicit",
      "Private Sub Form_Load()",
      "Attribute Form_Load.VB_Description = \"L\344dt.\"",
      "    Caption = \"x\"  ",
      "End Sub",
  });
  ModuleReadResult read = ReadText(folder, form, "frmTest.frm");
  ASSERT_TRUE(read.module);
  EXPECT_EQ(read.module->Name, "frmTest");
  EXPECT_EQ(read.module->Description, "Ein Fenster f\xFCr Tests.");
  EXPECT_EQ(read.module->HelpContextId, 77);
  EXPECT_EQ(CodeLines(*read.module),
            (std::vector<std::string>{"Option Explicit", "Private Sub Form_Load()",
                                      "    Caption = \"x\"  ", "End Sub"}));
  EXPECT_EQ(read.module->Members.Item("Form_Load").Description, "L\344dt.");
  // The hidden lines still count where an editor shows a code line.
  std::vector<int32_t> file_lines;
  for (int32_t k = 0; k <= 5; ++k) file_lines.push_back(read.module->FileLines.FileLine(k));
  EXPECT_EQ(file_lines, (std::vector<int32_t>{0, 19, 20, 22, 23, 24}));

  // A class with its BEGIN block, LF line ends and no end on the last line.
  const std::string cls =
      "VERSION 1.0 CLASS\nBEGIN\n  MultiUse = -1  'True\nEND\n"
      "Attribute VB_Name = \"CTest\"\nOption Explicit\n\nPublic Sub A()\nEnd Sub";
  read = ReadText(folder, cls);
  ASSERT_TRUE(read.module);
  EXPECT_EQ(read.module->Name, "CTest");
  EXPECT_EQ(CodeLines(*read.module),
            (std::vector<std::string>{"Option Explicit", "", "Public Sub A()", "End Sub"}));

  // A module file without VB_Name takes the name it is given.
  read = ReadModuleFile(folder.Write("x.bas", "Sub Main()\r\nEnd Sub\r\n"), "Module", "modX");
  ASSERT_TRUE(read.module);
  EXPECT_EQ(read.module->Name, "modX");
  EXPECT_TRUE(read.diagnostics.empty());
}

TEST(Vb6Members, LineRangesFollowTheIde) {
  TestFolder folder;
  const std::string text = Crlf({
      "Attribute VB_Name = \"CRange\"",
      "Option Explicit",                         // 1
      "' Event comment",                         // 2
      "Public Event Done(ByVal Ok As Boolean)",  // 3
      "Private mX As Long",                      // 4
      "",                                        // 5
      "' Above First",                           // 6
      "Public Sub First()",                      // 7
      "    If mX Then",                          // 8
      "    End If",                              // 9
      "End Sub",                                 // 10
      "",                                        // 11
      "' Above Second",                          // 12
      "Private Function Second() As Long",       // 13
      "    Second = 1",                          // 14
      "End Function",                            // 15
      "' trailing comment",                      // 16
      "",                                        // 17
  });
  ModuleReadResult read = ReadText(folder, text);
  ASSERT_TRUE(read.module);
  const SourceModule& m = *read.module;
  EXPECT_EQ(MemberNames(m), (std::vector<std::string>{"Header", "Done", "First", "Second"}));

  struct Range {
    const char* name;
    int32_t first;
    int32_t count;
  };
  for (const Range& r :
       {Range{"Header", 1, 4}, Range{"Done", 2, 2}, Range{"First", 5, 6}, Range{"Second", 11, 7}}) {
    SourceMember& member = m.Members.Item(r.name);
    EXPECT_EQ(member.FirstLine, r.first) << r.name;
    EXPECT_EQ(member.LineCount, r.count) << r.name;
    ASSERT_EQ(member.CodeLines.Count(), r.count) << r.name;
    EXPECT_EQ(member.CodeLines.Item(1), const_cast<SourceModule&>(m).CodeLines.Item(r.first));
  }
  EXPECT_EQ(m.Members.Item("Done").CodeLines.Item(1), "' Event comment");
  EXPECT_EQ(m.Members.Item("Second").CodeLines.Item(7), "");

  // The module and its members share one copy of the lines, which no
  // dictionary's own changes may reach: a member's key 0 and a changed line
  // stay in that member (Header and Done overlap in lines 2 and 3).
  SourceModule& module = const_cast<SourceModule&>(m);
  SourceMember& done = module.Members.Item("Done");
  vb::Dictionary before_change = done.CodeLines;
  EXPECT_EQ(done.CodeLines.Item(0), "");
  done.CodeLines.SetItem(1, "changed");
  EXPECT_EQ(done.CodeLines.Count(), 3);
  EXPECT_EQ(done.CodeLines.KeyAt(1).long_value(), 2);
  EXPECT_EQ(done.CodeLines.Item(2), "Public Event Done(ByVal Ok As Boolean)");
  EXPECT_EQ(CodeLines(m).at(1), "' Event comment");
  EXPECT_EQ(module.Members.Item("Header").CodeLines.Item(2), "' Event comment");
  EXPECT_EQ(module.Members.Item("Header").CodeLines.Count(), 4);
  EXPECT_EQ(module.CodeLines.Count(), 17);
  EXPECT_EQ(before_change.Item(1), "' Event comment");

  // A module without procedures: Header holds every line.
  read = ReadText(folder, Crlf({"Option Explicit", "Public Const A = 1", "' end"}));
  ASSERT_TRUE(read.module);
  EXPECT_EQ(read.module->Members.Count(), 1);
  EXPECT_EQ(read.module->Members.Item(1).LineCount, 3);
}

// A module whose lines look like declarations in every way that is not one:
// Declare, Enum and Type blocks, names and comments that hold keywords,
// "End Sub" inside strings and conditional blocks, line continuations.
std::string TrickyModuleText() {
  return Crlf({
      "Attribute VB_Name = \"modTricky\"",
      "Private Declare Function GetTickCount Lib \"kernel32\" () As Long",
      "Public Declare Sub Sleep Lib \"kernel32\" (ByVal ms As Long)",
      "Public Enum Art",
      "    aEins = 1",
      "End Enum",
      "Private Type Beleg",
      "    Nummer As Long",
      "End Type",
      "Dim Sub_Total As Long",
      "' Sub InComment()",
      "Static Sub Counter()",
      "    Static n As Long",
      "    Dim s As String: s = \"End Sub\"",
      "    If n > 0 Then",
      "        Exit Sub",
      "    End If",
      "    Rem End Sub",
      "#If DEBUG_ON Then",
      "    Debug.Print \"Sub x\"",
      "#End If",
      "End Sub",
      "Sub NoScope(a, b)",
      "End Sub",
      "Friend Static Function F$(ByVal x%)",
      "End Function",
      "Private Property Get P() As String()",
      "End Property",
      "Public Property Let P(ByVal v() As String)",
      "End Property",
      "Property Set Obj(ByVal o As Object)",
      "End Property",
      "Public Function Joined(ByVal a As Long, _",
      "                       Optional ByRef b As String = \"a, b\", _",
      "                       ParamArray rest() As Variant) _",
      "                       As Collection",
      "End Function",
  });
}

TEST(Vb6Members, StatementsThatLookLikeDeclarations) {
  TestFolder folder;
  const std::string text = TrickyModuleText();
  ModuleReadResult read = ReadText(folder, text, "modTricky.bas");
  ASSERT_TRUE(read.module);
  EXPECT_TRUE(read.diagnostics.empty());
  const SourceModule& m = *read.module;
  EXPECT_EQ(MemberNames(m), (std::vector<std::string>{"Header", "Counter", "NoScope", "F", "Get P",
                                                      "Let P", "Set Obj", "Joined"}));
  EXPECT_EQ(m.Members.Item("Header").LineCount, 9);
  EXPECT_EQ(m.Members.Item("Counter").LineCount, 12);  // comment above + body incl. #If

  struct Expected {
    const char* name;
    const char* kind;
    const char* scope;
    const char* form;
    const char* return_type;
  };
  for (const Expected& e :
       {Expected{"Counter", "Sub", "Public", "", ""}, Expected{"NoScope", "Sub", "Public", "", ""},
        Expected{"F", "Function", "Friend", "", "String"},
        Expected{"Get P", "Property", "Private", "Get ", "String()"},
        Expected{"Let P", "Property", "Public", "Let ", ""},
        Expected{"Set Obj", "Property", "Public", "Set ", ""},
        Expected{"Joined", "Function", "Public", "", "Collection"}}) {
    const SourceMember& member = m.Members.Item(e.name);
    EXPECT_EQ(member.Kind, e.kind) << e.name;
    EXPECT_EQ(member.Scope, e.scope) << e.name;
    EXPECT_EQ(member.PropertyForm, e.form) << e.name;
    EXPECT_EQ(member.ReturnType, e.return_type) << e.name;
  }
  const SourceMember& header = m.Members.Item("Header");
  EXPECT_EQ(header.Kind, "");
  EXPECT_EQ(header.Scope, "");
}

TEST(Vb6Members, ParametersOfTrickyDeclarations) {
  TestFolder folder;
  ModuleReadResult read = ReadText(folder, TrickyModuleText(), "modTricky.bas");
  ASSERT_TRUE(read.module);
  const SourceModule& m = *read.module;
  const SourceMember& joined = m.Members.Item("Joined");
  ASSERT_EQ(joined.Parameters.Count(), 3);
  EXPECT_EQ(joined.LineCount, 5);  // the physical lines stay apart
  const SourceParameter& b = joined.Parameters.Item("b");
  EXPECT_EQ(b.Type, "String");
  EXPECT_EQ(b.Passing, "ByRef");
  EXPECT_TRUE(b.Optional);
  EXPECT_TRUE(b.HasDefault);
  EXPECT_EQ(b.Default, "\"a, b\"");
  const SourceParameter& rest = joined.Parameters.Item(3);
  EXPECT_EQ(rest.Name, "rest");
  EXPECT_EQ(rest.Type, "Variant()");
  EXPECT_TRUE(rest.ParamArray);
  EXPECT_FALSE(rest.HasDefault);

  const SourceParameter& untyped = m.Members.Item("NoScope").Parameters.Item(2);
  EXPECT_EQ(untyped.Type, "Variant");
  EXPECT_EQ(untyped.Passing, "ByRef");
  EXPECT_EQ(m.Members.Item("F").Parameters.Item(1).Type, "Integer");
  EXPECT_EQ(m.Members.Item("Let P").Parameters.Item(1).Type, "String()");
  EXPECT_EQ(m.Members.Item("Let P").Parameters.Item(1).Name, "v");
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

TEST(Vb6Members, BadNamesAndDuplicatesAreReported) {
  TestFolder folder;
  const std::string text = Crlf({
      "Attribute VB_Name = \"CBad\"",
      "Public Sub [Mein Name]()",
      "End Sub",
      "Public Sub Twice()",
      "End Sub",
      "Public Sub twice()",
      "End Sub",
  });
  ModuleReadResult read = ReadText(folder, text, "bad.cls");
  ASSERT_TRUE(read.module);
  EXPECT_EQ(MemberNames(*read.module), (std::vector<std::string>{"Header", "Twice"}));
  ASSERT_EQ(read.diagnostics.size(), 2u);
  EXPECT_EQ(read.diagnostics[0].line, 2);
  EXPECT_EQ(read.diagnostics[0].severity, DiagnosticSeverity::kError);
  EXPECT_NE(read.diagnostics[0].ToText().find("bad.cls(2)"), std::string::npos);
  EXPECT_EQ(read.diagnostics[1].line, 6);

  read = ReadText(folder, "Attribute VB_Name = \"Mein Modul\"\r\n", "m.bas");
  EXPECT_FALSE(read.module);
  ASSERT_EQ(read.diagnostics.size(), 1u);
  EXPECT_NE(read.diagnostics[0].text.find("Mein Modul"), std::string::npos);
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
