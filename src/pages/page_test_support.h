// Test support for the page builders and the help-project writers: a
// temporary folder per test; a small encrypted report set "Mini" in an
// application folder, whose templates show every filled value between
// separators; a recording platform whose settings select it; and project
// builders.
#ifndef FOLIOSCOPE_PAGES_PAGE_TEST_SUPPORT_H_
#define FOLIOSCOPE_PAGES_PAGE_TEST_SUPPORT_H_

#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "infra/platform.h"
#include "infra/recording_platform.h"
#include "infra/registry.h"
#include "model/source_model.h"
#include "reportsets/ressource.h"
#include "reportsets/winapi_crypt.h"

namespace folioscope {
namespace report_testing {

inline void WriteBytes(const std::filesystem::path& path, const std::string& bytes) {
  std::filesystem::create_directories(path.parent_path());
  std::ofstream f(path, std::ios::binary | std::ios::trunc);
  f.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

inline std::string ReadBytes(const std::filesystem::path& path) {
  std::ifstream f(path, std::ios::binary);
  std::ostringstream s;
  s << f.rdbuf();
  return s.str();
}

// Encrypts a plain report-set file with the template password, as the
// build step does for the shipped sets.
inline std::string TemplateCipher(const std::string& text) {
  return CWinAPICrypt().EncryptString(text, kTemplatePassword);
}

// Template texts of the Mini set, by file key: frame pages (1-3, 10-12),
// project page (9), member page top, row and bottom (5, 4, 6), module head,
// line and foot (7, 8, 28). The others only name themselves.
inline std::map<int, std::string> MiniTemplates() {
  std::map<int, std::string> t;
  for (int n = 1; n <= 28; ++n) t[n] = "<!--File" + std::to_string(n) + "-->";
  t[1] =
      "I[&&&FS_Index_AnwendungsName&&&|&&&FS_Index_AnwendungsName&&&|&&&FS_Style_File&&&|"
      "&&&FS_Logo_CodeFolioscope&&&]";
  t[2] = "<menu>&&&FS_FrameLinksOben_ProjektName&&&";
  t[11] =
      "<node &&&FS_FrameLinksKnoten_ElementX&&& &&&FS_FrameLinksKnoten_MenuIconX&&&>"
      "&&&FS_FrameLinksKnoten_ModuleTyp&&&<DIV>";
  t[12] =
      "<a &&&FS_FrameLinksModul_InhaltsFrame&&& &&&FS_Farbe&&&>"
      "&&&FS_FrameLinksModul_ModulName&&&</a>";
  t[3] = "</menu>";
  t[9] =
      "P[&&&FS_Projekt_Title&&&|&&&FS_Projekt_AnwendungsName&&&|&&&FS_Projekt_Inhalt&&&|"
      "&&&FS_Style_File&&&|&&&FS_Projekt_Heading&&&]";
  t[10] = "L[&&&FS_Logo_CodeFolioscope&&&|&&&FS_Farbe&&&]";
  t[5] =
      "T[&&&FS_MemberInhaltOben_Title&&&|&&&FS_MemberInhaltOben_AnwendungsName&&&|"
      "&&&FS_MemberInhaltOben_KlassenName&&&|&&&FS_MemberInhaltOben_MemberTyp&&&|"
      "&&&FS_MemberInhaltOben_MemberGueltigkeit&&&|&&&FS_MemberInhaltOben_MemberName&&&|"
      "&&&FS_MemberInhaltOben_Syntax&&&|&&&FS_MemberInhaltOben_MemberSummary&&&|"
      "&&&FS_MemberInhaltOben_ExampleCode&&&|&&&FS_MemberInhaltOben_MemberRueckgabe&&&|"
      "&&&FS_MemberInhaltOben_InternDescription&&&|&&&FS_MemberInhaltOben_HelpKontextID&&&|"
      "&&&FS_Style_File&&&]";
  t[4] =
      "R[&&&FS_MemberInhaltMitte_ParameterName&&&|&&&FS_MemberInhaltMitte_ParameterTyp&&&|"
      "&&&FS_MemberInhaltMitte_ParameterBeschreibung&&&|&&&FS_MemberInhaltMitte_Erforderlich&&&|"
      "&&&FS_MemberInhaltMitte_Uebergabe&&&|&&&FS_MemberInhaltMitte_ParameterAnmerkung&&&|"
      "&&&FS_Farbe&&&]";
  t[6] =
      "B[&&&FS_MemberInhaltUnten_MemberRueckgabe&&&|&&&FS_MemberInhaltUnten_MemberRemarks&&&|"
      "&&&FS_MemberInhaltUnten_RueckgabeBeschreibung&&&|&&&FS_Style_File&&&]";
  t[7] =
      "H[&&&FS_ModulInhaltOben_KlassenName&&&|&&&FS_ModulInhaltOben_ModulBeschreibung&&&|"
      "&&&FS_ModuleInhaltOben_ModuleTitle&&&|&&&FS_ModulInhaltOben_AnwendungsName&&&|"
      "&&&FS_ModulInhaltOben_RelativePath&&&|&&&FS_ModulInhaltOben_InternDescription&&&|"
      "&&&FS_ModulInhaltOben_HelpKontextID&&&|&&&FS_ModulInhaltOben_ModuleLines&&&|"
      "&&&FS_ModulInhaltOben_ModuleFilePath&&&|&&&FS_ModulInhaltOben_ModuleSummary&&&|"
      "&&&FS_Style_File&&&]";
  t[8] =
      "M[<a href='&&&FS_ModulInhaltMitte_MemberDateiName_File&&&'"
      "&&&FS_ModulInhaltMitte_TargetFrameName&&&>&&&FS_ModulInhaltMitte_MemberName&&&</a>"
      "~&&&FS_ModulInhaltMitte_Einfuegung&&&~&&&FS_ModulInhaltMitte_MemberSummary&&&|"
      "&&&FS_Style_File&&&]";
  t[28] =
      "F[&&&FS_ModulInhaltUnten_RemarksUeberschrift&&&|&&&FS_ModulInhaltUnten_Remarks&&&|"
      "&&&FS_Style_File&&&]";
  return t;
}

// style.css is named twice, as shipped sets do.
inline const char* kMiniDescription =
    "Platzhalter\r\n"
    "\\&&&FS_Style_File&&& = style.css\r\n"
    "\\&&&FS_Logo_File&&& = logo.gif\r\n"
    "\\&&&FS_Style2_File&&& = style.css\r\n"
    "\\&&&FS_Farbe&&& = #336699\r\n"
    "\\}\r\n"
    "[[Deutsch]]\r\n"
    "\\&&&FS_Projekt_CountForms&&& = Formulare\r\n"
    "\\&&&FS_Projekt_CountModuls&&& = Module\r\n"
    "\\&&&FS_Projekt_CountClasses&&& = Klassen\r\n"
    "\\&&&FS_Projekt_CountUserControls&&& = Steuerelemente\r\n"
    "\\&&&FS_Projekt_CountPropertyPages&&& = Eigenschaftsseiten\r\n"
    "\\&&&FS_Projekt_CountDesigners&&& = Designer\r\n"
    "\\&&&FS_Projekt_LinesOfCode1&&& = Das Projekt hat\r\n"
    "\\&&&FS_Projekt_LinesOfCode2&&& = Codezeilen.\r\n"
    "\\&&&FS_Projekt_Heading&&& = Projekt\xFC"
    "bersicht\r\n"
    "\\&&&FS_Logo_CodeFolioscope&&& = Quelltext-Dokumentation\r\n"
    "\\&&&FS_FrameLinksUnten_Classes&&& = Klassen\r\n"
    "\\&&&FS_FrameLinksUnten_Forms&&& = Formulare\r\n"
    "\\&&&FS_FrameLinksUnten_Moduls&&& = Module\r\n"
    "\\&&&FS_FrameLinksUnten_UserControls&&& = Steuerelemente\r\n"
    "\\&&&FS_FrameLinksUnten_PropertyPages&&& = Eigenschaftsseiten\r\n"
    "\\&&&FS_MemberInhaltOben_MemberGueltigkeitPrivate&&& = privat\r\n"
    "\\&&&FS_MemberInhaltOben_MemberGueltigkeitFriend&&& = freund\r\n"
    "\\&&&FS_MemberInhaltOben_MemberGueltigkeitPublic&&& = offen\r\n"
    "\\&&&FS_MemberInhaltOben_MemberGueltigkeitDeklaration&&& = Deklaration\r\n"
    "\\&&&FS_MemberInhaltOben_SyntaxForObject&&& = objekt.\r\n"
    "\\&&&FS_MemberInhaltOben_HelpKontextID&&& = Hilfe-ID:\r\n"
    "\\&&&FS_MemberInhaltMitte_ErforderlichJa&&& = ja\r\n"
    "\\&&&FS_MemberInhaltMitte_ErforderlichNein&&& = nein\r\n"
    "\\&&&FS_MemberInhaltMitte_UebergabeByVal&&& = Wert\r\n"
    "\\&&&FS_MemberInhaltMitte_UebergabeByRef&&& = Verweis\r\n"
    "\\&&&FS_MemberInhaltMitte_AnmerkungParamArray&&& = Feld\r\n"
    "\\&&&FS_MemberInhaltMitte_AnmerkungHasStandardValue&&& = Standard:\r\n"
    "\\&&&FS_MemberInhaltMitte_AnmerkungKeine&&& = keine\r\n"
    "\\&&&Allgemein_OutEvent&&& = Ereignis\r\n"
    "\\&&&FS_ModulInhaltOben_StdModul&&& = Standardmodul\r\n"
    "\\&&&FS_ModulInhaltOben_CModul&&& = Klassenmodul\r\n"
    "\\&&&FS_ModulInhaltOben_RelativePath&&& = Datei:\r\n"
    "\\&&&FS_ModulInhaltOben_HelpKontextID&&& = Kontext:\r\n"
    "\\&&&FS_ModulInhaltOben_ModuleLines&&& = Zeilen:\r\n"
    "\\&&&FS_ModulInhaltOben_ModuleFilePath&&& = Pfad:\r\n"
    "\\&&&FS_ModulInhaltUnten_RemarksUeberschrift&&& = Anmerkungen\r\n"
    "\\}\r\n";

// Writes one file of the Mini set below `app`, encrypted.
inline void WriteMiniFile(const std::filesystem::path& app, const std::string& name,
                          const std::string& plain) {
  WriteBytes(app / "Res" / "Mini" / name, TemplateCipher(plain));
}

// Writes Res/IndexComment.ini and the Mini set with its resources below `app`.
inline void WriteMiniReportSet(const std::filesystem::path& app) {
  std::string ini =
      "[Sets]\r\nCount=1\r\n[Mini]\r\nName=Mini\r\nPath=Mini\r\nLanguages=Deutsch\r\n";
  for (int n = 1; n <= 28; ++n) {
    ini += "File" + std::to_string(n) + "=Mini\\file" + std::to_string(n) + ".htm\r\n";
  }
  WriteBytes(app / "Res" / "IndexComment.ini", ini);
  for (const auto& [n, text] : MiniTemplates()) {
    WriteMiniFile(app, "file" + std::to_string(n) + ".htm", text);
  }
  WriteMiniFile(app, "Description.dat", kMiniDescription);
  WriteBytes(app / "Res" / "Mini" / "style.css", "body { color: black; }\n");
  WriteBytes(app / "Res" / "Mini" / "logo.gif", "GIF89a");
}

inline SourceParameter& AddParameter(SourceMember& m, const std::string& name,
                                     const std::string& type, const std::string& passing) {
  auto p = std::make_unique<SourceParameter>();
  p->Name = name;
  p->Type = type;
  p->Passing = passing;
  return m.Parameters.Add(std::move(p), name);
}

inline SourceMember& AddMember(SourceModule& module, const std::string& name,
                               const std::string& kind, const std::string& scope,
                               std::vector<std::string> lines = {}) {
  auto m = std::make_unique<SourceMember>();
  m->Name = name;
  m->Kind = kind;
  m->Scope = scope;
  int32_t n = 0;
  for (std::string& line : lines) m->CodeLines.Add(++n, std::move(line));
  m->LineCount = n;
  return module.Members.Add(std::move(m), name);
}

// A module without members and its component entry, whose file lies in
// /src and is named after the module with the extension of its kind.
inline SourceModule& AddEmptyModule(SourceProject& project, const std::string& name,
                                    const std::string& kind) {
  static const std::map<std::string, std::string> kExtensions = {
      {"Class", ".cls"},        {"Form", ".frm"},     {"UserControl", ".ctl"},
      {"PropertyPage", ".pag"}, {"Designer", ".dsr"}, {"UserDocument", ".dob"}};
  const auto extension = kExtensions.find(kind);
  auto c = std::make_unique<SourceComponent>();
  c->Name = name;
  c->Kind = kind;
  c->RelativePath = name + (extension == kExtensions.end() ? ".bas" : extension->second);
  c->FilePath = "/src/" + c->RelativePath;
  project.Components.Add(std::move(c), name);
  auto module = std::make_unique<SourceModule>();
  module->Name = name;
  return project.Modules.Add(std::move(module), name);
}

// A module with `lines` code lines, a Header member and one public Sub
// "DoIt" documented with a summary.
inline SourceModule& AddModule(SourceProject& project, const std::string& name,
                               const std::string& kind, int32_t lines = 3) {
  SourceModule& module = AddEmptyModule(project, name, kind);
  for (int32_t i = 1; i <= lines; ++i) module.CodeLines.Add(i, "' line " + std::to_string(i));
  AddMember(module, "Header", "", "", {"Option Explicit"});
  AddMember(module, "DoIt", "Sub", "Public",
            {"'/// <summary>Does it.</summary>", "Public Sub DoIt()", "End Sub"});
  return module;
}

// A class module "Kasse Buch" with a documented Header, a private Function
// with three kinds of parameter, a Property Let, a Friend Sub with a blank in
// its name and an outgoing event; and a standard module "Werkzeug" with a
// Property Get taking an optional parameter.
inline void AddSampleModules(SourceProject& project) {
  SourceModule& cls = AddEmptyModule(project, "Kasse Buch", "Class");
  cls.HelpContextId = 77;
  cls.Description = "Buchungen";
  for (int32_t i = 1; i <= 5; ++i) cls.CodeLines.Add(i, "' Zeile");
  AddMember(cls, "Header", "", "",
            {"'/// <summary>Das Kassenbuch.</summary>", "'/// <remarks>Nur lesen.</remarks>",
             "Option Explicit"});
  SourceMember& rechne = AddMember(
      cls, "Rechne", "Function", "Private",
      {"'/// <summary>Rechnet.</summary>", "'/// <param name=\"a\">Der erste.</param>",
       "'/// <remarks>Bemerkung.</remarks>", "'/// <returns>Die Summe.</returns>",
       "Private Function Rechne(ByVal a As Long, Optional b As Long = 0, ParamArray rest()) "
       "As Long",
       "End Function"});
  rechne.ReturnType = "Long";
  rechne.HelpContextId = 12;
  rechne.Description = "intern";
  AddParameter(rechne, "a", "Long", "ByVal");
  SourceParameter& b = AddParameter(rechne, "b", "Long", "ByRef");
  b.Optional = true;
  b.HasDefault = true;
  b.Default = "0";
  AddParameter(rechne, "rest", "Variant()", "ByRef").ParamArray = true;
  SourceMember& wert = AddMember(cls, "Let Wert", "Property", "Public", {"Public Property Let"});
  wert.PropertyForm = "Let ";
  AddParameter(wert, "RHS", "Long", "ByVal");
  AddMember(cls, "Tu Es", "Sub", "Friend", {"Friend Sub TuEs()"});
  AddMember(cls, "Geaendert", "OutEvent", "Public", {"Public Event Geaendert()"});

  SourceModule& std_module = AddEmptyModule(project, "Werkzeug", "Module");
  AddMember(std_module, "Header", "", "", {"Option Explicit"});
  SourceMember& get = AddMember(std_module, "Get Eintrag", "Property", "Public");
  get.PropertyForm = "Get ";
  AddParameter(get, "Index", "Long", "ByVal").Optional = true;
  AddParameter(get, "Name", "String", "ByRef");
}

// A folder of its own for one test, removed afterwards.
class TempDirTest : public ::testing::Test {
 protected:
  TempDirTest()
      : root_(std::filesystem::temp_directory_path() /
              ("fs_test_" + std::to_string(::getpid()) + "_" +
               ::testing::UnitTest::GetInstance()->current_test_info()->test_suite_name() + "_" +
               ::testing::UnitTest::GetInstance()->current_test_info()->name())) {
    std::filesystem::remove_all(root_);
    std::filesystem::create_directories(root_);
  }
  ~TempDirTest() override {
    std::error_code ec;
    std::filesystem::remove_all(root_, ec);
  }
  std::filesystem::path root_;
};

// One test: app folder with the Mini set and settings selecting it.
class MiniSetTest : public TempDirTest {
 protected:
  MiniSetTest() : platform_((root_ / "app").string()), scoped_(&platform_) {
    WriteMiniReportSet(AppDir());
    SetCurrent("ReportPath", "Mini");
    SetCurrent("ReportLanguage", "Deutsch");
    project_.Name = "Kasse";
    project_.Version = "2.1.7";
  }

  void SetWord(const std::string& name, int32_t value) {
    CRegistry().SaveRegWord(kHkeyCurrentUser, kConfigKey, name, value);
  }
  int32_t Word(const std::string& name) {
    return CRegistry().ReadRegWord(kHkeyCurrentUser, kConfigKey, name, 0);
  }
  void SetString(const std::string& name, const std::string& value) {
    CRegistry().SaveRegString(kHkeyCurrentUser, kConfigKey, name, value);
  }
  void SetCurrent(const std::string& name, const std::string& value) {
    CRegistry().SaveRegString(kHkeyCurrentUser, kCurrentReportKey, name, value);
  }
  // The Mini set as the settings select it, loaded once per test.
  CRessource& Mini() {
    if (!mini_) mini_ = std::make_unique<CRessource>();
    return *mini_;
  }

  std::filesystem::path AppDir() const { return root_ / "app"; }
  // The set's folder as a preview prefixes its resource names.
  std::string SetPrefix() const { return AppDir().string() + "/Res/Mini/"; }

  RecordingPlatform platform_;
  ScopedPlatform scoped_;
  SourceProject project_;
  std::unique_ptr<CRessource> mini_;
};

}  // namespace report_testing
}  // namespace folioscope

#endif  // FOLIOSCOPE_PAGES_PAGE_TEST_SUPPORT_H_
