#pragma once

#include <string>

#include "service/options.h"
#include "service/request.h"

namespace tlpacscfg::service {

/// One thing that clients may ask for: its path below the root, and what answers it with a JSON
/// text. An answer throws Refusal, RunTimeError when the database refuses, or std::bad_alloc.
struct Operation {
  const char* path;
  std::string (*answer)(const ServiceOptions& options, const Request& request);
};

/// Nothing for an unknown path.
const Operation* findOperation(const std::string& path);

/// {"error": reason}
std::string errorText(const std::string& reason);

}  // namespace tlpacscfg::service
