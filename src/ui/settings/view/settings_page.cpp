#include "ui/settings/view/settings_page.h"

#include <uxtheme.h>

#include "ui/resource.h"
#include "ui/settings/view/control_ids.h"
#include "ui/win32/gdi.h"

namespace tlpacscfg {
namespace {

constexpr int kTemplates[] = {0,
                              IDD_frmPACSSettings_General,
                              IDD_frmPACSSettings_Request,
                              IDD_frmPACSSettings_Response,
                              IDD_frmPACSSettings_ContextChanges,
                              IDD_frmPACSSettings_CloseDictation};

class Painting {
 public:
  explicit Painting(HWND window) : window_(window), dc_(BeginPaint(window, &paint_)) {}
  ~Painting() { EndPaint(window_, &paint_); }
  Painting(const Painting&) = delete;
  Painting& operator=(const Painting&) = delete;

  HDC dc() const { return dc_; }

 private:
  HWND window_;
  PAINTSTRUCT paint_{};
  HDC dc_;
};

HGDIOBJ boldVariant(HWND window) {
  LOGFONTW description{};
  GetObjectW(reinterpret_cast<HGDIOBJ>(SendMessageW(window, WM_GETFONT, 0, 0)), sizeof(description),
             &description);
  description.lfWeight = FW_BOLD;
  return CreateFontIndirectW(&description);
}

}  // namespace

void SettingsPage::create(HWND window) {
  Dialog::create(kTemplates[static_cast<std::size_t>(page_)], window);
}

void SettingsPage::onInit() {
  EnableThemeDialogTexture(window(), ETDT_ENABLETAB);
  bold_ = Font(boldVariant(window()));
  names_.attach(window());
  for (const ControlDesign& control : controls()) {
    if (control.page != page_) continue;
    const HWND item = this->item(idOf(control.control));
    SetWindowTextW(item, control.text);
    if (control.kind == Kind::Heading) makeHeading(item);
    if (*control.accessibleName != L'\0') setAccessibleName(control, item);
  }
}

void SettingsPage::setAccessibleName(const ControlDesign& control, HWND item) {
  if (control.kind == Kind::Panel) {
    names_.setGroup(item, control.accessibleName);
  } else if (control.kind == Kind::Option) {
    names_.set(item, control.accessibleName);
  } else {
    win32::insertHiddenLabel(item, control.accessibleName);
  }
}

/// Shrinks the heading to its text; the line fills the rest of the designed width.
void SettingsPage::makeHeading(HWND heading) {
  SendMessageW(heading, WM_SETFONT, reinterpret_cast<WPARAM>(bold_.get()), FALSE);
  RECT place{};
  GetWindowRect(heading, &place);
  MapWindowPoints(nullptr, window(), reinterpret_cast<POINT*>(&place), 2);
  const SIZE size = win32::textSize(bold_.get(), win32::windowText(heading));
  SetWindowPos(heading, nullptr, 0, 0, size.cx, place.bottom - place.top,
               SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
  const LONG gap = size.cy / 2;
  RECT line{place.left + size.cx + gap, place.top + size.cy / 2, place.right, 0};
  line.bottom = line.top + 2;
  if (line.right - line.left > gap) lines_.push_back({heading, line});
}

void SettingsPage::onCommand(int controlId, int code) { commands_(controlId, code); }

std::optional<INT_PTR> SettingsPage::onMessage(UINT message, WPARAM, LPARAM lParam) {
  if (message == WM_PAINT) {
    paint();
    return TRUE;
  }
  if (message == WM_DRAWITEM && tickList.draw(*reinterpret_cast<const DRAWITEMSTRUCT*>(lParam))) {
    return TRUE;
  }
  return std::nullopt;
}

void SettingsPage::paint() const {
  const Painting painting(window());
  for (const HeadingLine& line : lines_) {
    RECT place = line.place;
    if (IsWindowVisible(line.heading)) DrawEdge(painting.dc(), &place, EDGE_ETCHED, BF_TOP);
  }
}

}  // namespace tlpacscfg
