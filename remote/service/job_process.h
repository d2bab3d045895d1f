#pragma once

#include <optional>
#include <string>
#include <vector>

#include "service/options.h"
#include "service/places.h"

namespace tlpacscfg::service {

/// Does jobs, each in a process of its own, which is killed when it takes too long or the service
/// is to end: a driver that hangs, crashes or exhausts memory, or a lost disk, harms that process
/// only. As many run at a time as the memory for all processes allows.
class JobProcesses {
 public:
  /// `stopSignal` becomes readable when the service is to end.
  JobProcesses(const ServiceOptions& options, int stopSignal)
      : options_(options), stopSignal_(stopSignal), places_(options.jobsAtATime()) {}

  /// Returns the answer to a job (see job.h). Throws Refusal. Thread-safe.
  std::string run(const std::string& job);

 private:
  const ServiceOptions& options_;
  const int stopSignal_;
  Places places_;
};

/// When the first argument says that this process was started for a job: does it and returns the
/// exit code.
std::optional<int> serveJob(const std::vector<std::string>& arguments);

}  // namespace tlpacscfg::service
