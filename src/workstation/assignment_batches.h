#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "workstation/workstation.h"

namespace tlpacscfg {

/// Calls `run` with each command that rewrites assignments, 100 workstations in one. An exception
/// from `run` ends the loop.
void forEachAssignmentCommand(
    const std::vector<std::shared_ptr<clsWorkstation>>& workstations,
    const std::function<void(const std::wstring& command, std::size_t workstationsDone)>& run);

}  // namespace tlpacscfg
