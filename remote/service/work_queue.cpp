#include "service/work_queue.h"

#include <exception>
#include <new>
#include <utility>

#include "support/scope_exit.h"

namespace tlpacscfg::service {
namespace {

thread_local bool rejecting = false;

/// A failure ends its own connection only.
void perform(const std::function<void()>& work) noexcept {
  try {
    work();
  } catch (...) {
    // The work has closed its connection and cannot report to anyone.
  }
}

void reject(const std::function<void()>& work) {
  rejecting = true;
  const ScopeExit reset([] { rejecting = false; });
  perform(work);
}

}  // namespace

WorkQueue::WorkQueue(std::size_t workers, std::size_t waiting) : waiting_(waiting) {
  try {
    for (std::size_t i = 0; i < workers; ++i) workers_.emplace_back([this] { run(); });
  } catch (const std::exception&) {
    // Fewer workers than configured are enough, but there must be one.
    if (workers_.empty()) throw;
  }
}

WorkQueue::~WorkQueue() { shutdown(); }

bool WorkQueue::rejected() { return rejecting; }

void WorkQueue::enqueue(std::function<void()> work) {
  if (!tryEnqueue(work)) reject(work);
}

bool WorkQueue::tryEnqueue(const std::function<void()>& work) {
  const std::scoped_lock lock(mutex_);
  if (ending_ || queue_.size() >= waiting_ + idle_) return false;
  try {
    queue_.push_back(work);
  } catch (const std::bad_alloc&) {
    return false;
  }
  changed_.notify_one();
  return true;
}

void WorkQueue::run() {
  std::unique_lock lock(mutex_);
  for (;;) {
    ++idle_;
    changed_.wait(lock, [this] { return ending_ || !queue_.empty(); });
    --idle_;
    if (queue_.empty()) return;
    const std::function<void()> work = std::move(queue_.front());
    queue_.pop_front();
    const bool unwanted = ending_;
    lock.unlock();
    if (unwanted) {
      reject(work);
    } else {
      perform(work);
    }
    lock.lock();
  }
}

void WorkQueue::shutdown() {
  {
    const std::scoped_lock lock(mutex_);
    ending_ = true;
  }
  changed_.notify_all();
  for (std::thread& worker : workers_) worker.join();
  workers_.clear();
}

}  // namespace tlpacscfg::service
