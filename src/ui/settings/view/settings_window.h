#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "host/config.h"
#include "ui/settings/editor/settings_editor.h"
#include "ui/settings/view/settings_page.h"
#include "ui/win32/form.h"
#include "ui/win32/list_view.h"
#include "ui/win32/tooltips.h"

namespace tlpacscfg {

/// The editor of integration configurations: puts the state of a SettingsEditor on the screen and
/// hands it what the user does.
class frmPACSSettings : public win32::Form {
 public:
  struct Surroundings {
    std::function<HWND()> owner;
    std::function<void()> refreshWorkstationList;
    std::function<void()> refreshAssignmentDialog;
  };

  /// The owner's window is asked for when this one opens and when it has closed; null when there is
  /// none.
  frmPACSSettings(std::shared_ptr<clsConfig> host, Surroundings surroundings);
  ~frmPACSSettings() override;

  /// Opens the window on the configuration, 0 standing for the default configuration. Open
  /// already, it asks about unsaved edits first.
  void ShowPACSSettings(std::int16_t configID);

  /// True from being shown until it has closed.
  bool isOpen() const { return isCreated(); }

  /// The same as the Exit button: it may ask, and it may stay.
  void askToClose();

  /// Asks about unsaved edits; false when the user stays. The window stays open.
  bool mayLeave();

  bool onKey(const MSG& message) override;

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
  void runSettled(const std::function<void()>& command);
  void settleRules();
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
  bool leadsItsGroup(const ControlDesign& option) const;
  void updateTabStops() const;

  std::function<HWND()> owner_;
  SettingsEditor editor_;

  std::vector<std::unique_ptr<SettingsPage>> pages_;
  std::size_t page_ = 0;
  win32::ListView configurations_;
  win32::Tooltips tooltips_;

  /// What the controls show, to change only those that differ.
  SettingsForm shown_;
  std::optional<std::size_t> chosenRow_;
  bool timerRuns_ = false;
  /// While a command runs, also while it waits for an answer, controls report nothing.
  bool busy_ = false;
};

}  // namespace tlpacscfg
