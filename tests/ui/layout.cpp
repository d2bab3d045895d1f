#include "ui/layout.h"

#include <commctrl.h>

#include "ui/window_driver.h"

namespace tlpacscfg::test {
namespace {

using Problems = std::vector<std::wstring>;

std::wstring classOf(HWND window) {
  std::wstring name(100, L'\0');
  name.resize(static_cast<std::size_t>(GetClassNameW(window, name.data(), 100)));
  return name;
}

LONG styleOf(HWND window) { return GetWindowLongW(window, GWL_STYLE); }

bool isFrame(HWND control) {
  return classOf(control) == WC_STATICW && (styleOf(control) & SS_TYPEMASK) == SS_ETCHEDFRAME;
}

/// The pages lie on the tab control.
bool mayLieOnOthers(HWND control) { return isFrame(control) || classOf(control) == L"#32770"; }

/// The size of a text in the control's font when wrapped to the width.
SIZE textSize(HWND control, const std::wstring& text, LONG width, UINT flags) {
  const HDC screen = GetDC(nullptr);
  const auto font = reinterpret_cast<HGDIOBJ>(SendMessageW(control, WM_GETFONT, 0, 0));
  const HGDIOBJ previous = SelectObject(screen, font);
  RECT place{0, 0, width, 0};
  DrawTextW(screen, text.c_str(), -1, &place, DT_CALCRECT | flags);
  SelectObject(screen, previous);
  ReleaseDC(nullptr, screen);
  return {place.right, place.bottom};
}

bool textFits(HWND control, SIZE room, UINT flags) {
  const SIZE needed = textSize(control, textOf(control), room.cx, flags);
  return needed.cx <= room.cx && needed.cy <= room.cy;
}

SIZE roomIn(HWND control) {
  RECT client{};
  GetClientRect(control, &client);
  return {client.right, client.bottom};
}

bool buttonFits(HWND button) {
  SIZE room = roomIn(button);
  const LONG kind = styleOf(button) & BS_TYPEMASK;
  const bool hasBox = kind == BS_AUTOCHECKBOX || kind == BS_AUTORADIOBUTTON;
  room.cx -= hasBox ? GetSystemMetrics(SM_CXMENUCHECK) + 6 : 2 * GetSystemMetrics(SM_CXEDGE);
  const bool wraps = (styleOf(button) & BS_MULTILINE) != 0;
  return textFits(button, room, wraps ? DT_WORDBREAK : DT_SINGLELINE);
}

bool textFitsWhole(HWND text) {
  const bool noMark = (styleOf(text) & SS_NOPREFIX) != 0;
  return textFits(text, roomIn(text), DT_WORDBREAK | (noMark ? DT_NOPREFIX : 0U));
}

bool fieldFits(HWND field) {
  return textSize(field, L"Ag", 10000, DT_SINGLELINE).cy <= roomIn(field).cy;
}

bool entriesFit(HWND combo) {
  const LONG room = roomIn(combo).cx - GetSystemMetrics(SM_CXVSCROLL) - 8;
  for (const std::wstring& entry : entriesOf(combo)) {
    if (textSize(combo, entry, 10000, DT_SINGLELINE | DT_NOPREFIX).cx > room) return false;
  }
  return fieldFits(combo);
}

bool tabsFit(HWND tabs) {
  const auto count = static_cast<WPARAM>(SendMessageW(tabs, TCM_GETITEMCOUNT, 0, 0));
  RECT last{};
  SendMessageW(tabs, TCM_GETITEMRECT, count - 1, reinterpret_cast<LPARAM>(&last));
  return SendMessageW(tabs, TCM_GETROWCOUNT, 0, 0) == 1 && last.right <= roomIn(tabs).cx;
}

bool headersFit(HWND list) {
  for (int column = 0; column < list_view::columnCount(list); ++column) {
    const int width = list_view::columnWidth(list, column);
    // A column of the width 0 is hidden.
    const SIZE text = textSize(list, list_view::header(list, column), 10000, DT_SINGLELINE);
    if (width > 0 && text.cx > width) return false;
  }
  return true;
}

bool contentsFit(HWND control) {
  const std::wstring name = classOf(control);
  if (name == WC_BUTTONW) return buttonFits(control);
  if (name == WC_STATICW) return isFrame(control) || textFitsWhole(control);
  if (name == WC_EDITW) return fieldFits(control);
  if (name == WC_COMBOBOXW) return entriesFit(control);
  if (name == WC_TABCONTROLW) return tabsFit(control);
  if (name == WC_LISTVIEWW) return headersFit(control);
  return true;
}

std::wstring described(HWND control) {
  const RECT place = placeOf(control);
  return classOf(control) + L" " + std::to_wstring(GetDlgCtrlID(control)) + L" '" +
         textOf(control) + L"' of " + std::to_wstring(place.right - place.left) + L" x " +
         std::to_wstring(place.bottom - place.top);
}

std::vector<HWND> visibleControls(HWND window) {
  std::vector<HWND> controls;
  for (HWND control = GetWindow(window, GW_CHILD); control;
       control = GetWindow(control, GW_HWNDNEXT)) {
    if ((styleOf(control) & WS_VISIBLE) != 0) controls.push_back(control);
  }
  return controls;
}

Problems clippedAndOverlapping(const std::vector<HWND>& controls) {
  Problems problems;
  for (std::size_t i = 0; i < controls.size(); ++i) {
    if (!contentsFit(controls[i])) problems.push_back(L"does not fit: " + described(controls[i]));
    for (std::size_t j = 0; j < i; ++j) {
      const RECT one = placeOf(controls[i]);
      const RECT other = placeOf(controls[j]);
      RECT common{};
      if (mayLieOnOthers(controls[i]) || mayLieOnOthers(controls[j])) continue;
      if (!IntersectRect(&common, &one, &other)) continue;
      problems.push_back(L"overlap: " + described(controls[i]) + L" and " + described(controls[j]));
    }
  }
  return problems;
}

}  // namespace

RECT placeOf(HWND window) {
  RECT place{};
  GetWindowRect(window, &place);
  return place;
}

bool contains(const RECT& outer, const RECT& inner) {
  return inner.left >= outer.left && inner.top >= outer.top && inner.right <= outer.right &&
         inner.bottom <= outer.bottom;
}

Problems layoutProblemsOfScrolled(HWND window) {
  return clippedAndOverlapping(visibleControls(window));
}

Problems layoutProblems(HWND window) {
  Problems problems = layoutProblemsOfScrolled(window);
  RECT client{};
  GetClientRect(window, &client);
  MapWindowPoints(window, nullptr, reinterpret_cast<POINT*>(&client), 2);
  for (const HWND control : visibleControls(window)) {
    if (!contains(client, placeOf(control))) problems.push_back(L"outside: " + described(control));
  }
  return problems;
}

}  // namespace tlpacscfg::test
