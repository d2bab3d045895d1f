#include "config/pacs_configurations.h"

#include <tuple>

#include "config/columns.h"
#include "data/data_path.h"
#include "data/mod_main.h"
#include "data/row_error.h"
#include "data/tl_comm_client.h"
#include "data/workstation_key.h"
#include "log/log_support.h"
#include "support/conversions.h"
#include "support/runtime_error.h"
#include "support/system.h"
#include "support/text.h"

namespace tlpacscfg {
namespace {

constexpr const wchar_t* kNumbering = L"[TLPACSCFG] Getting next config ID";
constexpr const wchar_t* kRemoteNumbering =
    L"[TLPACSCFG] Getting next config ID using TlCommClient";
constexpr const wchar_t* kHighestStatement =
    L"SELECT TOP 1 config_id FROM Interface_PACS_cfg ORDER BY config_id DESC";

std::int16_t numberAfter(const Cell& configID) {
  if (!configID) raise(ErrorNumber::InvalidUseOfNull);
  return toInt16(std::int64_t{toInt16(*configID)} + 1);
}

std::int16_t numberAfterFirst(const Table& rows) {
  return rows.rows() == 0 ? std::int16_t{1} : numberAfter(rows.at(0, 0));
}

}  // namespace

std::wstring deletingStatement(std::int16_t configID) {
  return L"delete from interface_PACS_cfg where config_id = '" + decimal(configID) + L"'";
}

void showDeleteError(std::int16_t configID, const RunTimeError& error) {
  system::showMessage({.text = L"Error Deleting configID = " + decimal(configID) +
                               L" from the DB. " + kLineBreak + L"Error = " +
                               decimal(error.number()) + L" Error Description = " +
                               error.description()});
}

void colPACSConfiguration::GetPACSConfigurations() {
  const DataPath& path = loadingPath();
  const auto rows = path.load(
      loadingStatement(),
      {L"[TLPACSCFG] Getting PACS configurations using TlCommClient", log_level::kOperation});
  if (!rows) return;
  const CellRules rules = path.cellRules();
  AddIntitialConfig();
  ColPACSConfigs->reserve(ColPACSConfigs->count() + rows->RowsLeft());
  for (std::size_t row = 1; !rows->EndOfData(); rows->MoveNext(), ++row) {
    addRow([&](std::size_t column) { return rows->Column(column); }, row, rules);
  }
  rows->Close();
}

void colPACSConfiguration::addRow(const std::function<Cell(std::size_t)>& cell, std::size_t row,
                                  CellRules rules) {
  try {
    AddCurrenttoCollection(recordOfRow(cell, rules));
  } catch (const RunTimeError& error) {
    throw RowError(error, L"row " + decimal(row) + L" (config_id " +
                              std::wstring(cell(0).value_or(L"Null")) + L")");
  }
}

void colPACSConfiguration::AddIntitialConfig() {
  const auto placeholder = std::make_shared<clsPACSConfiguration>();
  placeholder->InitAllFields();
  AddCurrenttoCollection(placeholder);
}

// A client is asked for the highest number alone. The other paths go through the rows of the shared
// result set, whatever it holds while no database is open.
std::int16_t colPACSConfiguration::GetNextConfigID() {
  if (dataPath().isRemote()) {
    WriteLog(kRemoteNumbering, log_level::kOperation);
    Table data;
    std::ignore = TlCommClientQuery(kHighestStatement);
    // Rows that came together with an error count.
    std::ignore = TlCommClientGetDataset(1, data);
    return numberAfterFirst(data);
  }
  WriteLog(kNumbering, log_level::kOperation);
  try {
    numberFromRows();
  } catch (const std::exception& error) {
    // The number found before the failure is kept; without any row that is 1.
    if (describe(error).number() == static_cast<std::int32_t>(ErrorNumber::Overflow)) throw;
  }
  return NextConfigID;
}

std::int16_t colPACSConfiguration::RequireNextConfigID() {
  const DataPath& path = dataPath();
  if (!path.executes()) return GetNextConfigID();
  WriteLog(path.isRemote() ? kRemoteNumbering : kNumbering, log_level::kOperation);
  if (path.isRemote()) return numberAfterFirst(path.query(kHighestStatement));
  numberFromRows();
  return NextConfigID;
}

/// In the rows of the shared result set, which the SQL connection fills anew.
void colPACSConfiguration::numberFromRows() {
  NextConfigID = 1;
  const DataPath& path = dataPath();
  if (path.executes()) modMain.g_rsQuery.reset();
  path.fillSharedResult(std::wstring(L"select config_id ") + kLineBreak +
                        L" from Interface_PACS_cfg " + kLineBreak + L"order by config_id");
  const auto rows = modMain.g_rsQuery;
  if (!rows) return;
  for (; !rows->EndOfData(); rows->MoveNext()) NextConfigID = numberAfter(rows->Column(0));
  rows->Close();
}

std::size_t colPACSConfiguration::positionOf(std::int16_t configID) const {
  return ColPACSConfigs->positionWhere(&clsPACSConfiguration::configID, configID);
}

void colPACSConfiguration::SetCurrentConfig(std::int16_t configID) {
  const std::size_t position = positionOf(configID);
  CurrentPACSConfig =
      position > 0 ? ColPACSConfigs->at(position) : std::make_shared<clsPACSConfiguration>();
}

void colPACSConfiguration::AddCurrenttoCollection(const Pointer& record) {
  ColPACSConfigs->add(record, decimal(record->configID));
}

void colPACSConfiguration::RemoveConfig(std::int16_t configID) {
  try {
    dataPath().executeIntoSharedResult(deletingStatement(configID));
    AddOfflineDbUpdate();
    ColPACSConfigs->remove(static_cast<std::size_t>(GetItemNumber(configID)));
  } catch (const std::exception& error) {
    showDeleteError(configID, describe(error));
  }
}

void colPACSConfiguration::SaveAllConfigurations() {
  // A remote client may call back and replace the collection or remove records meanwhile.
  const std::shared_ptr<Records> records = ColPACSConfigs;
  for (std::size_t position = 1; position <= records->count(); ++position) {
    const Pointer record = records->at(position);
    if (record->configID > 0) record->SaveConfiguration();
  }
}

std::int16_t colPACSConfiguration::GetItemNumber(std::int16_t configID) const {
  return toInt16(static_cast<std::int64_t>(positionOf(configID)));
}

std::shared_ptr<colPACSConfiguration> colPACSConfiguration::deepCopy() const {
  auto copy = std::make_shared<colPACSConfiguration>();
  copy->ColPACSConfigs->reserve(ColPACSConfigs->count());
  for (const Pointer& record : ColPACSConfigs->items()) {
    const auto duplicate = std::make_shared<clsPACSConfiguration>();
    record->CopyValues(*duplicate);
    copy->AddCurrenttoCollection(duplicate);
  }
  return copy;
}

}  // namespace tlpacscfg
