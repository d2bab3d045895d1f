#include "ui/win32/tooltips.h"

#include <commctrl.h>

#include "support/module_win.h"
#include "ui/win32/module.h"

namespace tlpacscfg::win32 {

void Tooltips::attach(HWND window) {
  constexpr int kLineTwips = 6000;
  constexpr int kShownMilliseconds = 20000;
  window_ = window;
  tooltip_.reset(CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr,
                                 WS_POPUP | TTS_ALWAYSTIP | TTS_NOPREFIX, CW_USEDEFAULT,
                                 CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, nullptr, nullptr,
                                 moduleInstance(), nullptr));
  SendMessageW(tooltip_.get(), TTM_SETMAXTIPWIDTH, 0, pixelsFromTwips(kLineTwips));
  SendMessageW(tooltip_.get(), TTM_SETDELAYTIME, TTDT_AUTOPOP, kShownMilliseconds);
  // While the controls still exist: afterwards a tooltip cannot release them.
  end_.attach(window, [this](UINT message, WPARAM, LPARAM) {
    if (message == WM_DESTROY) tooltip_.reset();
    return std::optional<LRESULT>();
  });
}

void Tooltips::set(HWND control, const std::wstring& text) {
  std::wstring copy = text;
  TTTOOLINFOW tool{};
  tool.cbSize = TTTOOLINFOW_V1_SIZE;
  tool.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
  tool.hwnd = window_;
  tool.uId = reinterpret_cast<UINT_PTR>(control);
  tool.lpszText = copy.data();
  SendMessageW(tooltip_.get(), TTM_DELTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
  SendMessageW(tooltip_.get(), TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
}

}  // namespace tlpacscfg::win32
