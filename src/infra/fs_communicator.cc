#include "infra/fs_communicator.h"

#include <algorithm>
#include <atomic>
#include <utility>

namespace folioscope {

namespace {
thread_local std::shared_ptr<CFSCommunicator> t_channel;

std::atomic<uint64_t> g_listener_calls_returned{0};

// Counts a listener call when it is over, also when it ends by throwing.
class ListenerCallCount {
 public:
  ListenerCallCount() = default;
  ~ListenerCallCount() { g_listener_calls_returned.fetch_add(1, std::memory_order_relaxed); }
  ListenerCallCount(const ListenerCallCount&) = delete;
  ListenerCallCount& operator=(const ListenerCallCount&) = delete;
};
}  // namespace

uint64_t ListenerCallsReturned() {
  return g_listener_calls_returned.load(std::memory_order_relaxed);
}

void CFSCommunicator::AddListener(CFSCommunicatorEvents* listener) {
  listeners_.push_back(listener);
}

void CFSCommunicator::RemoveListener(CFSCommunicatorEvents* listener) {
  listeners_.erase(std::remove(listeners_.begin(), listeners_.end(), listener), listeners_.end());
}

int32_t CFSCommunicator::AddLog(const std::string& Desc, int32_t IconIndex) {
  auto listeners = listeners_;
  for (auto* l : listeners) {
    std::string desc = Desc;
    int32_t icon = IconIndex;
    ListenerCallCount counted;
    l->Message(desc, icon);
  }
  return 0;
}

void CFSCommunicator::RaiseOnReportStart(int32_t Count) {
  auto listeners = listeners_;
  for (auto* l : listeners) {
    int32_t count = Count;
    ListenerCallCount counted;
    l->OnReportStart(count);
  }
}

void CFSCommunicator::RaiseOnReportWorks(int32_t CurrentValue, const std::string& Description,
                                         bool StdPraefix) {
  auto listeners = listeners_;
  for (auto* l : listeners) {
    int32_t current = CurrentValue;
    std::string description = Description;
    bool praefix = StdPraefix;
    ListenerCallCount counted;
    l->OnReportWorks(current, description, praefix);
  }
}

void CFSDataLogger::SetFSCommunicator(std::shared_ptr<CFSCommunicator> communicator) {
  communicator_ = communicator;
  SetProgressChannel(std::move(communicator));
}

CFSCommunicator* ProgressChannel() { return t_channel.get(); }

void SetProgressChannel(std::shared_ptr<CFSCommunicator> communicator) {
  t_channel = std::move(communicator);
}

ScopedProgressChannel::ScopedProgressChannel(std::shared_ptr<CFSCommunicator> communicator)
    : previous_(std::exchange(t_channel, std::move(communicator))) {}

ScopedProgressChannel::~ScopedProgressChannel() { t_channel = std::move(previous_); }

void AddLog(const std::string& desc, int32_t icon_index) {
  if (auto* c = ProgressChannel()) c->AddLog(desc, icon_index);
}

void ReportStart(int32_t count) {
  if (auto* c = ProgressChannel()) c->RaiseOnReportStart(count);
}

void ReportWorks(int32_t current_value, const std::string& description, bool std_praefix) {
  if (auto* c = ProgressChannel()) c->RaiseOnReportWorks(current_value, description, std_praefix);
}

}  // namespace folioscope
