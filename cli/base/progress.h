#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>

namespace tlpacscfg::cli {

/// What is shown of something that has taken that long: "Checking [#####               ] 25 %", or
/// the seconds when the number of steps is not known (0). Empty during the first second.
std::string progressLine(std::string_view what, std::size_t done, std::size_t steps,
                         std::chrono::milliseconds taken);

/// Shows on the terminal what the program is doing, from the second second until the end, and then
/// leaves no trace of it. The shown line is drawn by a thread of its own: a driver may not answer
/// for long. There is one at a time.
class Progress {
 public:
  /// Nothing is shown before this is called, for programs and files that read standard error.
  static void allow();

  /// The shown line is gone, and none is drawn while the lock is held.
  static std::unique_lock<std::mutex> hidden();

  explicit Progress(std::string what, std::size_t steps = 0);
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  void step() { ++done_; }

 private:
  void draw();

  const std::string what_;
  const std::size_t steps_;
  const std::chrono::steady_clock::time_point began_ = std::chrono::steady_clock::now();
  std::atomic<std::size_t> done_ = 0;
  bool ended_ = false;
  std::condition_variable ending_;
  std::thread drawing_;
};

}  // namespace tlpacscfg::cli
