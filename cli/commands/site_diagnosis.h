#pragma once

#include <string>
#include <vector>

#include "cli/connection/connection_options.h"

namespace tlpacscfg::cli {

enum class Health { Ok, Warning, Error };

struct Symptom {
  Health health = Health::Ok;
  std::string subject;
  std::string finding;
  std::string advice;  ///< Empty when there is nothing to do.
};

/// Whether the component can work with the site: how it is reached, what its tables are like, and
/// what surrounds it. Only reads. The site is open.
std::vector<Symptom> diagnose(const ConnectionOptions& options);

}  // namespace tlpacscfg::cli
