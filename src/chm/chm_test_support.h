// Test support for the help project and the compile run: a peer that
// reaches the report object's help-file writers and state, and a fixture
// with a temporary application folder holding a tiny encrypted report set
// ("Tiny"), a recording platform whose settings select it, a progress
// channel whose messages are kept, and an output folder.
#ifndef FOLIOSCOPE_CHM_CHM_TEST_SUPPORT_H_
#define FOLIOSCOPE_CHM_CHM_TEST_SUPPORT_H_

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "engine/folioscope.h"
#include "engine/fs_communicator.h"
#include "infra/platform.h"
#include "infra/recording_platform.h"
#include "infra/registry.h"
#include "model/source_model.h"
#include "reportsets/winapi_crypt.h"

namespace folioscope {

class CFolioscopeChmPeer {
 public:
  explicit CFolioscopeChmPeer(CFolioscope& f) : f_(f) {}
  int32_t CreateCHMProjektFile(int32_t m) { return f_.CreateCHMProjektFile(m); }
  int32_t CreateCHMMapAndAlias(int32_t m) { return f_.CreateCHMMapAndAlias(m); }
  int32_t CreateCHMTableOfContens(int32_t m) { return f_.CreateCHMTableOfContens(m); }
  void SetHelpTexts(const std::string& file_list, const std::string& toc) {
    f_.chm_file_list_ = file_list;
    f_.chm_toc_text_ = toc;
  }
  void SetTitle(const std::string& title) { f_.CHMReportTitle = title; }
  void SetListed(int32_t public_value, int32_t friend_value, int32_t private_value) {
    f_.ToolBarPublicValue = public_value;
    f_.ToolBarFriendValue = friend_value;
    f_.ToolBarPrivateValue = private_value;
  }

 private:
  CFolioscope& f_;
};

namespace chm_testing {

inline std::string ReadBytes(const std::filesystem::path& path) {
  std::ifstream f(path, std::ios::binary);
  std::ostringstream s;
  s << f.rdbuf();
  return s.str();
}

inline void WriteBytes(const std::filesystem::path& path, const std::string& bytes) {
  std::filesystem::create_directories(path.parent_path());
  std::ofstream f(path, std::ios::binary | std::ios::trunc);
  f.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

// Encrypts a plain report-set file with the template password, as the
// build step does for the shipped sets.
inline std::string TemplateCipher(const std::string& text) {
  return CWinAPICrypt().EncryptString(text, kTemplatePassword);
}

inline void WriteTinyReportSet(const std::filesystem::path& app) {
  std::string ini =
      "[Sets]\r\nCount=1\r\n[Tiny]\r\nName=Tiny\r\nPath=Tiny\r\nLanguages=Deutsch\r\n";
  for (int n = 1; n <= 28; ++n) {
    const std::string file = "file" + std::to_string(n) + ".htm";
    ini += "File" + std::to_string(n) + "=Tiny\\" + file + "\r\n";
    WriteBytes(app / "Res" / "Tiny" / file, TemplateCipher("<!--File" + std::to_string(n) + "-->"));
  }
  WriteBytes(app / "Res" / "IndexComment.ini", ini);
  WriteBytes(app / "Res" / "Tiny" / "Description.dat",
             TemplateCipher("Platzhalter\r\n"
                            "\\&&&FS_Style_File&&& = style.css\r\n"
                            "\\&&&FS_Logo_File&&& = logo.gif\r\n"
                            "\\}\r\n"
                            "[[Deutsch]]\r\n"
                            "\\&&&FS_Logo_CodeFolioscope&&& = Dokumentation\r\n"
                            "\\}\r\n"));
  WriteBytes(app / "Res" / "Tiny" / "style.css", "body {}\n");
  WriteBytes(app / "Res" / "Tiny" / "logo.gif", "GIF89a");
}

class MessageRecorder : public CFSCommunicatorEvents {
 public:
  void Message(std::string& Desc, int32_t& IconIndex) override {
    messages.emplace_back(Desc, IconIndex);
  }
  void OnReportStart(int32_t&) override {}
  void OnReportWorks(int32_t&, std::string& Description, bool&) override {
    works.push_back(Description);
  }
  std::vector<std::pair<std::string, int32_t>> messages;
  std::vector<std::string> works;
};

// Sets an environment variable for the scope and restores the old value.
class ScopedEnv {
 public:
  ScopedEnv(const char* name, const std::string& value) : name_(name) {
    if (const char* old = std::getenv(name)) old_ = old, had_ = true;
    ::setenv(name, value.c_str(), 1);
  }
  ~ScopedEnv() {
    if (had_) {
      ::setenv(name_, old_.c_str(), 1);
    } else {
      ::unsetenv(name_);
    }
  }

 private:
  const char* name_;
  std::string old_;
  bool had_ = false;
};

class ChmTest : public ::testing::Test {
 protected:
  ChmTest()
      : root_(std::filesystem::temp_directory_path() /
              ("fs_chm_test_" + std::to_string(::getpid()) + "_" +
               ::testing::UnitTest::GetInstance()->current_test_info()->name())),
        platform_((root_ / "app").string()),
        scoped_(&platform_) {
    std::filesystem::remove_all(root_);
    WriteTinyReportSet(root_ / "app");
    CRegistry registry;
    registry.SaveRegString(kHkeyCurrentUser, kCurrentReportKey, "ReportPath", "Tiny");
    registry.SaveRegString(kHkeyCurrentUser, kCurrentReportKey, "ReportLanguage", "Deutsch");
    for (const char* name : {"ToolBarPublicValue", "ToolBarFriendValue", "ToolBarPrivateValue"}) {
      registry.SaveRegWord(kHkeyCurrentUser, kConfigKey, name, 1);
    }
    channel_ = std::make_shared<CFSCommunicator>();
    channel_->AddListener(&events_);
    SetProgressChannel(channel_);
    project_.Name = "Kasse";
    project_.Version = "1.0.0";
  }
  ~ChmTest() override {
    SetProgressChannel(nullptr);
    std::error_code ec;
    std::filesystem::remove_all(root_, ec);
  }

  void SetWord(const std::string& name, int32_t value) {
    CRegistry().SaveRegWord(kHkeyCurrentUser, kConfigKey, name, value);
  }

  // A module with a Header member and the given members (name, scope,
  // context number).
  struct MemberSpec {
    std::string name;
    std::string scope;
    int32_t context;
  };
  SourceModule& AddModule(const std::string& name, const std::vector<MemberSpec>& members) {
    auto component = std::make_unique<SourceComponent>();
    component->Name = name;
    component->Kind = "Module";
    component->RelativePath = name + ".bas";
    project_.Components.Add(std::move(component), name);
    auto module = std::make_unique<SourceModule>();
    module->Name = name;
    module->CodeLines.Add(1, "Option Explicit");
    auto header = std::make_unique<SourceMember>();
    header->Name = "Header";
    header->HelpContextId = 99;
    header->CodeLines.Add(1, "Option Explicit");
    module->Members.Add(std::move(header), "Header");
    for (const MemberSpec& m : members) {
      auto member = std::make_unique<SourceMember>();
      member->Name = m.name;
      member->Kind = "Sub";
      member->Scope = m.scope;
      member->HelpContextId = m.context;
      member->CodeLines.Add(1, m.scope + " Sub " + m.name + "()");
      member->CodeLines.Add(2, "End Sub");
      module->Members.Add(std::move(member), m.name);
    }
    return project_.Modules.Add(std::move(module), name);
  }

  std::unique_ptr<CFolioscope> MakeReport() {
    auto report = std::make_unique<CFolioscope>();
    report->Projekt = &project_;
    report->PlainPath = OutDir().string();
    return report;
  }

  std::filesystem::path AppDir() const { return root_ / "app"; }
  std::filesystem::path OutDir() const { return root_ / "out"; }
  std::string Out(const std::string& name) const { return ReadBytes(OutDir() / name); }
  bool OutHas(const std::string& name) const { return std::filesystem::exists(OutDir() / name); }
  bool Logged(const std::string& text, int32_t icon) const {
    for (const auto& m : events_.messages) {
      if (m.first == text && m.second == icon) return true;
    }
    return false;
  }

  std::filesystem::path root_;
  RecordingPlatform platform_;
  ScopedPlatform scoped_;
  std::shared_ptr<CFSCommunicator> channel_;
  MessageRecorder events_;
  SourceProject project_;
};

}  // namespace chm_testing
}  // namespace folioscope

#endif  // FOLIOSCOPE_CHM_CHM_TEST_SUPPORT_H_
