// Test support for the report object: the Mini report set and project
// builders of the page tests, a progress channel whose events are kept, and
// report objects writing into a folder of the test.
#ifndef FOLIOSCOPE_ENGINE_REPORT_TEST_SUPPORT_H_
#define FOLIOSCOPE_ENGINE_REPORT_TEST_SUPPORT_H_

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "engine/folioscope.h"
#include "infra/error_handler.h"
#include "infra/fs_communicator.h"
#include "pages/page_test_support.h"

namespace folioscope {
namespace report_testing {

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

// One test: app folder with the Mini set, settings selecting it and every
// scope listed, output folder "out" beside it (not created), channel
// registered.
class ReportTest : public MiniSetTest {
 protected:
  ReportTest() {
    for (const char* name : {"ShowLOCForProjects", "ToolBarPublicValue", "ToolBarFriendValue",
                             "ToolBarPrivateValue"}) {
      SetWord(name, 1);
    }
    channel_ = std::make_shared<CFSCommunicator>();
    channel_->AddListener(&events_);
    SetProgressChannel(channel_);
    reports_before_ = CErrorHandler::Instance().ReportCount();
  }
  ~ReportTest() override { SetProgressChannel(nullptr); }

  // A ready report object on the test project, writing into out/.
  std::unique_ptr<CFolioscope> MakeReport() {
    auto report = std::make_unique<CFolioscope>();
    report->Projekt = &project_;
    report->ProjektName = project_.Name;
    report->PlainPath = OutDir().string();
    events_.watched = report.get();
    return report;
  }
  // The same with out/ created, for the writers that expect the folder.
  std::unique_ptr<CFolioscope> MakeWriter() {
    std::filesystem::create_directories(OutDir());
    return MakeReport();
  }

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
  bool Logged(const std::string& text, int32_t icon) const {
    return std::find(events_.messages.begin(), events_.messages.end(),
                     std::make_pair(text, icon)) != events_.messages.end();
  }
  int64_t NewFaults() const { return CErrorHandler::Instance().ReportCount() - reports_before_; }

  std::shared_ptr<CFSCommunicator> channel_;
  EventRecorder events_;
  int64_t reports_before_ = 0;
};

}  // namespace report_testing
}  // namespace folioscope

#endif  // FOLIOSCOPE_ENGINE_REPORT_TEST_SUPPORT_H_
