#include "workstation/assignment_batches.h"

#include <initializer_list>
#include <string_view>

#include "support/text.h"

namespace tlpacscfg {
namespace {

constexpr std::size_t kWorkstationsInBatch = 100;

void appendStatements(std::wstring& batch, const Assignment& assignment) {
  const std::wstring_view name = assignment.workstation;
  const auto line = [&batch](std::initializer_list<std::wstring_view> pieces) {
    for (const std::wstring_view piece : pieces) batch += piece;
    batch += kLineBreak;
  };
  line({L"DELETE FROM system_workstation_cfg"});
  line({L"WHERE pc_name = '", name, L"' and "});
  line({L"application_id = 38 and "});
  line({L"key_name = 'PACSConfig'"});
  line({});
  if (!assignment.configID) return;
  line({L"INSERT into system_workstation_cfg"});
  line({L"(pc_name, application_id, key_name, key_value, user_id, flag1)"});
  line({L"VALUES('", name, L"', 38, 'PACSConfig', '", *assignment.configID, L"', -1, 0)"});
  line({});
}

}  // namespace

void forEachAssignmentCommand(
    const std::vector<std::shared_ptr<clsWorkstation>>& workstations,
    const std::function<void(const std::wstring& command, std::size_t workstationsDone)>& run) {
  std::vector<Assignment> assignments;
  assignments.reserve(workstations.size());
  for (const auto& workstation : workstations) {
    assignments.push_back({workstation->WorkStation, decimal(workstation->configID)});
  }
  forEachAssignmentCommand(assignments, run);
}

void forEachAssignmentCommand(
    std::span<const Assignment> assignments,
    const std::function<void(const std::wstring& command, std::size_t workstationsDone)>& run) {
  std::wstring batch;
  std::size_t done = 0;
  for (const Assignment& assignment : assignments) {
    appendStatements(batch, assignment);
    if (++done % kWorkstationsInBatch != 0) continue;
    run(batch, done);
    batch.clear();
  }
  if (!batch.empty()) run(batch, done);
}

}  // namespace tlpacscfg
