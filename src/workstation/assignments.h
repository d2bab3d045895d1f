#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <unordered_map>
#include <vector>

#include "data/site_command.h"
#include "workstation/workstation.h"

/// How the list window stores assignments: it reads what is stored before it writes, and reads back
/// what it wrote. A host's SaveAllWorkStationSettings only writes.
namespace tlpacscfg {

/// A workstation that was reassigned here and by somebody else.
struct AssignmentConflict {
  std::wstring workstation;
  std::int16_t mine;
  std::wstring theirs;  ///< As stored; "0" for none, empty when the workstation is gone.

  bool operator==(const AssignmentConflict&) const = default;
};

/// What is stored for each workstation: the text of its assignment, "0" for none.
std::unordered_map<std::wstring, std::wstring> storedAssignments(SiteCommand& command);

/// Whether a workstation uses the configuration. The stored assignment counts, except for
/// workstations that were reassigned here and are not saved yet.
bool isAssigned(SiteCommand& command, const colWorkstation& workstations, std::int16_t configID);

/// Writes every assignment, in one transaction on the direct path. A workstation that only somebody
/// else reassigned takes over that assignment. Returns the conflicts that are not among
/// `overruled`; when there are any, nothing was written. `progress` receives the number of
/// workstations written so far, and of all.
[[nodiscard]] std::vector<AssignmentConflict> saveAssignments(
    const colWorkstation& workstations, const std::vector<AssignmentConflict>& overruled,
    const std::function<void(std::size_t done, std::size_t total)>& progress);

/// Gives up the assignment made here in favour of the stored one.
void yieldTo(const AssignmentConflict& conflict, const colWorkstation& workstations);

}  // namespace tlpacscfg
