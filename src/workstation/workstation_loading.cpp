#include "data/data_path.h"
#include "data/mod_main.h"
#include "data/statements.h"
#include "data/tl_comm_client.h"
#include "log/log_support.h"
#include "support/conversions.h"
#include "support/runtime_error.h"
#include "support/system.h"
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

std::shared_ptr<ResultSet> offlineRows(const std::wstring& sql) {
  return openSharedResult(modMain.g_conOffline, sql);
}

}  // namespace

void colWorkstation::GetWorkstationsList() {
  // A client's failures are shown with texts of their own.
  if (dataPath().isRemote()) return loadRemote();
  try {
    dataPath().fillSharedResult(kListStatement);
    if (!modMain.g_rsQuery) raise(ErrorNumber::ObjectNotSet);
    addRows(*modMain.g_rsQuery);
  } catch (const std::exception& error) {
    showError(describe(error));
  }
}

void colWorkstation::addRows(ResultSet& rows) {
  ColWorkStations->reserve(ColWorkStations->count() + rows.RowsLeft());
  for (; !rows.EndOfData(); rows.MoveNext()) {
    const std::int16_t configID = assignedConfigID(rows.Column(kListConfig));
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
    ResultSet rows(std::move(data));
    addRows(rows);
  } catch (const std::exception& thrown) {
    const RunTimeError error = describe(thrown);
    try {
      WriteLog(L"[TLPACSCFG] Error " + decimal(error.number()) + L" " + error.description(),
               log_level::kError);
    } catch (const std::exception&) {
      // The message box follows in any case.
    }
    system::showMessage({.text = L"An error was encountered getting the workstation list."});
  }
}

void colWorkstation::GetOfflineWorkstationInfo() {
  try {
    const std::wstring name = system::computerName();
    const std::wstring quoted = L"'" + FixQuotes(name) + L"'";
    std::int16_t configID = 0;
    const auto assignment = offlineRows(
        L"SELECT key_value FROM System_workstation_cfg WHERE key_name = 'PACSConfig' AND pc_name "
        L"= " +
        quoted);
    if (!assignment->EndOfData()) {
      if (const Cell config = assignment->Column(0)) configID = toInt16(*config);
    }
    const auto workstation =
        offlineRows(L"SELECT access_string, flag2 FROM System_pc_names WHERE pc_name = " + quoted);
    if (!workstation->EndOfData()) {
      addStored(configID, name, requiredInt16(workstation->Column(1)));
    }
    workstation->Close();
  } catch (const std::exception& error) {
    showError(describe(error));
  }
}

}  // namespace tlpacscfg
