#include "service/dropped_connections.h"

#include <algorithm>

#include "service/journal.h"

namespace tlpacscfg::service {
namespace {

constexpr std::chrono::seconds kPeriod{1};
constexpr std::size_t kMaxCounts = 1024;

}  // namespace

void DroppedConnections::add(const std::string& network, const char* reason,
                             Clock::time_point now) {
  due_ = std::min(due_, now + kPeriod);
  ++counts_[{counts_.size() < kMaxCounts ? network : "others", reason}];
}

void DroppedConnections::write() {
  for (const auto& [key, count] : counts_) {
    writeJournal(
        "dropped",
        {{"address", key.first}, {"reason", key.second}, {"connections", std::to_string(count)}});
  }
  counts_.clear();
  due_ = Clock::time_point::max();
}

}  // namespace tlpacscfg::service
