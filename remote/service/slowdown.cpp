#include "service/slowdown.h"

#include <algorithm>

namespace tlpacscfg::service {

void Slowdown::report(const std::string& network, TokenCheck token, Clock::time_point now) {
  if (token == TokenCheck::Right) failures_.erase(network);
  if (token != TokenCheck::Wrong) return;
  if (failures_.size() >= kMaxNetworks && !failures_.contains(network)) forgetTheOldest();
  Failures& failures = failures_[network];
  if (now - failures.last > kMemory) failures.count = 0;
  ++failures.count;
  failures.last = now;
}

void Slowdown::forgetTheOldest() {
  failures_.erase(
      std::min_element(failures_.begin(), failures_.end(),
                       [](const auto& a, const auto& b) { return a.second.last < b.second.last; }));
}

Clock::duration Slowdown::delay(const std::string& network, Clock::time_point now) const {
  const auto found = failures_.find(network);
  if (found == failures_.end() || now - found->second.last > kMemory) return {};
  if (found->second.count <= kFreeFailures) return {};
  Clock::duration delay = kFirstDelay;
  for (int i = kFreeFailures + 1; i < found->second.count && delay < kMaxDelay; ++i) delay *= 2;
  return std::min<Clock::duration>(delay, kMaxDelay);
}

}  // namespace tlpacscfg::service
