#include "ui/win32/tick_combo_box.h"

#include <uxtheme.h>
#include <vsstyle.h>

#include <utility>

#include "support/handle_win.h"
#include "ui/win32/combo_box.h"
#include "ui/win32/tick_list_accessible.h"

namespace tlpacscfg::win32 {
namespace {

using ThemeHandle = UniqueHandle<HTHEME, &CloseThemeData>;

/// Draws the box at the left of the rectangle and returns its right edge.
LONG drawCheckBox(HDC dc, const RECT& place, bool ticked) {
  // A theme opened for the combo box would replace the combo box's own.
  const ThemeHandle theme(OpenThemeData(nullptr, L"BUTTON"));
  const int state = ticked ? CBS_CHECKEDNORMAL : CBS_UNCHECKEDNORMAL;
  const LONG height = place.bottom - place.top;
  SIZE size{height - 2, height - 2};
  if (theme) GetThemePartSize(theme.get(), dc, BP_CHECKBOX, state, nullptr, TS_DRAW, &size);
  RECT box{};
  box.left = place.left + 2;
  box.top = place.top + (height - size.cy) / 2;
  box.right = box.left + size.cx;
  box.bottom = box.top + size.cy;
  if (theme) {
    DrawThemeBackground(theme.get(), dc, BP_CHECKBOX, state, &box, nullptr);
  } else {
    const UINT checked = ticked ? DFCS_CHECKED : 0U;
    DrawFrameControl(dc, &box, DFC_BUTTON, DFCS_BUTTONCHECK | DFCS_FLAT | checked);
  }
  return box.right;
}

}  // namespace

void TickComboBox::attach(HWND combo, HWND likeCombo, std::wstring name,
                          const std::vector<std::wstring>& entries, std::function<void()> changed) {
  combo_ = combo;
  name_ = std::move(name);
  changed_ = std::move(changed);
  for (const WPARAM part : {WPARAM{0}, static_cast<WPARAM>(-1)}) {
    SendMessageW(combo_, CB_SETITEMHEIGHT, part,
                 SendMessageW(likeCombo, CB_GETITEMHEIGHT, part, 0));
  }
  const ComboBox list(combo_);
  for (const std::wstring& entry : entries) list.add(entry, 0);
  list.selectPosition(0);

  COMBOBOXINFO info{};
  info.cbSize = sizeof(info);
  GetComboBoxInfo(combo_, &info);
  list_ = info.hwndList;
  comboMessages_.attach(combo_, [this](UINT message, WPARAM wParam, LPARAM lParam) {
    return onComboMessage(message, wParam, lParam);
  });
  listMessages_.attach(list_, [this](UINT message, WPARAM wParam, LPARAM lParam) {
    return onListMessage(message, wParam, lParam);
  });
}

bool TickComboBox::ticked(std::size_t entry) const {
  return ComboBox(combo_).codeAt(static_cast<int>(entry)) == 1;
}

void TickComboBox::setTicked(std::size_t entry, bool ticked) {
  SendMessageW(combo_, CB_SETITEMDATA, entry, ticked ? 1 : 0);
  redraw();
}

void TickComboBox::setDisplayText(const std::wstring& text) {
  text_ = text;
  redraw();
}

void TickComboBox::redraw() const {
  InvalidateRect(combo_, nullptr, TRUE);
  InvalidateRect(list_, nullptr, TRUE);
}

void TickComboBox::toggle(std::size_t entry) {
  setTicked(entry, !ticked(entry));
  announceTick(list_, entry);
  changed_();
}

bool TickComboBox::answerKey(WPARAM key) {
  const bool open = SendMessageW(combo_, CB_GETDROPPEDSTATE, 0, 0) != 0;
  if (open && key == VK_SPACE) {
    const int entry = ComboBox(combo_).position();
    if (entry >= 0) toggle(static_cast<std::size_t>(entry));
    return true;
  }
  if (!open && (key == VK_SPACE || key == VK_UP || key == VK_DOWN)) {
    SendMessageW(combo_, CB_SHOWDROPDOWN, TRUE, 0);
    return true;
  }
  return false;
}

std::optional<LRESULT> TickComboBox::onComboMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_KEYDOWN:
      if (answerKey(wParam)) return 0;
      return std::nullopt;
    case WM_CHAR:
      if (wParam == L' ') return 0;
      return std::nullopt;
    case WM_GETTEXTLENGTH:
      return static_cast<LRESULT>(text_.size());
    case WM_GETTEXT:
      return copyText(reinterpret_cast<wchar_t*>(lParam), wParam);
    default:
      return std::nullopt;
  }
}

LRESULT TickComboBox::copyText(wchar_t* buffer, std::size_t size) const {
  if (size == 0) return 0;
  const std::size_t copied = text_.copy(buffer, size - 1);
  buffer[copied] = L'\0';
  return static_cast<LRESULT>(copied);
}

std::optional<LRESULT> TickComboBox::onListMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_GETOBJECT:
      if (static_cast<DWORD>(lParam) != static_cast<DWORD>(OBJID_CLIENT)) return std::nullopt;
      return answerAsTickList(list_, name_, wParam);
    case kToggleEntry:
      toggle(wParam);
      return 0;
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK:
    case WM_LBUTTONUP:
      if (answerClick(message, lParam)) return 0;
      return std::nullopt;
    default:
      return std::nullopt;
  }
}

/// False for a click beside the list, which closes it.
bool TickComboBox::answerClick(UINT message, LPARAM lParam) {
  const POINT at{static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam))};
  RECT client{};
  GetClientRect(list_, &client);
  if (!PtInRect(&client, at)) return false;
  if (message == WM_LBUTTONUP) return true;
  const LRESULT found = SendMessageW(list_, LB_ITEMFROMPOINT, 0, lParam);
  if (HIWORD(found) == 0) {
    ComboBox(combo_).selectPosition(LOWORD(found));
    toggle(LOWORD(found));
  }
  return true;
}

bool TickComboBox::draw(const DRAWITEMSTRUCT& request) const {
  if (request.hwndItem != combo_) return false;
  const bool closed = (request.itemState & ODS_COMBOBOXEDIT) != 0;
  const bool disabled = (request.itemState & ODS_DISABLED) != 0;
  // The colour of a disabled text goes with an ordinary background only.
  const bool selected = !disabled && (request.itemState & ODS_SELECTED) != 0;
  FillRect(request.hDC, &request.rcItem,
           GetSysColorBrush(selected ? COLOR_HIGHLIGHT : COLOR_WINDOW));
  SetBkMode(request.hDC, TRANSPARENT);
  SetTextColor(request.hDC, GetSysColor(disabled   ? COLOR_GRAYTEXT
                                        : selected ? COLOR_HIGHLIGHTTEXT
                                                   : COLOR_WINDOWTEXT));
  constexpr int kGap = 4;
  RECT place = request.rcItem;
  std::wstring text = text_;
  if (closed) {
    place.left += 2;
  } else {
    if (request.itemID == static_cast<UINT>(-1)) return true;
    const auto entry = static_cast<std::size_t>(request.itemID);
    place.left = drawCheckBox(request.hDC, place, ticked(entry)) + kGap;
    text = ComboBox(combo_).textAt(static_cast<int>(entry));
  }
  DrawTextW(request.hDC, text.c_str(), static_cast<int>(text.size()), &place,
            DT_LEFT | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX | DT_END_ELLIPSIS);
  if ((request.itemState & ODS_FOCUS) != 0) DrawFocusRect(request.hDC, &request.rcItem);
  return true;
}

}  // namespace tlpacscfg::win32
