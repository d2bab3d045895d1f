#pragma once

#include <memory>

#include "service/options.h"
#include "service/tls.h"
#include "service/token.h"

namespace tlpacscfg::service {

/// What the service shows to clients, and what they must show. Read as a whole and never changed: a
/// connection keeps those that it began with.
struct Credentials {
  /// Throws OptionError.
  explicit Credentials(const ServiceOptions& options);

  TlsContext tls;  ///< Null for plain HTTP.
  Tokens tokens;
};

}  // namespace tlpacscfg::service
