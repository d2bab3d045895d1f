#pragma once

#include <string>

#include "service/options.h"
#include "service/request.h"

namespace tlpacscfg::service {

/// What an operation works with. `stopSignal` becomes readable when the service is to end.
struct Surroundings {
  const ServiceOptions& options;
  int stopSignal;
};

/// One thing that clients may ask for: its path below the root, and what answers it with a JSON
/// text. An answer throws Refusal or std::bad_alloc.
struct Operation {
  const char* path;
  std::string (*answer)(const Surroundings& surroundings, const Request& request);
};

/// Nothing for an unknown path.
const Operation* findOperation(const std::string& path);

/// {"error": reason}
std::string errorText(const std::string& reason);

}  // namespace tlpacscfg::service
