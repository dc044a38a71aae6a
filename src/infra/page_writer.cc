#include "infra/page_writer.h"

#include <exception>
#include <utility>

#include "infra/error_handler.h"
#include "infra/file_system.h"

namespace folioscope {

PageWriter::PageWriter(size_t max_pending_bytes)
    : max_pending_bytes_(max_pending_bytes), worker_([this] { WorkerLoop(); }) {}

PageWriter::~PageWriter() { Finish(); }

void PageWriter::Write(std::string path, std::string text, bool append, const char* procedure) {
  const size_t size = text.size();
  std::unique_lock<std::mutex> lock(mutex_);
  // One page larger than the limit still goes through, alone.
  if (pending_bytes_ != 0 && pending_bytes_ + size > max_pending_bytes_) {
    ++waiting_writers_;
    room_free_.wait(
        lock, [&] { return pending_bytes_ == 0 || pending_bytes_ + size <= max_pending_bytes_; });
    --waiting_writers_;
  }
  pending_bytes_ += size;
  jobs_.push_back(Job{std::move(path), std::move(text), append, procedure});
  // The worker only sleeps on an empty queue; waking it for every page
  // would cost a system call per page.
  if (worker_idle_) job_ready_.notify_one();
}

std::vector<PageWriteFailure> PageWriter::TakeFailures() {
  std::lock_guard<std::mutex> lock(mutex_);
  return std::exchange(failures_, {});
}

std::vector<PageWriteFailure> PageWriter::Finish() {
  {
    std::lock_guard<std::mutex> lock(mutex_);
    stopping_ = true;
  }
  job_ready_.notify_one();
  if (worker_.joinable()) worker_.join();
  return TakeFailures();
}

void PageWriter::WorkerLoop() {
  std::deque<Job> batch;
  std::unique_lock<std::mutex> lock(mutex_);
  for (;;) {
    worker_idle_ = true;
    job_ready_.wait(lock, [&] { return stopping_ || !jobs_.empty(); });
    worker_idle_ = false;
    if (jobs_.empty()) return;  // stopping, and nothing left to write
    // Everything handed over so far is written in one go, in order.
    batch.swap(jobs_);
    lock.unlock();
    for (Job& job : batch) {
      WriteOne(job);
      const size_t size = job.text.size();
      std::string().swap(job.text);
      std::lock_guard<std::mutex> done(mutex_);
      pending_bytes_ -= size;
      if (waiting_writers_ > 0) room_free_.notify_all();
    }
    batch.clear();
    lock.lock();
  }
}

void PageWriter::WriteOne(const Job& job) {
  try {
    WriteTextFile(job.path, job.text, job.append);
  } catch (const std::exception& e) {
    PageWriteFailure failure{job.path, job.procedure, job.append, AsRuntimeError(e)};
    std::lock_guard<std::mutex> lock(mutex_);
    failures_.push_back(std::move(failure));
  }
}

}  // namespace folioscope
