#pragma once

#include <httplib.h>

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace tlpacscfg::service {

/// A fixed number of workers with a bounded queue. Work for which the queue has no place runs at
/// once, with rejected() true, to close its connection.
class WorkQueue : public httplib::TaskQueue {
 public:
  WorkQueue(std::size_t workers, std::size_t waiting);
  ~WorkQueue() override;

  void enqueue(std::function<void()> work) override;

  /// Rejects the waiting work and returns when the workers have finished.
  void shutdown() override;

  /// Whether the work that runs on this thread found no place in the queue.
  static bool rejected();

 private:
  bool tryEnqueue(const std::function<void()>& work);
  void run();

  const std::size_t waiting_;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<std::function<void()>> queue_;
  std::size_t idle_ = 0;
  bool ending_ = false;
  std::vector<std::thread> workers_;
};

}  // namespace tlpacscfg::service
