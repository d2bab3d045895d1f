#include "data/workstation_key.h"

#include "data/data_path.h"
#include "data/mod_main.h"
#include "data/statements.h"
#include "log/log_support.h"
#include "support/text.h"

namespace tlpacscfg {

namespace {

std::wstring lines(std::initializer_list<std::wstring> pieces) {
  std::wstring text;
  for (const std::wstring& piece : pieces) {
    if (!text.empty()) text += kLineBreak;
    text += piece;
  }
  return text;
}

}  // namespace

std::int16_t WorkstationConfigExists(const std::wstring& pcName) {
  const std::wstring sql = lines({L"select key_value ", L"from System_Workstation_cfg",
                                  L"where pc_name = '" + pcName + L"' and ",
                                  L"application_id = 38 and ", L"key_name = 'PACSConfig'"});
  return dataPath().hasRow(sql, {L"[TLPACSCFG] Getting workstation user option using TlCommClient",
                                 log_level::kOutcome});
}

void SetWorkstationConfig(const std::wstring& pcName, const std::wstring& configId) {
  try {
    const std::wstring statement =
        WorkstationConfigExists(pcName) <= 0
            ? lines({L"INSERT into system_workstation_cfg",
                     L"(pc_name, application_id, key_name, key_value, user_id, flag1)",
                     L"VALUES('" + pcName + L"', 38, 'PACSConfig', '" + configId + L"', -1, 0)"})
            : lines({L"UPDATE system_workstation_cfg", L"SET key_value = '" + configId + L"'",
                     L"WHERE pc_name = '" + pcName + L"' and ", L"application_id = 38 and ",
                     L"key_name = 'PACSConfig'"});
    modMain.g_strWorkstationBatch += kLineBreak;
    modMain.g_strWorkstationBatch += kLineBreak + statement;
  } catch (const std::exception&) {
    // Nothing runs the batch, so a statement that could not be built is left out.
  }
}

void AddOfflineDbUpdate() {
  try {
    ExecuteSQL(kOfflineUpdateStatement);
  } catch (const std::exception&) {
    // The change itself is stored already.
  }
}

}  // namespace tlpacscfg
