// Test support for the report object and its page writers: a small
// encrypted report set ("Mini") in a temporary application folder, a
// recording platform with the settings that select it, a progress channel
// whose events are kept, project builders, and CFolioscopeTestPeer for the
// private writers and the help-file state.
#ifndef FOLIOSCOPE_ENGINE_REPORT_TEST_SUPPORT_H_
#define FOLIOSCOPE_ENGINE_REPORT_TEST_SUPPORT_H_

#include <gtest/gtest.h>

#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "engine/folioscope.h"
#include "engine/fs_communicator.h"
#include "infra/error_handler.h"
#include "infra/platform.h"
#include "infra/recording_platform.h"
#include "infra/registry.h"
#include "model/source_model.h"
#include "reportsets/winapi_crypt.h"

namespace folioscope {

// Reaches the report object's private writers and fields.
class CFolioscopeTestPeer {
 public:
  explicit CFolioscopeTestPeer(CFolioscope& f) : f_(f) {}
  int32_t WriteFileRessources() { return f_.WriteFileRessources(); }
  int32_t WriteComponentMenu() { return f_.WriteComponentMenu(); }
  int32_t WriteIndex() { return f_.WriteIndex(); }
  int32_t WriteLogo() { return f_.WriteLogo(); }
  int32_t WriteProjekt(int32_t save_mode) { return f_.WriteProjekt(save_mode); }
  void CheckOfReady() { f_.CheckOfReady(); }
  int32_t progress_total() const { return f_.progress_total_; }
  // Puts the object into help-file mode with a fresh file list, as the
  // help-file build does before it writes the pages.
  void StartHelpFileMode() {
    f_.chm_mode_ = true;
    f_.chm_file_list_ = "[FILES]\r\n";
    f_.chm_toc_text_.clear();
  }
  void ClearReportSetPath() { f_.report_set_path_.clear(); }

 private:
  CFolioscope& f_;
};

namespace report_testing {

// Encrypts a plain report-set file with the template password, as the
// build step does for the shipped sets.
inline std::string TemplateCipher(const std::string& text) {
  return CWinAPICrypt().EncryptString(text, kTemplatePassword);
}

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

// Template texts of the Mini set, by file key. Every template is short and
// marks what was filled in with visible separators.
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
  return t;
}

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
    "\\}\r\n";

// Writes Res/IndexComment.ini and the encrypted Mini set below `app`.
inline void WriteMiniReportSet(const std::filesystem::path& app) {
  std::string ini =
      "[Sets]\r\nCount=1\r\n[Mini]\r\nName=Mini\r\nPath=Mini\r\nLanguages=Deutsch\r\n";
  for (int n = 1; n <= 28; ++n) {
    ini += "File" + std::to_string(n) + "=Mini\\file" + std::to_string(n) + ".htm\r\n";
  }
  WriteBytes(app / "Res" / "IndexComment.ini", ini);
  for (const auto& [n, text] : MiniTemplates()) {
    WriteBytes(app / "Res" / "Mini" / ("file" + std::to_string(n) + ".htm"), TemplateCipher(text));
  }
  WriteBytes(app / "Res" / "Mini" / "Description.dat", TemplateCipher(kMiniDescription));
  WriteBytes(app / "Res" / "Mini" / "style.css", "body { color: black; }\n");
  WriteBytes(app / "Res" / "Mini" / "logo.gif", "GIF89a");
}

// The channel's events, in order.
class EventRecorder : public CFSCommunicatorEvents {
 public:
  struct Works {
    int32_t value;
    std::string description;
    bool std_praefix;
    int32_t save_mode;  // the report object's save mode when the event came
  };
  void Message(std::string& Desc, int32_t& IconIndex) override {
    messages.emplace_back(Desc, IconIndex);
  }
  void OnReportStart(int32_t& Count) override { starts.push_back(Count); }
  void OnReportWorks(int32_t& CurrentValue, std::string& Description, bool& StdPraefix) override {
    works.push_back({CurrentValue, Description, StdPraefix, watched ? watched->save_mode() : -2});
  }
  std::vector<std::pair<std::string, int32_t>> messages;
  std::vector<int32_t> starts;
  std::vector<Works> works;
  const CFolioscope* watched = nullptr;
};

// A module with its component entry: `lines` code lines, a Header member
// and one public Sub "DoIt" documented with a summary.
inline SourceModule& AddModule(SourceProject& project, const std::string& name,
                               const std::string& kind, int32_t lines = 3) {
  auto component = std::make_unique<SourceComponent>();
  component->Name = name;
  component->Kind = kind;
  component->RelativePath = name + ".bas";
  component->FilePath = "/src/" + name + ".bas";
  project.Components.Add(std::move(component), name);
  auto module = std::make_unique<SourceModule>();
  module->Name = name;
  for (int32_t i = 1; i <= lines; ++i) module->CodeLines.Add(i, "' line " + std::to_string(i));
  auto header = std::make_unique<SourceMember>();
  header->Name = "Header";
  header->CodeLines.Add(1, "Option Explicit");
  header->LineCount = 1;
  module->Members.Add(std::move(header), "Header");
  auto member = std::make_unique<SourceMember>();
  member->Name = "DoIt";
  member->Kind = "Sub";
  member->Scope = "Public";
  member->CodeLines.Add(1, "'/// <summary>Does it.</summary>");
  member->CodeLines.Add(2, "Public Sub DoIt()");
  member->CodeLines.Add(3, "End Sub");
  member->LineCount = 3;
  module->Members.Add(std::move(member), "DoIt");
  return project.Modules.Add(std::move(module), name);
}

// One test: app folder with the Mini set, settings selecting it, output
// folder "out" beside it, channel registered.
class ReportTest : public ::testing::Test {
 protected:
  ReportTest()
      : root_(std::filesystem::temp_directory_path() /
              ("fs_report_test_" + std::to_string(::getpid()) + "_" +
               ::testing::UnitTest::GetInstance()->current_test_info()->name())),
        platform_((root_ / "app").string()),
        scoped_(&platform_) {
    std::filesystem::remove_all(root_);
    WriteMiniReportSet(root_ / "app");
    CRegistry registry;
    registry.SaveRegString(kHkeyCurrentUser, kCurrentReportKey, "ReportPath", "Mini");
    registry.SaveRegString(kHkeyCurrentUser, kCurrentReportKey, "ReportLanguage", "Deutsch");
    SetWord("ShowLOCForProjects", 1);
    SetWord("ToolBarPublicValue", 1);
    SetWord("ToolBarFriendValue", 1);
    SetWord("ToolBarPrivateValue", 1);
    channel_ = std::make_shared<CFSCommunicator>();
    channel_->AddListener(&events_);
    SetProgressChannel(channel_);
    reports_before_ = CErrorHandler::Instance().ReportCount();
    project_.Name = "Kasse";
    project_.Version = "2.1.7";
  }
  ~ReportTest() override {
    SetProgressChannel(nullptr);
    std::error_code ec;
    std::filesystem::remove_all(root_, ec);
  }

  void SetWord(const std::string& name, int32_t value) {
    CRegistry().SaveRegWord(kHkeyCurrentUser, kConfigKey, name, value);
  }
  void SetString(const std::string& name, const std::string& value) {
    CRegistry().SaveRegString(kHkeyCurrentUser, kConfigKey, name, value);
  }

  // A ready report object on the test project, writing into out/.
  std::unique_ptr<CFolioscope> MakeReport() {
    auto report = std::make_unique<CFolioscope>();
    report->Projekt = &project_;
    report->PlainPath = OutDir().string();
    events_.watched = report.get();
    return report;
  }

  std::filesystem::path AppDir() const { return root_ / "app"; }
  std::filesystem::path OutDir() const { return root_ / "out"; }
  std::string Out(const std::string& name) const { return ReadBytes(OutDir() / name); }
  bool OutHas(const std::string& name) const { return std::filesystem::exists(OutDir() / name); }
  // Names of the files written into out/, sorted.
  std::vector<std::string> OutFiles() const {
    std::vector<std::string> names;
    if (!std::filesystem::exists(OutDir())) return names;
    for (const auto& e : std::filesystem::directory_iterator(OutDir())) {
      names.push_back(e.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
  }
  int64_t NewFaults() const { return CErrorHandler::Instance().ReportCount() - reports_before_; }

  std::filesystem::path root_;
  RecordingPlatform platform_;
  ScopedPlatform scoped_;
  std::shared_ptr<CFSCommunicator> channel_;
  EventRecorder events_;
  int64_t reports_before_ = 0;
  SourceProject project_;
};

}  // namespace report_testing
}  // namespace folioscope

#endif  // FOLIOSCOPE_ENGINE_REPORT_TEST_SUPPORT_H_
