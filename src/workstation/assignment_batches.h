#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "workstation/workstation.h"

namespace tlpacscfg {

/// What is to be stored for a workstation.
struct Assignment {
  std::wstring_view workstation;  ///< Goes into the statement as it stands.
  /// Null: no row.
  std::optional<std::wstring> configID;
};

/// Calls `run` with each command that rewrites assignments, 100 workstations in one. An exception
/// from `run` ends the loop.
void forEachAssignmentCommand(
    const std::vector<std::shared_ptr<clsWorkstation>>& workstations,
    const std::function<void(const std::wstring& command, std::size_t workstationsDone)>& run);
void forEachAssignmentCommand(
    std::span<const Assignment> assignments,
    const std::function<void(const std::wstring& command, std::size_t workstationsDone)>& run);

}  // namespace tlpacscfg
