#pragma once

#include <map>
#include <string>
#include <utility>

#include "service/connection.h"

namespace tlpacscfg::service {

/// Counts the connections that end without a worker, and writes the counts into the journal once a
/// second: a flood must not fill it.
class DroppedConnections {
 public:
  void add(const std::string& network, const char* reason, Clock::time_point now);

  /// When write() is due; Clock::time_point::max() while there is nothing to write.
  Clock::time_point due() const { return due_; }
  void write();

 private:
  std::map<std::pair<std::string, std::string>, int> counts_;
  Clock::time_point due_ = Clock::time_point::max();
};

}  // namespace tlpacscfg::service
