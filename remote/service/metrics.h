#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <map>
#include <mutex>
#include <string>

#include "service/connection.h"

namespace tlpacscfg::service {

/// What the service has done since its start. Thread-safe.
class Metrics {
 public:
  /// A request that got a response; the time is from its acceptance on.
  void answered(const std::string& operation, int status, Clock::duration time);

  /// A connection that got none, or another reason to look after clients.
  void refused(const std::string& reason);

  struct Load {
    std::size_t workers = 0;
    std::size_t working = 0;
    std::size_t places = 0;
    std::size_t waiting = 0;
  };
  void setLoad(const Load& load);

  /// A JSON object.
  std::string text() const;

 private:
  using Milliseconds = std::chrono::milliseconds::rep;

  /// The times of the last requests.
  struct Window {
    std::array<Milliseconds, 256> times{};
    std::size_t count = 0;  ///< Of all times, also of those that have been overwritten.
  };

  const Clock::time_point start_ = Clock::now();
  mutable std::mutex mutex_;
  std::map<std::string, std::map<std::string, int>> requests_;
  std::map<std::string, Window> windows_;
  std::map<std::string, int> refusals_;
  Load load_;
};

}  // namespace tlpacscfg::service
