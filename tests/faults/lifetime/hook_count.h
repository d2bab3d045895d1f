#pragma once

#include <windows.h>

namespace tlpacscfg::test {

/// Counts the hooks that a module sets and does not remove during the object's lifetime.
class HookCount {
 public:
  explicit HookCount(HMODULE module);
  ~HookCount();
  HookCount(const HookCount&) = delete;
  HookCount& operator=(const HookCount&) = delete;

  static int now();
  /// The number of hooks set, whether removed or not.
  static int ever();

 private:
  HMODULE module_;
};

}  // namespace tlpacscfg::test
