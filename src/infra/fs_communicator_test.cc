#include "infra/fs_communicator.h"

#include <gtest/gtest.h>

#include <thread>

namespace folioscope {
namespace {

struct Recorder : CFSCommunicatorEvents {
  std::vector<std::string> events;
  void Message(std::string& d, int32_t& i) override {
    events.push_back("Message " + d + " " + std::to_string(i));
  }
  void OnReportStart(int32_t& c) override { events.push_back("Start " + std::to_string(c)); }
  void OnReportWorks(int32_t& v, std::string& d, bool& p) override {
    events.push_back("Works " + std::to_string(v) + " " + d + (p ? " true" : " false"));
  }
};

TEST(ProgressChannel, RegistrationRoutesAndReplaces) {
  AddLog("dropped before registration", 1);  // no channel: ignored, no crash
  auto first = std::make_shared<CFSCommunicator>();
  auto second = std::make_shared<CFSCommunicator>();
  Recorder r1, r2;
  first->AddListener(&r1);
  second->AddListener(&r2);
  CFSDataLogger logger;
  logger.SetFSCommunicator(first);
  AddLog("eins", kIconFailure);
  ReportStart(4);
  ReportWorks(1, "CKonto", true);
  logger.SetFSCommunicator(second);
  AddLog("zwei", kIconProgress);
  EXPECT_EQ(r1.events,
            (std::vector<std::string>{"Message eins 3", "Start 4", "Works 1 CKonto true"}));
  EXPECT_EQ(r2.events, (std::vector<std::string>{"Message zwei 1"}));
  // The add-in's own AddLog raises Message with the same values.
  second->AddLog("vom Add-in", 2);
  EXPECT_EQ(r2.events.back(), "Message vom Add-in 2");
  // The channel is per thread: another thread has none.
  std::thread([] { EXPECT_EQ(ProgressChannel(), nullptr); }).join();
  SetProgressChannel(nullptr);
}

}  // namespace
}  // namespace folioscope
