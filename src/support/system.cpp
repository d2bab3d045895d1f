#include "support/system.h"

#include "support/scope_exit.h"

namespace tlpacscfg::system {

Answer MessageBoxes::operator()(const Message& message) const {
  ++open_;
  const ScopeExit closed([this] { --open_; });
  // It may be replaced while it waits.
  const Box box = box_;
  return box(message);
}

}  // namespace tlpacscfg::system
