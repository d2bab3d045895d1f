#include "ui/workstation_list/values/assignment_question.h"

#include <algorithm>

#include "support/text.h"

namespace tlpacscfg {

std::wstring conflictQuestion(const std::vector<AssignmentConflict>& conflicts,
                              const colPACSConfiguration* configurations) {
  constexpr std::size_t kMaxNamed = 5;
  const auto named = [&](const std::wstring& configID) -> std::wstring {
    if (configID.empty()) return L"removed";
    if (configID == L"0") return L"None";
    const auto known = configurations ? configurations->ColPACSConfigs->find(configID) : nullptr;
    return known ? configID + L" - " + known->Description : configID;
  };
  std::wstring text = L"Somebody else reassigned workstations that were reassigned here too:";
  for (std::size_t i = 0; i < std::min(conflicts.size(), kMaxNamed); ++i) {
    const AssignmentConflict& conflict = conflicts[i];
    text += kLineBreak + conflict.workstation + L": here " + named(decimal(conflict.mine)) +
            L", stored " + named(conflict.theirs);
  }
  if (conflicts.size() > kMaxNamed) {
    text += kLineBreak + (L"and " + decimal(conflicts.size() - kMaxNamed)) + L" more";
  }
  return text + kLineBreak + L"Save the assignments made here? No keeps the stored ones.";
}

}  // namespace tlpacscfg
