// Helpers for the report-set tests: a scratch application folder with a
// Res subfolder, written files and encrypted report-set files, and a
// progress channel that keeps its messages.
#ifndef FOLIOSCOPE_REPORTSETS_TEST_SUPPORT_H_
#define FOLIOSCOPE_REPORTSETS_TEST_SUPPORT_H_

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "infra/fs_communicator.h"
#include "reportsets/winapi_crypt.h"

namespace folioscope {

class ScratchAppFolder {
 public:
  ScratchAppFolder() {
    path_ = std::filesystem::temp_directory_path() /
            ("folioscope-rs-" + std::to_string(::getpid()) + "-" + std::to_string(counter_++));
    std::filesystem::remove_all(path_);
    std::filesystem::create_directories(path_ / "Res");
  }
  ~ScratchAppFolder() { std::filesystem::remove_all(path_); }
  ScratchAppFolder(const ScratchAppFolder&) = delete;
  ScratchAppFolder& operator=(const ScratchAppFolder&) = delete;

  std::string path() const { return path_.string(); }
  std::string res() const { return (path_ / "Res").string(); }

  // Writes `bytes` to Res/<relative>, creating folders.
  void WriteRes(const std::string& relative, const std::string& bytes) const {
    const std::filesystem::path file = path_ / "Res" / relative;
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << bytes;
  }
  void WriteEncrypted(const std::string& relative, const std::string& plain) const {
    WriteRes(relative, CWinAPICrypt().EncryptString(plain, kTemplatePassword));
  }
  void MakeFolder(const std::string& relative) const {
    std::filesystem::create_directories(path_ / "Res" / relative);
  }

 private:
  static inline int counter_ = 0;
  std::filesystem::path path_;
};

// Registers a fresh progress channel for its lifetime and keeps what
// reaches it as Message.
class ProgressLog : public CFSCommunicatorEvents {
 public:
  ProgressLog() : channel_(std::make_shared<CFSCommunicator>()) {
    channel_->AddListener(this);
    SetProgressChannel(channel_);
  }
  ~ProgressLog() override { SetProgressChannel(nullptr); }
  ProgressLog(const ProgressLog&) = delete;
  ProgressLog& operator=(const ProgressLog&) = delete;

  void OnReportStart(int32_t&) override {}
  void OnReportWorks(int32_t&, std::string&, bool&) override {}
  void Message(std::string& desc, int32_t& icon) override {
    logs.push_back(desc);
    icons.push_back(icon);
  }
  std::vector<std::string> logs;
  std::vector<int32_t> icons;

 private:
  std::shared_ptr<CFSCommunicator> channel_;
};

}  // namespace folioscope

#endif  // FOLIOSCOPE_REPORTSETS_TEST_SUPPORT_H_
