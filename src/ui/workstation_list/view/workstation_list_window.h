#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "host/config.h"
#include "ui/win32/anchors.h"
#include "ui/win32/combo_box.h"
#include "ui/win32/form.h"
#include "ui/win32/list_view.h"
#include "ui/win32/tooltips.h"
#include "ui/workstation_list/editor/workstation_list_editor.h"

namespace tlpacscfg {

/// The workstation list: every workstation with its configuration, and the way to both editors.
/// Closing it writes the assignments.
class frmPACSList : public win32::Form {
 public:
  static constexpr std::wstring_view kName = L"frmPACSList";

  struct Surroundings {
    std::function<void(std::int16_t configID)> editConfiguration;
    std::function<void(const std::wstring& workstation, std::int16_t configID)> editWorkstation;
    /// False when an editor stays open.
    std::function<bool()> closeEditors;
    /// False when the user goes on editing a configuration.
    std::function<bool()> mayLeaveSettings;
  };

  frmPACSList(std::shared_ptr<clsConfig> host, Surroundings surroundings);
  ~frmPACSList() override;

  /// Loads the window with its first filter entry, topmost and in front.
  void Show();

  /// Brings the window, loaded already, to the front.
  void BringToFront() const;

  /// As the close box does it: saves, asks where that fails, and may stay open.
  void askToClose() { onClose(); }

  /// From the save to the last question that it brings up.
  bool isClosing() const { return closing_; }

  /// Refills and sorts the list by name, and selects the local computer's row. An error is shown;
  /// the list stays as it was.
  void FillPCList();

  /// Selects the row of the workstation last chosen for editing.
  void SetItemFocus();

 private:
  void onInit() override;
  void onCommand(int controlId, int code) override;
  LRESULT onNotify(NMHDR& header) override;
  void onSize(int clientWidth, int clientHeight) override;
  void onMinMaxInfo(MINMAXINFO& info) override;
  void onClose() override;
  std::optional<INT_PTR> onMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

  void addColumns();
  void fitToDesignedRows();
  void present();
  void presentSelection();
  void sortByHeader(int column);
  void editConfiguration();
  void editWorkstation();
  void readSelection() { editor_.selectedRow = list_.selectedRow(); }
  void closeAfter(bool (WorkstationListEditor::*save)());
  bool mayEnd();
  WorkstationListEditor::Progress startProgress() const;

  WorkstationListEditor editor_;
  Surroundings surroundings_;

  win32::ListView list_;
  win32::ComboBox filter_;
  win32::Tooltips tooltips_;
  win32::Anchors anchors_;
  SIZE minSize_{};

  bool closing_ = false;
};

}  // namespace tlpacscfg
