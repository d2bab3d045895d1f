#pragma once

#include "harness/redirected_import.h"

namespace tlpacscfg::test {

/// Counts the hooks that a module sets and does not remove during the object's lifetime.
class HookCount {
 public:
  explicit HookCount(HMODULE module);

  static int now();
  /// The number of hooks set, whether removed or not.
  static int ever();

 private:
  RedirectedImport setting_, removal_;
};

}  // namespace tlpacscfg::test
