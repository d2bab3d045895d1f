#pragma once

#include <memory>

#include "support/runtime_error.h"

namespace tlpacscfg {

/// The object itself; throws ObjectNotSet for Nothing.
template <class Core>
const std::shared_ptr<Core>& required(const std::shared_ptr<Core>& core) {
  if (!core) raise(ErrorNumber::ObjectNotSet);
  return core;
}

}  // namespace tlpacscfg
