#include "ui/win32/accessible_names.h"

#include <commctrl.h>

#include "support/module_win.h"

namespace tlpacscfg::win32 {

void insertHiddenLabel(HWND control, const wchar_t* name) {
  const HWND before = GetWindow(control, GW_HWNDPREV);
  const HWND label = CreateWindowExW(0, WC_STATICW, name, WS_CHILD | SS_NOPREFIX, 0, 0, 0, 0,
                                     GetParent(control), nullptr, moduleInstance(), nullptr);
  SetWindowPos(label, before ? before : HWND_TOP, 0, 0, 0, 0,
               SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
}

void AccessibleNames::attach(HWND window) {
  CoCreateInstance(CLSID_AccPropServices, nullptr, CLSCTX_INPROC_SERVER, IID_IAccPropServices,
                   reinterpret_cast<void**>(services_.out()));
  end_.attach(window, [this](UINT message, WPARAM, LPARAM) {
    if (message == WM_DESTROY) clear();
    return std::optional<LRESULT>();
  });
}

void AccessibleNames::set(HWND control, const wchar_t* name) {
  if (!services_) return;
  named_.push_back(control);
  services_->SetHwndPropStr(control, static_cast<DWORD>(OBJID_CLIENT), CHILDID_SELF,
                            PROPID_ACC_NAME, name);
}

void AccessibleNames::setGroup(HWND frame, const wchar_t* name) {
  set(frame, name);
  if (!services_) return;
  VARIANT role{};
  role.vt = VT_I4;
  role.lVal = ROLE_SYSTEM_GROUPING;
  services_->SetHwndProp(frame, static_cast<DWORD>(OBJID_CLIENT), CHILDID_SELF, PROPID_ACC_ROLE,
                         role);
}

/// While the controls still exist: the system may give their handles to other windows.
void AccessibleNames::clear() {
  const MSAAPROPID properties[] = {PROPID_ACC_NAME, PROPID_ACC_ROLE};
  for (const HWND control : named_) {
    services_->ClearHwndProps(control, static_cast<DWORD>(OBJID_CLIENT), CHILDID_SELF, properties,
                              static_cast<int>(std::size(properties)));
  }
  named_.clear();
  services_ = nullptr;
}

}  // namespace tlpacscfg::win32
