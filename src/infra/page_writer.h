// PageWriter: writes page files on a worker thread while the caller goes on
// building the next page.
//
// A report of a large project creates tens of thousands of small files, and
// creating a file costs the kernel about as much as building its page. The
// writer lets the two overlap: Write() hands a page over and returns at once;
// the worker writes the pages in the order they were handed over, through
// the same WriteTextFile as a direct write (same bytes, same CR LF, same
// append rule).
//
// Failures are not lost: a page the worker could not write is kept with the
// run-time error WriteTextFile raised and the procedure that handed it over.
// TakeFailures() gives back the failures found so far, Finish() waits for
// every page and gives back the rest. The owner reports them; the worker
// itself never touches the error reporter or the progress channel, which
// belong to the thread that runs the report.
//
// Handing over blocks while more than `max_pending_bytes` of pages wait, so
// memory stays bounded however fast pages are built.
#ifndef FOLIOSCOPE_INFRA_PAGE_WRITER_H_
#define FOLIOSCOPE_INFRA_PAGE_WRITER_H_

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "infra/vb_runtime.h"

namespace folioscope {

// A page the worker could not write.
struct PageWriteFailure {
  std::string path;
  std::string procedure;  // who handed the page over
  bool append;
  vb::RuntimeError error;
};

class PageWriter {
 public:
  static constexpr size_t kDefaultMaxPendingBytes = 32u << 20;

  explicit PageWriter(size_t max_pending_bytes = kDefaultMaxPendingBytes);
  // Waits for every page; failures not taken by then are dropped, so owners
  // call Finish() first.
  ~PageWriter();

  PageWriter(const PageWriter&) = delete;
  PageWriter& operator=(const PageWriter&) = delete;

  // Hands a page over: `text` and CR LF go to `path`, replacing the file or
  // appending to it. `procedure` names the caller for a failure report and
  // must outlive the writer (a string literal).
  void Write(std::string path, std::string text, bool append, const char* procedure);

  // The failures found since the last call, in the order of the pages.
  std::vector<PageWriteFailure> TakeFailures();

  // Waits until every page handed over is written, stops the worker and
  // returns the remaining failures. Write() must not be called afterwards.
  std::vector<PageWriteFailure> Finish();

 private:
  struct Job {
    std::string path;
    std::string text;
    bool append;
    const char* procedure;
  };

  void WorkerLoop();
  void WriteOne(const Job& job);

  const size_t max_pending_bytes_;
  std::mutex mutex_;
  std::condition_variable job_ready_;
  std::condition_variable room_free_;
  std::deque<Job> jobs_;
  size_t pending_bytes_ = 0;
  bool stopping_ = false;
  bool worker_idle_ = false;  // the worker waits for job_ready_
  int waiting_writers_ = 0;   // callers of Write() waiting for room_free_
  std::vector<PageWriteFailure> failures_;
  std::thread worker_;
};

}  // namespace folioscope

#endif  // FOLIOSCOPE_INFRA_PAGE_WRITER_H_
