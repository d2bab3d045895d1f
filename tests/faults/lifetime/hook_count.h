#pragma once

#include <windows.h>

namespace tlpacscfg::test {

/// Counts the hooks that a module has set and not removed, from now on.
class HookCount {
 public:
  explicit HookCount(HMODULE module);
  ~HookCount();
  HookCount(const HookCount&) = delete;
  HookCount& operator=(const HookCount&) = delete;

  static int now();
  /// How many were ever set.
  static int ever();

 private:
  HMODULE module_;
};

}  // namespace tlpacscfg::test
