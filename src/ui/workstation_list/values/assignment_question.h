#pragma once

#include <string>
#include <vector>

#include "config/pacs_configurations.h"
#include "workstation/assignments.h"

namespace tlpacscfg {

/// The question whose assignments to keep, with the first few conflicts. Yes: those made here. No:
/// the stored ones. Cancel: undecided.
std::wstring conflictQuestion(const std::vector<AssignmentConflict>& conflicts,
                              const colPACSConfiguration* configurations);

}  // namespace tlpacscfg
