#include "support/system.h"

#include "support/scope_exit.h"

namespace tlpacscfg::system {

Answer MessageBoxes::operator()(const Message& message) const {
  ++open_;
  const ScopeExit closed([this] { --open_; });
  // A copy: the function may be replaced while the box is open.
  const Box box = box_;
  return box(message);
}

}  // namespace tlpacscfg::system
