#include "workstation/assignment_batches.h"

#include <initializer_list>
#include <string_view>

#include "support/text.h"

namespace tlpacscfg {
namespace {

constexpr std::size_t kWorkstationsInBatch = 100;

void appendStatements(std::wstring& batch, const clsWorkstation& workstation) {
  const std::wstring_view name = workstation.WorkStation;
  const auto line = [&batch](std::initializer_list<std::wstring_view> pieces) {
    for (const std::wstring_view piece : pieces) batch += piece;
    batch += kLineBreak;
  };
  line({L"DELETE FROM system_workstation_cfg"});
  line({L"WHERE pc_name = '", name, L"' and "});
  line({L"application_id = 38 and "});
  line({L"key_name = 'PACSConfig'"});
  line({});
  line({L"INSERT into system_workstation_cfg"});
  line({L"(pc_name, application_id, key_name, key_value, user_id, flag1)"});
  line({L"VALUES('", name, L"', 38, 'PACSConfig', '", decimal(workstation.configID), L"', -1, 0)"});
  line({});
}

}  // namespace

void forEachAssignmentCommand(
    const std::vector<std::shared_ptr<clsWorkstation>>& workstations,
    const std::function<void(const std::wstring& command, std::size_t workstationsDone)>& run) {
  std::wstring batch;
  std::size_t done = 0;
  for (const auto& workstation : workstations) {
    appendStatements(batch, *workstation);
    if (++done % kWorkstationsInBatch != 0) continue;
    run(batch, done);
    batch.clear();
  }
  if (!batch.empty()) run(batch, done);
}

}  // namespace tlpacscfg
