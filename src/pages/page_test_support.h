// Test support for the report object's readiness check and its module and
// member pages: a tiny encrypted report set "Seiten" whose templates show
// every filled value between separators, a recording platform whose
// application folder holds it, the progress messages, and
// CFolioscopePagePeer for the private page writers.
#ifndef FOLIOSCOPE_PAGES_PAGE_TEST_SUPPORT_H_
#define FOLIOSCOPE_PAGES_PAGE_TEST_SUPPORT_H_

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "engine/folioscope.h"
#include "engine/fs_communicator.h"
#include "infra/error_handler.h"
#include "infra/recording_platform.h"
#include "infra/registry.h"
#include "model/source_model.h"
#include "reportsets/winapi_crypt.h"

namespace folioscope {

class CFolioscopePagePeer {
 public:
  explicit CFolioscopePagePeer(CFolioscope& f) : f_(f) {}
  int32_t WriteModulContentSite(SourceModule& m, int32_t save_mode, int32_t position) {
    return f_.WriteModulContentSite(m, save_mode, position);
  }
  int32_t WriteMemberContentSite(SourceMember& m, const std::string& module, bool append) {
    return f_.WriteMemberContentSite(m, module, append);
  }
  std::string GetTOCItem() { return f_.GetTOCItem(); }
  // Help-file mode with a fresh file list, as the help build starts it.
  void StartHelpFileMode() {
    f_.chm_mode_ = true;
    f_.chm_file_list_ = "[FILES]\r\n";
    f_.chm_toc_text_.clear();
  }
  void SetSaveMode(int32_t mode) { f_.save_mode_ = mode; }

 private:
  CFolioscope& f_;
};

namespace page_testing {

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

inline std::string Encrypted(const std::string& plain) {
  return CWinAPICrypt().EncryptString(plain, kTemplatePassword);
}

// Member top, member row, member bottom, module head, module line, module
// foot: every placeholder between "|" separators.
inline const char* kMemberTop =
    "T[&&&FS_MemberInhaltOben_Title&&&|&&&FS_MemberInhaltOben_AnwendungsName&&&|"
    "&&&FS_MemberInhaltOben_KlassenName&&&|&&&FS_MemberInhaltOben_MemberTyp&&&|"
    "&&&FS_MemberInhaltOben_MemberGueltigkeit&&&|&&&FS_MemberInhaltOben_MemberName&&&|"
    "&&&FS_MemberInhaltOben_Syntax&&&|&&&FS_MemberInhaltOben_MemberSummary&&&|"
    "&&&FS_MemberInhaltOben_ExampleCode&&&|&&&FS_MemberInhaltOben_MemberRueckgabe&&&|"
    "&&&FS_MemberInhaltOben_InternDescription&&&|&&&FS_MemberInhaltOben_HelpKontextID&&&|"
    "&&&FS_Style_File&&&]";
inline const char* kMemberRow =
    "R[&&&FS_MemberInhaltMitte_ParameterName&&&|&&&FS_MemberInhaltMitte_ParameterTyp&&&|"
    "&&&FS_MemberInhaltMitte_ParameterBeschreibung&&&|&&&FS_MemberInhaltMitte_Erforderlich&&&|"
    "&&&FS_MemberInhaltMitte_Uebergabe&&&|&&&FS_MemberInhaltMitte_ParameterAnmerkung&&&|"
    "&&&FS_Farbe&&&]";
inline const char* kMemberBottom =
    "B[&&&FS_MemberInhaltUnten_MemberRueckgabe&&&|&&&FS_MemberInhaltUnten_MemberRemarks&&&|"
    "&&&FS_MemberInhaltUnten_RueckgabeBeschreibung&&&|&&&FS_Style_File&&&]";
inline const char* kModuleHead =
    "H[&&&FS_ModulInhaltOben_KlassenName&&&|&&&FS_ModulInhaltOben_ModulBeschreibung&&&|"
    "&&&FS_ModuleInhaltOben_ModuleTitle&&&|&&&FS_ModulInhaltOben_AnwendungsName&&&|"
    "&&&FS_ModulInhaltOben_RelativePath&&&|&&&FS_ModulInhaltOben_InternDescription&&&|"
    "&&&FS_ModulInhaltOben_HelpKontextID&&&|&&&FS_ModulInhaltOben_ModuleLines&&&|"
    "&&&FS_ModulInhaltOben_ModuleFilePath&&&|&&&FS_ModulInhaltOben_ModuleSummary&&&|"
    "&&&FS_Style_File&&&]";
inline const char* kModuleLine =
    "M[<a href='&&&FS_ModulInhaltMitte_MemberDateiName_File&&&'"
    "&&&FS_ModulInhaltMitte_TargetFrameName&&&>&&&FS_ModulInhaltMitte_MemberName&&&</a>"
    "~&&&FS_ModulInhaltMitte_Einfuegung&&&~&&&FS_ModulInhaltMitte_MemberSummary&&&|"
    "&&&FS_Style_File&&&]";
inline const char* kModuleFoot =
    "F[&&&FS_ModulInhaltUnten_RemarksUeberschrift&&&|&&&FS_ModulInhaltUnten_Remarks&&&|"
    "&&&FS_Style_File&&&]";

inline const char* kDescription =
    "Platzhalter\r\n"
    "\\&&&FS_Style_File&&& = style.css\r\n"
    "\\&&&FS_Farbe&&& = #336699\r\n"
    "\\}\r\n"
    "[[Deutsch]]\r\n"
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

// Writes Res/IndexComment.ini and the set "Seiten" below `app`; `module_head`
// replaces the module head template (tests of the reload change it).
inline void WritePageSet(const std::filesystem::path& app,
                         const std::string& module_head = kModuleHead) {
  std::string ini =
      "[Sets]\r\nCount=1\r\n[Seiten]\r\nName=Seiten\r\nPath=Seiten\r\nLanguages=Deutsch\r\n";
  for (int n = 1; n <= 28; ++n) {
    ini += "File" + std::to_string(n) + "=Seiten\\file" + std::to_string(n) + ".htm\r\n";
  }
  WriteBytes(app / "Res" / "IndexComment.ini", ini);
  for (int n = 1; n <= 28; ++n) {
    std::string text = "<!--File" + std::to_string(n) + "-->";
    if (n == 5) text = kMemberTop;
    if (n == 4) text = kMemberRow;
    if (n == 6) text = kMemberBottom;
    if (n == 7) text = module_head;
    if (n == 8) text = kModuleLine;
    if (n == 28) text = kModuleFoot;
    WriteBytes(app / "Res" / "Seiten" / ("file" + std::to_string(n) + ".htm"), Encrypted(text));
  }
  WriteBytes(app / "Res" / "Seiten" / "Description.dat", Encrypted(kDescription));
}

class MessageRecorder : public CFSCommunicatorEvents {
 public:
  void Message(std::string& Desc, int32_t& IconIndex) override {
    messages.emplace_back(Desc, IconIndex);
  }
  void OnReportStart(int32_t&) override {}
  void OnReportWorks(int32_t&, std::string&, bool&) override {}
  std::vector<std::pair<std::string, int32_t>> messages;
};

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

inline SourceModule& AddModule(SourceProject& project, const std::string& name,
                               const std::string& kind) {
  auto c = std::make_unique<SourceComponent>();
  c->Name = name;
  c->Kind = kind;
  c->RelativePath = name + ".cls";
  c->FilePath = "/src/" + name + ".cls";
  project.Components.Add(std::move(c), name);
  auto module = std::make_unique<SourceModule>();
  module->Name = name;
  return project.Modules.Add(std::move(module), name);
}

// One test: an application folder holding the set, settings selecting it,
// an output folder beside it, the progress channel registered.
class PageTest : public ::testing::Test {
 protected:
  PageTest()
      : root_(std::filesystem::temp_directory_path() /
              ("fs_page_test_" + std::to_string(::getpid()) + "_" +
               ::testing::UnitTest::GetInstance()->current_test_info()->name())),
        platform_((root_ / "app").string()),
        scoped_(&platform_) {
    std::filesystem::remove_all(root_);
    std::filesystem::create_directories(root_ / "out");
    WritePageSet(root_ / "app");
    SetCurrent("ReportPath", "Seiten");
    SetCurrent("ReportLanguage", "Deutsch");
    SetWord("ToolBarPublicValue", 1);
    SetWord("ToolBarFriendValue", 1);
    SetWord("ToolBarPrivateValue", 1);
    channel_ = std::make_shared<CFSCommunicator>();
    channel_->AddListener(&events_);
    SetProgressChannel(channel_);
    faults_before_ = CErrorHandler::Instance().ReportCount();
    project_.Name = "Kasse";
  }
  ~PageTest() override {
    SetProgressChannel(nullptr);
    std::error_code ec;
    std::filesystem::remove_all(root_, ec);
  }

  void SetWord(const std::string& name, int32_t value) {
    CRegistry().SaveRegWord(kHkeyCurrentUser, kConfigKey, name, value);
  }
  int32_t Word(const std::string& name) {
    return CRegistry().ReadRegWord(kHkeyCurrentUser, kConfigKey, name, 0);
  }
  void SetCurrent(const std::string& name, const std::string& value) {
    CRegistry().SaveRegString(kHkeyCurrentUser, kCurrentReportKey, name, value);
  }

  std::unique_ptr<CFolioscope> MakeReport() {
    auto report = std::make_unique<CFolioscope>();
    report->Projekt = &project_;
    report->ProjektName = project_.Name;
    report->PlainPath = OutDir();
    return report;
  }

  std::string AppDir() const { return (root_ / "app").string(); }
  std::string OutDir() const { return (root_ / "out").string(); }
  std::string SetPrefix() const { return AppDir() + "/Res/Seiten/"; }
  std::string Out(const std::string& name) const { return ReadBytes(root_ / "out" / name); }
  int64_t NewFaults() const { return CErrorHandler::Instance().ReportCount() - faults_before_; }

  std::filesystem::path root_;
  RecordingPlatform platform_;
  ScopedPlatform scoped_;
  std::shared_ptr<CFSCommunicator> channel_;
  MessageRecorder events_;
  int64_t faults_before_ = 0;
  SourceProject project_;
};

}  // namespace page_testing
}  // namespace folioscope

#endif  // FOLIOSCOPE_PAGES_PAGE_TEST_SUPPORT_H_
