#include "service/work_queue.h"

#include <utility>

#include "support/scope_exit.h"

namespace tlpacscfg::service {
namespace {

thread_local bool turningAway = false;

void turnAway(const std::function<void()>& work) {
  turningAway = true;
  const ScopeExit reset([] { turningAway = false; });
  work();
}

}  // namespace

WorkQueue::WorkQueue(std::size_t workers, std::size_t waiting) : waiting_(waiting) {
  for (std::size_t i = 0; i < workers; ++i) workers_.emplace_back([this] { run(); });
}

WorkQueue::~WorkQueue() { shutdown(); }

bool WorkQueue::turnedAway() { return turningAway; }

void WorkQueue::enqueue(std::function<void()> work) {
  {
    const std::scoped_lock lock(mutex_);
    if (!ending_ && queue_.size() < waiting_ + idle_) {
      queue_.push_back(std::move(work));
      changed_.notify_one();
      return;
    }
  }
  turnAway(work);
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
      turnAway(work);
    } else {
      work();
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
