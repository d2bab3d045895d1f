#include "ui/win32/combo_box.h"

#include <algorithm>

#include "support/runtime_error.h"
#include "ui/win32/gdi.h"

namespace tlpacscfg::win32 {

void ComboBox::add(const std::wstring& text, std::int16_t code) const {
  const LRESULT position =
      SendMessageW(combo_, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text.c_str()));
  SendMessageW(combo_, CB_SETITEMDATA, static_cast<WPARAM>(position), code);
}

std::int16_t ComboBox::selectedCode() const {
  if (position() < 0) raise(ErrorNumber::InvalidPropertyArrayIndex);
  return codeAt(position());
}

bool ComboBox::selectCode(std::int16_t code) const {
  for (int i = 0; i < count(); ++i) {
    if (codeAt(i) == code) {
      selectPosition(i);
      return true;
    }
  }
  return false;
}

std::wstring ComboBox::textAt(int position) const {
  const auto index = static_cast<WPARAM>(position);
  const LRESULT length = SendMessageW(combo_, CB_GETLBTEXTLEN, index, 0);
  if (length == CB_ERR) return {};
  std::wstring text(static_cast<std::size_t>(length), L'\0');
  SendMessageW(combo_, CB_GETLBTEXT, index, reinterpret_cast<LPARAM>(text.data()));
  return text;
}

void ComboBox::fitDroppedWidth() const {
  const auto font = reinterpret_cast<HGDIOBJ>(SendMessageW(combo_, WM_GETFONT, 0, 0));
  LONG widest = 0;
  for (int i = 0; i < count(); ++i) widest = std::max(widest, textSize(font, textAt(i)).cx);
  const int margins = GetSystemMetrics(SM_CXVSCROLL) + 4 * GetSystemMetrics(SM_CXEDGE) + 4;
  SendMessageW(combo_, CB_SETDROPPEDWIDTH,
               static_cast<WPARAM>(widest) + static_cast<WPARAM>(margins), 0);
}

}  // namespace tlpacscfg::win32
