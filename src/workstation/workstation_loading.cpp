#include "data/database.h"
#include "data/statements.h"
#include "data/tl_comm_client.h"
#include "log/log_support.h"
#include "support/conversions.h"
#include "support/system.h"
#include "support/runtime_error.h"
#include "support/text.h"
#include "workstation/workstation.h"

namespace tlpacscfg {
namespace {

std::int16_t requiredInt16(const Cell& cell) {
  if (!cell) raise(ErrorNumber::InvalidUseOfNull);
  return toInt16(*cell);
}

std::wstring_view requiredText(const Cell& cell) {
  if (!cell) raise(ErrorNumber::InvalidUseOfNull);
  return *cell;
}

void showError(const RunTimeError& error) {
  system::showMessage(
      {.text = L"Error " + decimal(error.number()) + L" Error Desc " + error.description()});
}

/// The first row of the statement on the offline connection, in the shared slot; false when none.
bool firstOfflineRow(const std::wstring& sql) {
  openShared(g_conOffline, sql);
  return !sharedResult().EndOfData();
}

}  // namespace

void colWorkstation::GetWorkstationsList() {
  if (TlCommClientConnected()) return loadRemote();
  try {
    loadDirect();
  } catch (const std::exception& error) {
    showError(describe(error));
  }
}

void colWorkstation::loadDirect() {
  if (g_blnSqlConnected) openShared(g_conSql, kListStatement);
  ResultSet& rows = sharedResult();
  ColWorkStations->reserve(ColWorkStations->count() + rows.RowsLeft());
  for (; !rows.EndOfData(); rows.MoveNext()) {
    const Cell config = rows.Column(kListConfig);
    const std::int16_t configID = !config || *config == L"0" ? std::int16_t{0} : toInt16(*config);
    const std::wstring_view name = trimBlanks(requiredText(rows.Column(kListName)));
    addStored(configID, name, requiredInt16(rows.Column(kListFlag2)));
  }
  rows.Close();
}

void colWorkstation::loadRemote() {
  try {
    WriteLog(L"[TLPACSCFG] Retrieving workstation list using TlCommClient", log_level::kOperation);
    if (TlCommClientQuery(kListStatement) != 1) {
      system::showMessage({.text = L"The workstation list request failed."});
    }
    Table data;
    if (!TlCommClientGetDataset(1, data)) {
      system::showMessage({.text = L"Unable to get the workstation list information.",
                           .modality = system::Modality::Application});
    }
    for (std::size_t row = 0; row < data.rows(); ++row) {
      if (data.columns() <= kListFlag2) raise(ErrorNumber::SubscriptOutOfRange);
      const Cell config = data.at(kListConfig, row);
      const bool assigned = config && isNumeric(*config);
      const std::wstring_view name = trimBlanks(requiredText(data.at(kListName, row)));
      addStored(assigned ? toInt16(*config) : std::int16_t{0}, name,
                requiredInt16(data.at(kListFlag2, row)));
    }
  } catch (const std::exception& thrown) {
    const RunTimeError error = describe(thrown);
    try {
      WriteLog(L"[TLPACSCFG] Error " + decimal(error.number()) + L" " + error.description(),
               log_level::kError);
    } catch (const std::exception&) {
      // The message box tells the administrator in any case.
    }
    system::showMessage({.text = L"An error was encountered getting the workstation list."});
  }
}

void colWorkstation::GetOfflineWorkstationInfo() {
  try {
    const std::wstring name = system::computerName();
    const std::wstring quoted = L"'" + FixQuotes(name) + L"'";
    std::int16_t configID = 0;
    if (firstOfflineRow(L"SELECT key_value FROM System_workstation_cfg WHERE key_name = "
                        L"'PACSConfig' AND pc_name = " +
                        quoted)) {
      const Cell config = sharedResult().Column(0);
      if (config) configID = toInt16(*config);
    }
    if (firstOfflineRow(L"SELECT access_string, flag2 FROM System_pc_names WHERE pc_name = " +
                        quoted)) {
      addStored(configID, name, requiredInt16(sharedResult().Column(1)));
    }
    sharedResult().Close();
  } catch (const std::exception& error) {
    showError(describe(error));
  }
}

}  // namespace tlpacscfg
