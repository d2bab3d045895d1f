#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/config.h"
#include "support/system.h"
#include "ui/workstation_list/values/workstation_rows.h"
#include "ui/win32/anchors.h"
#include "ui/win32/combo_box.h"
#include "ui/win32/form.h"
#include "ui/win32/list_view.h"
#include "ui/win32/tooltips.h"
#include "workstation/assignments.h"

namespace tlpacscfg {

class frmPACSSettings;
class frmWorkstationSettings;

/// The workstation list: every workstation with its configuration, and the way to both editors.
/// Closing it writes the assignments.
class frmPACSList : public win32::Form {
 public:
  static constexpr std::wstring_view kName = L"frmPACSList";

  explicit frmPACSList(std::shared_ptr<clsConfig> config);
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
  /// the list keeps what was filled.
  void FillPCList();

  /// Selects the row of the workstation last chosen for editing.
  void SetItemFocus();

  /// "N/A" for Null, otherwise the value as text.
  static std::wstring ReplaceNull(const std::optional<std::wstring>& value);

  frmWorkstationSettings& assignmentDialog() { return *assignment_; }

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
  void SetWorkstationsList(WorkstationFilter filter);
  void SetCurrentWorkstation();
  void selectRowOf(const std::wstring& name);
  void sortByHeader(int column);
  void editConfiguration();
  void editWorkstation();
  void closeAfter(bool (frmPACSList::*save)());
  bool saveAssignments();
  std::vector<AssignmentConflict> saveShowingProgress(
      const colWorkstation& workstations, const std::vector<AssignmentConflict>& overruled);
  system::Answer askWhoseAssignments(const std::vector<AssignmentConflict>& conflicts) const;
  static bool closeWithoutSaving();
  bool saveOrGiveUp();
  bool isOutOfDate() const;
  void refillAsItWas();
  std::int16_t configIDOf(std::size_t row) const;
  bool mayEnd();
  void closeEditorsAndUnload();

  std::shared_ptr<clsConfig> config_;
  std::unique_ptr<frmPACSSettings> settings_;
  std::unique_ptr<frmWorkstationSettings> assignment_;

  WorkstationRows rows_;
  win32::ListView list_;
  win32::ComboBox filter_;
  win32::Tooltips tooltips_;
  win32::Anchors anchors_;
  SIZE smallest_{};

  std::wstring chosenWorkstation_;
  std::wstring localComputer_;
  bool closing_ = false;
};

}  // namespace tlpacscfg
