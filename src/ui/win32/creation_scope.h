#pragma once

#include <windows.h>

#include "ui/win32/module.h"

namespace tlpacscfg::win32 {

/// While this object exists, windows created by this thread are as their templates say, whatever
/// the host has chosen for its own:
/// - The common controls are themed.
/// - The size of everything is that of the system's resolution. In a host that draws for each
///   monitor itself, Windows enlarges them on another monitor; other hosts keep their way.
/// - English is read from left to right: nothing is mirrored.
class CreationScope {
 public:
  CreationScope();
  ~CreationScope();
  CreationScope(const CreationScope&) = delete;
  CreationScope& operator=(const CreationScope&) = delete;

 private:
  ThemeScope theme_;
  DPI_AWARENESS_CONTEXT hostAwareness_ = nullptr;
  DWORD hostLayout_ = 0;
};

}  // namespace tlpacscfg::win32
