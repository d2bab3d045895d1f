#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "host/host_object.h"
#include "ui/settings/editor/settings_editor.h"
#include "ui/settings/view/settings_page.h"
#include "ui/win32/form.h"
#include "ui/win32/list_view.h"
#include "ui/win32/scroll_area.h"
#include "ui/win32/tooltips.h"

namespace tlpacscfg {

/// The editor of integration configurations: shows the state of a SettingsEditor and passes the
/// user's actions to it.
class frmPACSSettings : public win32::Form {
 public:
  struct Callbacks {
    std::function<HWND()> owner;
    std::function<void()> refreshWorkstationList;
    std::function<void()> refreshAssignmentDialog;
  };

  /// `owner` is called when the window opens and after it has closed; it may return null.
  frmPACSSettings(std::shared_ptr<clsConfig> host, Callbacks callbacks);
  ~frmPACSSettings() override;

  /// Opens the window on the configuration; 0 is the default configuration. If it is already open,
  /// asks about unsaved edits first.
  void ShowPACSSettings(std::int16_t configID);

  /// True from being shown until it has closed.
  bool isOpen() const { return isCreated(); }

  /// The same as the Exit button: it may ask, and it may stay.
  void askToClose();

  /// Asks about unsaved edits; false when the user cancels. The window stays open.
  bool mayLeave();

  bool onKey(const MSG& message) override;
  void onKeyHandled() override { scrolling_.reveal(GetFocus()); }

 private:
  void onInit() override;
  void onCommand(int controlId, int code) override;
  LRESULT onNotify(NMHDR& header) override;
  void onTimer(UINT_PTR timerId) override;
  void onClose() override { askToClose(); }
  void onDestroyed() override;
  std::optional<INT_PTR> onMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

  void createPages();
  void createList();
  void fillLists();
  void setTooltips();
  HWND control(Control control) const;
  win32::TickComboBox& accessionFields() const;

  void runCommand(const std::function<void()>& command);
  void runWithRulesApplied(const std::function<void()>& command);
  void applyPendingRules();
  void chooseRow(int row);
  void takeChosenRow();

  void readControls();
  void present();
  void presentInFront();
  void presentRows();
  void presentForm();
  void presentControl(const ControlDesign& each, const ControlContent& wanted,
                      ControlContent& shown);
  void presentFocus();
  void moveFocus(HWND target) const;

  void startRulesTimer();
  void stopRulesTimer();
  void showPage(std::size_t index);
  void turnPage(int step);
  bool takesTabStopInGroup(const ControlDesign& option) const;
  void updateTabStops() const;

  std::function<HWND()> owner_;
  SettingsEditor editor_;

  std::vector<std::unique_ptr<SettingsPage>> pages_;
  std::size_t page_ = 0;
  win32::ListView configurations_;
  win32::Tooltips tooltips_;
  win32::ScrollArea scrolling_;

  /// The state shown by the controls, so that only differences are applied.
  SettingsForm shown_;
  std::optional<std::size_t> chosenRow_;
  bool timerRuns_ = false;
  /// While a command runs, notifications of controls are ignored.
  bool busy_ = false;
};

}  // namespace tlpacscfg
