#pragma once

#include <sys/types.h>

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <functional>
#include <mutex>
#include <vector>

namespace tlpacscfg::service {

/// Limits how many processes there are at a time. A killed process that does not end, because it
/// waits for a lost disk, keeps its place until it does.
class Places {
 public:
  enum class Outcome { Taken, Late, Stopped, Lost };

  explicit Places(std::size_t count) : count_(count), free_(count) {}

  /// Waits for a place until the deadline or until `stopped` is true. Lost: every place is kept by
  /// a killed process.
  Outcome take(std::chrono::steady_clock::time_point deadline,
               const std::function<bool()>& stopped);

  void giveBack();
  /// When the killed process has ended; it is a child of this one, and nobody else waits for it.
  void giveBackAfter(pid_t killed);

 private:
  void collectEnded();

  const std::size_t count_;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::size_t free_;
  std::vector<pid_t> killed_;
};

}  // namespace tlpacscfg::service
