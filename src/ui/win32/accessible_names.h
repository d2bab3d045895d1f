#pragma once

#include <windows.h>

#include <oleacc.h>

#include <vector>

#include "automation/com_ptr.h"
#include "ui/win32/subclass.h"

/// Names for assistive technology, for controls that neither their own text nor the label before
/// them tells from others.
namespace tlpacscfg::win32 {

/// A field or list takes its name from the static text before it in the order of controls, even
/// from one that nobody sees.
void insertHiddenLabel(HWND control, const wchar_t* name);

/// Names that replace the controls' own texts, as far as the system offers that.
class AccessibleNames {
 public:
  /// The names end with the window, which holds the controls.
  void attach(HWND window);

  void set(HWND control, const wchar_t* name);
  /// The frame around a group of controls.
  void setGroup(HWND frame, const wchar_t* name);

 private:
  void clear();

  ComPtr<IAccPropServices> services_;
  std::vector<HWND> named_;
  Subclass end_;
};

}  // namespace tlpacscfg::win32
