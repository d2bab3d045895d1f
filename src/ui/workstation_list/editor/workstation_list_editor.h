#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/host_object.h"
#include "support/system.h"
#include "ui/workstation_list/values/workstation_rows.h"
#include "workstation/assignments.h"

namespace tlpacscfg {

/// The logic of the workstation list, without the window: its state between events and its
/// commands. Before a command the window sets `filter` and `selectedRow`; afterwards it shows
/// `rows` and `selectedRow`.
class WorkstationListEditor {
 public:
  using Progress = std::function<void(std::size_t done, std::size_t total)>;
  /// Called when a save begins. The save ends when the result is destroyed.
  using StartProgress = std::function<Progress()>;

  WorkstationListEditor(std::shared_ptr<clsConfig> host, StartProgress startProgress);

  /// Fills and sorts the rows by name and selects the local computer's row, or the first. An error
  /// is shown and logged, nothing changes, and the result is false.
  bool FillPCList();
  /// Selects the row of the workstation last chosen for editing.
  void SetItemFocus();
  /// Sorts by the column, in the reverse order of the last time. The workstation stays selected.
  void headerClicked(std::size_t column);

  /// The configuration of the selected workstation; 0 for none.
  std::int16_t cmdEditConfig();

  struct Assignment {
    std::wstring workstation;
    std::int16_t configID;
  };
  /// The selected workstation and its configuration.
  std::optional<Assignment> cmdEditWorkstation();

  /// Writes the assignments. False when the administrator cancels because of conflicts.
  bool saveAssignments();
  /// The same, but shows an error; true also when the administrator then abandons the assignments.
  bool saveOrAbandon();
  /// Whether a row shows a configuration that its workstation no longer has.
  bool isOutOfDate() const;
  /// Shows the assignments of other administrators too; the selected workstation stays the same.
  bool refill();

  /// Called when the window is destroyed.
  void unload() { host_->ConfigLoaded = false; }

  WorkstationRows rows;
  WorkstationFilter filter = WorkstationFilter::Assigned;
  std::optional<std::size_t> selectedRow;

 private:
  std::int16_t configIDOf(std::size_t row) const;
  std::wstring selectedName() const;
  std::vector<AssignmentConflict> saveShowingProgress(
      const colWorkstation& workstations, const std::vector<AssignmentConflict>& overruled);
  system::Answer askWhoseAssignments(const std::vector<AssignmentConflict>& conflicts) const;

  std::shared_ptr<clsConfig> host_;
  StartProgress startProgress_;
  std::wstring chosenWorkstation_;
};

}  // namespace tlpacscfg
