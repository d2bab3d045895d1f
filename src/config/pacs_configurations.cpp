#include "config/pacs_configurations.h"

#include <algorithm>

#include "config/columns.h"
#include "data/database.h"
#include "data/tl_comm_client.h"
#include "data/workstation_key.h"
#include "log/log_support.h"
#include "support/conversions.h"
#include "support/doors.h"
#include "support/runtime_error.h"
#include "support/text.h"

namespace tlpacscfg {
namespace {

/// Stores a cell of a row read directly: NULL gives way to the column's substitute.
void readCell(clsPACSConfiguration& record, const Column& column, Cell cell) {
  if (!cell) {
    if (column.ifNull == nullptr) raise(ErrorNumber::InvalidUseOfNull);
    cell = column.ifNull;
  }
  std::visit(
      [&]<class Value>(Value clsPACSConfiguration::*member) {
        if constexpr (std::is_same_v<Value, std::wstring>) record.*member = *cell;
        if constexpr (std::is_same_v<Value, std::int16_t>) record.*member = toInt16(*cell);
        if constexpr (std::is_same_v<Value, std::int32_t>) record.*member = toInt32(*cell);
      },
      column.field);
}

/// A cell from the remote data client: a later number that is no number becomes the substitute.
void readRemoteCell(clsPACSConfiguration& record, const Column& column, Cell cell) {
  if (column.ifNull == nullptr || isText(column.field)) return readCell(record, column, cell);
  const std::int32_t number = ValOrDefault(cell.value_or(L""), toInt32(column.ifNull));
  if (std::holds_alternative<std::int32_t clsPACSConfiguration::*>(column.field)) {
    return setValue(record, column.field, number);
  }
  setValue(record, column.field, toInt16(std::int64_t{number}));
}

}  // namespace

void colPACSConfiguration::GetPACSConfigurations() {
  const std::wstring statement = loadingStatement();
  odbc::Connection* connection = nullptr;
  if (g_blnUseOfflineDB) {
    if (g_blnOfflineConnected) connection = g_conOffline.get();
  } else if (TlCommClientConnected()) {
    return loadRemote(statement);
  } else if (g_blnSqlConnected) {
    connection = g_conSql.get();
  }
  if (connection == nullptr) return;
  openShared(*connection, statement);
  AddIntitialConfig();
  loadRows(sharedResult(), connection->emptyTextsComeAsNull());
}

void colPACSConfiguration::loadRows(ResultSet& rows, bool emptyTextsComeAsNull) {
  ColPACSConfigs->reserve(ColPACSConfigs->count() + rows.RowsLeft());
  for (; !rows.EndOfData(); rows.MoveNext()) {
    const auto record = std::make_shared<clsPACSConfiguration>();
    for (std::size_t i = 0; i < kColumnCount; ++i) {
      const Column& column = *columnsInLoadOrder()[i];
      Cell cell = rows.Column(i);
      if (!cell && emptyTextsComeAsNull && isText(column.field)) cell = L"";
      readCell(*record, column, cell);
    }
    record->MarkAsLoaded();
    AddCurrenttoCollection(record);
  }
  rows.Close();
}

void colPACSConfiguration::loadRemote(const std::wstring& statement) {
  WriteLog(L"[TLPACSCFG] Getting PACS configurations using TlCommClient", log_level::kOperation);
  Table data;
  if (TlCommClientQuery(statement) != 1 || !TlCommClientGetDataset(1, data)) return;
  AddIntitialConfig();
  for (std::size_t row = 0; row < data.rows(); ++row) {
    const auto record = std::make_shared<clsPACSConfiguration>();
    for (std::size_t i = 0; i < kColumnCount; ++i) {
      if (i >= data.columns()) raise(ErrorNumber::SubscriptOutOfRange);
      readRemoteCell(*record, *columnsInLoadOrder()[i], data.at(i, row));
    }
    record->MarkAsLoaded();
    AddCurrenttoCollection(record);
  }
}

void colPACSConfiguration::AddIntitialConfig() {
  const auto placeholder = std::make_shared<clsPACSConfiguration>();
  placeholder->InitAllFields();
  AddCurrenttoCollection(placeholder);
}

colPACSConfiguration::Pointer colPACSConfiguration::Item(std::int64_t position) const {
  if (position < 1 || static_cast<std::size_t>(position) > ColPACSConfigs->count()) return nullptr;
  return ColPACSConfigs->at(static_cast<std::size_t>(position));
}

std::int16_t colPACSConfiguration::GetNextConfigID() {
  if (TlCommClientConnected()) return nextRemoteConfigID();
  WriteLog(L"[TLPACSCFG] Getting next config ID", log_level::kOperation);
  const std::wstring statement = std::wstring(L"select config_id ") + kLineBreak +
                                 L" from Interface_PACS_cfg " + kLineBreak + L"order by config_id";
  if (g_blnSqlConnected) {
    g_rsQuery.reset();
    try {
      openShared(*g_conSql, statement);
    } catch (const RunTimeError&) {
      // Without a result set there is no row, and the number is 1.
    }
  }
  NextConfigID = 1;
  if (!g_rsQuery) return NextConfigID;
  try {
    for (; !g_rsQuery->EndOfData(); g_rsQuery->MoveNext()) {
      const Cell cell = g_rsQuery->Column(0);
      if (!cell) raise(ErrorNumber::InvalidUseOfNull);
      NextConfigID = toInt16(std::int64_t{toInt16(*cell)} + 1);
    }
    g_rsQuery->Close();
  } catch (const RunTimeError& error) {
    if (error.number() == static_cast<std::int32_t>(ErrorNumber::Overflow)) throw;
  }
  return NextConfigID;
}

std::int16_t colPACSConfiguration::nextRemoteConfigID() {
  WriteLog(L"[TLPACSCFG] Getting next config ID using TlCommClient", log_level::kOperation);
  Table data;
  TlCommClientQuery(L"SELECT TOP 1 config_id FROM Interface_PACS_cfg ORDER BY config_id DESC");
  // Only the table counts: rows that came with an error are rows.
  TlCommClientGetDataset(1, data);
  if (data.rows() == 0) return 1;
  const Cell cell = data.at(0, 0);
  if (!cell) raise(ErrorNumber::InvalidUseOfNull);
  return toInt16(std::int64_t{toInt16(*cell)} + 1);
}

colPACSConfiguration::Pointer colPACSConfiguration::find(std::int16_t configID) const {
  for (const Pointer& record : ColPACSConfigs->items()) {
    if (record->configID == configID) return record;
  }
  return nullptr;
}

void colPACSConfiguration::SetCurrentConfig(std::int16_t configID) {
  CurrentPACSConfig = find(configID);
  if (!CurrentPACSConfig) CurrentPACSConfig = std::make_shared<clsPACSConfiguration>();
}

void colPACSConfiguration::AddCurrenttoCollection(const Pointer& record) {
  ColPACSConfigs->add(record, decimal(record->configID));
}

void colPACSConfiguration::RemoveConfig(std::int16_t configID) {
  try {
    const std::wstring statement =
        L"delete from interface_PACS_cfg where config_id = '" + decimal(configID) + L"'";
    if (TlCommClientConnected()) {
      TlCommClientExecute(statement);
      AddOfflineDbUpdate();
    } else if (g_blnSqlConnected) {
      openShared(*g_conSql, statement);
      AddOfflineDbUpdate();
    }
    ColPACSConfigs->remove(static_cast<std::size_t>(GetItemNumber(configID)));
  } catch (const RunTimeError& error) {
    doors::showMessage({.text = L"Error Deleting configID = " + decimal(configID) +
                                L" from the DB. " + kLineBreak + L"Error = " +
                                decimal(error.number()) + L" Error Description = " +
                                error.description()});
  }
}

void colPACSConfiguration::SaveAllConfigurations() {
  for (const Pointer& record : ColPACSConfigs->items()) {
    if (record->configID > 0) record->SaveConfiguration();
  }
}

std::int16_t colPACSConfiguration::GetItemNumber(std::int16_t configID) const {
  std::int64_t position = 0;
  for (const Pointer& record : ColPACSConfigs->items()) {
    ++position;
    if (record->configID == configID) return toInt16(position);
  }
  return 0;
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
