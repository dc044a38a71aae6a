// For tests: a progress channel registered on this thread for the
// recorder's lifetime, keeping every event that reaches it in order.
#ifndef FOLIOSCOPE_INFRA_TEST_PROGRESS_H_
#define FOLIOSCOPE_INFRA_TEST_PROGRESS_H_

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "infra/fs_communicator.h"

namespace folioscope {

class ProgressRecorder : public CFSCommunicatorEvents {
 public:
  ProgressRecorder() : channel_(std::make_shared<CFSCommunicator>()) {
    channel_->AddListener(this);
    SetProgressChannel(channel_);
  }
  ~ProgressRecorder() override { SetProgressChannel(nullptr); }
  ProgressRecorder(const ProgressRecorder&) = delete;
  ProgressRecorder& operator=(const ProgressRecorder&) = delete;

  void Message(std::string& desc, int32_t& icon) override {
    messages.emplace_back(desc, icon);
    events.push_back("Message " + desc + " " + std::to_string(icon));
  }
  void OnReportStart(int32_t& count) override {
    events.push_back("Start " + std::to_string(count));
  }
  void OnReportWorks(int32_t& value, std::string& description, bool& std_praefix) override {
    events.push_back("Works " + std::to_string(value) + " " + description +
                     (std_praefix ? " true" : " false"));
  }
  const std::shared_ptr<CFSCommunicator>& channel() const { return channel_; }

  std::vector<std::pair<std::string, int32_t>> messages;  // text, icon
  std::vector<std::string> events;                        // every event, as text

 private:
  std::shared_ptr<CFSCommunicator> channel_;
};

}  // namespace folioscope

#endif  // FOLIOSCOPE_INFRA_TEST_PROGRESS_H_
