#include "support/system.h"

#include "support/runtime_error.h"
#include "support/scope_exit.h"
#include "support/text.h"

namespace tlpacscfg::system {

Answer MessageBoxes::operator()(const Message& message) const {
  ++open_;
  const ScopeExit closed([this] { --open_; });
  // A copy: the function may be replaced while the box is open.
  const Box box = box_;
  return box(message);
}

void reportRunTimeError(const RunTimeError& error) {
  showMessage({.text = L"Run-time error '" + decimal(error.number()) + L"':" + kLineBreak +
                       error.description()});
}

}  // namespace tlpacscfg::system
