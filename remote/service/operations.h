#pragma once

#include <string>

#include "service/job_process.h"
#include "service/metrics.h"
#include "service/options.h"
#include "service/request.h"

namespace tlpacscfg::service {

struct Context {
  const ServiceOptions& options;
  JobProcesses& jobs;
  const Metrics& metrics;
  Rights rights;
};

/// One operation of the interface: its path, whether it needs the right to write, and the function
/// that returns the JSON response. The function throws Refusal or std::bad_alloc.
struct Operation {
  const char* path;
  bool writes;
  std::string (*answer)(const Context& context, const Request& request);
};

/// Null for an unknown path.
const Operation* findOperation(const std::string& path);

/// {"error": reason}
std::string errorText(const std::string& reason);

}  // namespace tlpacscfg::service
