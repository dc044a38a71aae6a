// Test support for the doc-comment readers: a recording platform in a
// scratch application folder, a registered progress channel whose
// messages are kept, and member builders.
#ifndef FOLIOSCOPE_DOCCOMMENTS_READER_TEST_SUPPORT_H_
#define FOLIOSCOPE_DOCCOMMENTS_READER_TEST_SUPPORT_H_

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "infra/error_handler.h"
#include "infra/fs_communicator.h"
#include "infra/platform.h"
#include "infra/recording_platform.h"
#include "infra/test_folder.h"
#include "model/source_model.h"

namespace folioscope {
namespace testing_support {

struct LoggedMessage {
  std::string text;
  int32_t icon;
  bool operator==(const LoggedMessage& o) const { return text == o.text && icon == o.icon; }
};

inline std::ostream& operator<<(std::ostream& os, const LoggedMessage& m) {
  return os << "(" << m.icon << ") " << m.text;
}

class MessageRecorder : public CFSCommunicatorEvents {
 public:
  void Message(std::string& Desc, int32_t& IconIndex) override {
    messages.push_back({Desc, IconIndex});
  }
  void OnReportStart(int32_t&) override {}
  void OnReportWorks(int32_t&, std::string&, bool&) override {}
  std::vector<LoggedMessage> messages;
};

// Installs the platform and the channel for one test.
class ReaderTest : public ::testing::Test {
 protected:
  ReaderTest() : platform_(folder_.string()), scoped_(&platform_) {
    channel_ = std::make_shared<CFSCommunicator>();
    channel_->AddListener(&recorder_);
    SetProgressChannel(channel_);
    reports_before_ = CErrorHandler::Instance().ReportCount();
  }
  ~ReaderTest() override { SetProgressChannel(nullptr); }

  int64_t FaultsReported() const {
    return CErrorHandler::Instance().ReportCount() - reports_before_;
  }
  const std::vector<LoggedMessage>& Messages() const { return recorder_.messages; }

  TestFolder scratch_;
  const std::filesystem::path folder_ = scratch_.path();
  RecordingPlatform platform_;
  ScopedPlatform scoped_;
  std::shared_ptr<CFSCommunicator> channel_;
  MessageRecorder recorder_;
  int64_t reports_before_ = 0;
};

// A member whose code lines are `lines` under keys 1..n.
inline std::unique_ptr<SourceMember> MakeMember(const std::vector<std::string>& lines,
                                                std::string name = "DoIt",
                                                std::string kind = "Function") {
  auto m = std::make_unique<SourceMember>();
  m->Name = std::move(name);
  m->Kind = std::move(kind);
  for (size_t i = 0; i < lines.size(); ++i) m->CodeLines.Add(static_cast<int32_t>(i + 1), lines[i]);
  m->LineCount = static_cast<int32_t>(lines.size());
  return m;
}

inline void AddParameter(SourceMember& m, const std::string& name) {
  auto p = std::make_unique<SourceParameter>();
  p->Name = name;
  m.Parameters.Add(std::move(p), name);
}

}  // namespace testing_support
}  // namespace folioscope

#endif  // FOLIOSCOPE_DOCCOMMENTS_READER_TEST_SUPPORT_H_
