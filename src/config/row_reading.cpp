#include "config/row_reading.h"

#include "config/columns.h"
#include "data/tl_comm_client.h"
#include "support/conversions.h"
#include "support/runtime_error.h"

namespace tlpacscfg {
namespace {

/// NULL is replaced by the column's substitute.
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

void readRemoteCell(clsPACSConfiguration& record, const Column& column, Cell cell) {
  if (column.ifNull == nullptr || isText(column.field)) return readCell(record, column, cell);
  const std::int32_t number = ValOrDefault(cell.value_or(L""), toInt32(column.ifNull));
  if (std::holds_alternative<std::int32_t clsPACSConfiguration::*>(column.field)) {
    return setValue(record, column.field, number);
  }
  setValue(record, column.field, toInt16(std::int64_t{number}));
}

}  // namespace

std::shared_ptr<clsPACSConfiguration> recordOfRow(const std::function<Cell(std::size_t)>& cell,
                                                  CellRules rules) {
  auto record = std::make_shared<clsPACSConfiguration>();
  for (std::size_t i = 0; i < kColumnCount; ++i) {
    const Column& column = *columnsInLoadOrder()[i];
    Cell value = cell(i);
    if (rules == CellRules::RemoteClient) {
      readRemoteCell(*record, column, value);
      continue;
    }
    const bool emptyText = !value && rules == CellRules::DatabaseWithoutEmptyTexts;
    readCell(*record, column, emptyText && isText(column.field) ? Cell(L"") : value);
  }
  record->MarkAsLoaded();
  return record;
}

}  // namespace tlpacscfg
