#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "host/host_object.h"
#include "ui/win32/anchors.h"
#include "ui/win32/combo_box.h"
#include "ui/win32/form.h"
#include "ui/win32/list_view.h"
#include "ui/win32/tooltips.h"
#include "ui/workstation_list/editor/workstation_list_editor.h"

namespace tlpacscfg {

/// The workstation list: every workstation with its configuration. Opens both editors; writes the
/// assignments when it is closed.
class frmPACSList : public win32::Form {
 public:
  static constexpr std::wstring_view kName = L"frmPACSList";

  struct Callbacks {
    std::function<void(std::int16_t configID)> editConfiguration;
    std::function<void(const std::wstring& workstation, std::int16_t configID)> editWorkstation;
    /// False when an editor stays open.
    std::function<bool()> closeEditors;
    /// False when the user continues editing a configuration.
    std::function<bool()> mayLeaveSettings;
  };

  frmPACSList(std::shared_ptr<clsConfig> host, Callbacks callbacks);
  ~frmPACSList() override;

  /// Loads the window with its first filter entry, topmost and in front.
  void Show();

  /// Brings the window, loaded already, to the front.
  void BringToFront() const;

  /// Like the close box: saves, asks if that fails, and may stay open.
  void askToClose() { onClose(); }

  /// From the start of the save to the answer of its last question.
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
  Callbacks callbacks_;

  win32::ListView list_;
  win32::ComboBox filter_;
  win32::Tooltips tooltips_;
  win32::Anchors anchors_;
  SIZE minSize_{};

  bool closing_ = false;
};

}  // namespace tlpacscfg
