#pragma once

#include <chrono>
#include <cstddef>
#include <map>
#include <string>

#include "service/connection.h"

namespace tlpacscfg::service {

/// How long the requests of a network wait because its tokens have been wrong. The first wrong ones
/// cost nothing, then each doubles the delay up to kMaxDelay. A right token, or kMemory without a
/// wrong one, ends it.
class Slowdown {
 public:
  static constexpr int kFreeFailures = 3;
  static constexpr std::chrono::milliseconds kFirstDelay{100};
  static constexpr std::chrono::milliseconds kMaxDelay{2000};
  static constexpr std::chrono::minutes kMemory{10};
  static constexpr std::size_t kMaxNetworks = 1024;

  void report(const std::string& network, TokenCheck token, Clock::time_point now);
  Clock::duration delay(const std::string& network, Clock::time_point now) const;

 private:
  struct Failures {
    int count = 0;
    Clock::time_point last;
  };

  void forgetTheOldest();

  std::map<std::string, Failures> failures_;
};

}  // namespace tlpacscfg::service
