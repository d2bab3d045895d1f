#pragma once

#include <windows.h>

namespace tlpacscfg::win32 {

/// The module that holds the windows' resources: the DLL itself, whatever program loaded it.
HINSTANCE moduleInstance();

/// While it lives, windows created by this thread get the themed common controls that the module's
/// manifest asks for, not the host's choice.
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
