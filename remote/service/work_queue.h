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

/// A fixed number of workers and a bounded queue before them. Work that finds no place is not
/// forgotten: it runs at once where turnedAway() says true, to end its connection.
class WorkQueue : public httplib::TaskQueue {
 public:
  WorkQueue(std::size_t workers, std::size_t waiting);
  ~WorkQueue() override;

  void enqueue(std::function<void()> work) override;

  /// Turns away what still waits and returns when the workers are done.
  void shutdown() override;

  /// Whether the work now running on this thread found no place.
  static bool turnedAway();

 private:
  bool placed(const std::function<void()>& work);
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
