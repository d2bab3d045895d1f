#pragma once

#include <windows.h>

namespace tlpacscfg::win32 {

/// While this object exists, windows created by this thread get the themed common controls of the
/// module's manifest, not those of the host.
class ThemeScope {
 public:
  ThemeScope();
  ~ThemeScope();
  ThemeScope(const ThemeScope&) = delete;
  ThemeScope& operator=(const ThemeScope&) = delete;

 private:
  ULONG_PTR cookie_ = 0;
  bool active_ = false;
};

/// Pixels of a length in twips (1/1440 inch) on the screen.
int pixelsFromTwips(int twips);

}  // namespace tlpacscfg::win32
