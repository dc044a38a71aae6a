// The progress channel: CFSCommunicator raises the events Message,
// OnReportStart and OnReportWorks to its listeners; CFSDataLogger registers
// a communicator as the calling thread's channel, through which every part
// of the component sends its messages (AddLog and friends below).
//
// Events are raised synchronously on the calling thread, in the order the
// listeners were added; arguments are passed by reference as in the event
// interface. A message sent while no communicator is registered is dropped.
#ifndef FOLIOSCOPE_INFRA_FS_COMMUNICATOR_H_
#define FOLIOSCOPE_INFRA_FS_COMMUNICATOR_H_

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace folioscope {

class CFSCommunicatorEvents {
 public:
  virtual ~CFSCommunicatorEvents() = default;
  virtual void Message(std::string& Desc, int32_t& IconIndex) = 0;
  virtual void OnReportStart(int32_t& Count) = 0;
  virtual void OnReportWorks(int32_t& CurrentValue, std::string& Description, bool& StdPraefix) = 0;
};

class CFSCommunicator {
 public:
  // Listeners are not owned; remove them before they die.
  void AddListener(CFSCommunicatorEvents* listener);
  void RemoveListener(CFSCommunicatorEvents* listener);

  // Public: raises Message(Desc, IconIndex).
  int32_t AddLog(const std::string& Desc, int32_t IconIndex);

  // Component-internal (friend scope in the type library).
  void RaiseOnReportStart(int32_t Count);
  void RaiseOnReportWorks(int32_t CurrentValue, const std::string& Description, bool StdPraefix);

 private:
  std::vector<CFSCommunicatorEvents*> listeners_;
};

class CFSDataLogger {
 public:
  // Stores the communicator and makes it the calling thread's channel,
  // replacing any earlier one.
  void SetFSCommunicator(std::shared_ptr<CFSCommunicator> communicator);
  const std::shared_ptr<CFSCommunicator>& FSCommunicator() const { return communicator_; }

 private:
  std::shared_ptr<CFSCommunicator> communicator_;
};

// How many times listeners of any channel have been called into, counted
// when each call returns. Code that keeps what it read from outside state
// compares it to see whether a caller could have run in between.
uint64_t ListenerCallsReturned();

// The calling thread's channel (null when none is registered).
CFSCommunicator* ProgressChannel();
void SetProgressChannel(std::shared_ptr<CFSCommunicator> communicator);

// Makes `communicator` the calling thread's channel for the scope's
// lifetime and then restores the channel before it: a command that reads
// members only to measure them keeps the readers' messages to itself.
class ScopedProgressChannel {
 public:
  explicit ScopedProgressChannel(std::shared_ptr<CFSCommunicator> communicator);
  ~ScopedProgressChannel();
  ScopedProgressChannel(const ScopedProgressChannel&) = delete;
  ScopedProgressChannel& operator=(const ScopedProgressChannel&) = delete;

 private:
  std::shared_ptr<CFSCommunicator> previous_;
};

// Senders used throughout the component; each drops its message when no
// channel is registered.
void AddLog(const std::string& desc, int32_t icon_index);
void ReportStart(int32_t count);
void ReportWorks(int32_t current_value, const std::string& description, bool std_praefix);

// Icon indexes of the add-in's picture list.
enum IconIndex : int32_t {
  kIconProgress = 1,  // progress, success and diagnostics
  kIconNotReady = 2,  // failures of the readiness check
  kIconFailure = 3,   // load, copy, compile failures, missing tags
};

}  // namespace folioscope

#endif  // FOLIOSCOPE_INFRA_FS_COMMUNICATOR_H_
