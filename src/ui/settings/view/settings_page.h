#pragma once

#include <functional>
#include <vector>

#include "support/handle_win.h"
#include "ui/settings/values/settings_controls.h"
#include "ui/win32/accessible_names.h"
#include "ui/win32/dialog.h"
#include "ui/win32/tick_combo_box.h"

namespace tlpacscfg {

/// One page of the settings window. Its controls' notifications go to the window.
class SettingsPage : public win32::Dialog {
 public:
  using Commands = std::function<void(int controlId, int code)>;

  SettingsPage(Page page, Commands commands) : page_(page), commands_(std::move(commands)) {}

  void create(HWND window);
  Page page() const { return page_; }

  /// A line leads from each heading to the right, as long as the heading is shown.
  void redrawHeadings() const { InvalidateRect(window(), nullptr, TRUE); }

  /// The drop-down list with check boxes, on the page that has it.
  win32::TickComboBox tickList;

 private:
  struct HeadingLine {
    HWND heading;
    RECT place;
  };
  using Font = UniqueHandle<HGDIOBJ, &DeleteObject>;

  void onInit() override;
  void onCommand(int controlId, int code) override;
  std::optional<INT_PTR> onMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

  void makeHeading(HWND heading);
  void setAccessibleName(const ControlDesign& control, HWND item);
  void paint() const;

  Page page_;
  Commands commands_;
  Font bold_;
  win32::AccessibleNames names_;
  std::vector<HeadingLine> lines_;
};

}  // namespace tlpacscfg
