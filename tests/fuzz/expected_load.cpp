#include "fuzz/expected_load.h"

#include <iostream>
#include <set>

#include "config/columns.h"
#include "support/conversions.h"
#include "support/system.h"
#include "support/runtime_error.h"
#include "support/text.h"

namespace tlpacscfg::fuzz {
namespace {

using Row = Rows::value_type;

constexpr std::size_t kFirstLaterColumn = 18;
constexpr std::size_t kFirstNullableColumn = 16;
constexpr std::size_t kPort = 22;
constexpr std::size_t kPollingDisplayField = 26;

bool holdsText(std::size_t position) {
  static const std::set<std::size_t> positions = {2, 3, 4, 13, 14, 16, 17, 28, 29, 35};
  return positions.contains(position);
}

/// Throws what the component throws.
std::wstring expectedValue(Path path, std::size_t position,
                           const std::optional<std::wstring>& cell) {
  if (!cell && position < kFirstNullableColumn) raise(ErrorNumber::InvalidUseOfNull);
  if (holdsText(position)) return cell.value_or(L"");
  const bool substituted =
      path == Path::Remote && position >= kFirstLaterColumn && cell && !isNumeric(*cell);
  const std::wstring text = cell && !substituted               ? *cell
                            : position == kPollingDisplayField ? L"1"
                                                               : L"0";
  if (position == kPort) return decimal(toInt32(text));
  return decimal(toInt16(text));
}

void replaceCells(FuzzedDataProvider& input, Rows& rows) {
  if (rows.empty()) return;
  for (int changes = input.ConsumeIntegralInRange(0, 4); changes > 0; --changes) {
    Row& row = rows[input.ConsumeIntegralInRange<std::size_t>(0, rows.size() - 1)];
    row[input.ConsumeIntegralInRange<std::size_t>(0, row.size() - 1)] = takeCell(input);
  }
}

template <class Action>
Load loadUntilError(const Rows& rows, Action recordOf) {
  Load load;
  std::set<std::wstring> keys;
  for (const Row& row : rows) {
    load.error = errorOf([&] { load.records.push_back(recordOf(row, keys)); });
    if (load.error) break;
  }
  return load;
}

void addKey(std::set<std::wstring>& keys, const std::wstring& key) {
  if (!keys.insert(upperCase(key)).second) raise(ErrorNumber::DuplicateKey);
}

std::wstring required(const std::optional<std::wstring>& cell) {
  if (!cell) raise(ErrorNumber::InvalidUseOfNull);
  return *cell;
}

void print(const char* title, const Load& load) {
  std::cerr << title << ", error " << load.error.value_or(0) << '\n';
  for (const auto& record : load.records) {
    for (const std::wstring& value : record) std::cerr << '[' << toUtf8(value) << ']';
    std::cerr << '\n';
  }
}

}  // namespace

Rows takeConfigurations(FuzzedDataProvider& input) {
  Rows rows(input.ConsumeIntegralInRange<std::size_t>(0, 4));
  for (std::size_t i = 0; i < rows.size(); ++i) {
    for (std::size_t position = 0; position < kConfigurationColumns; ++position) {
      rows[i].emplace_back(holdsText(position) ? L"text" : decimal(i + 1));
    }
  }
  replaceCells(input, rows);
  return rows;
}

Rows takeWorkstations(FuzzedDataProvider& input) {
  Rows rows(input.ConsumeIntegralInRange<std::size_t>(0, 4));
  for (std::size_t i = 0; i < rows.size(); ++i) {
    rows[i] = {L"READ-" + decimal(i), decimal(i), std::nullopt, L"1"};
  }
  replaceCells(input, rows);
  return rows;
}

Load expectedConfigurations(Path path, const Rows& rows, std::size_t columns) {
  return loadUntilError(rows, [&](const Row& row, std::set<std::wstring>& keys) {
    keys.insert(L"0");
    std::vector<std::wstring> record;
    for (std::size_t position = 0; position < kConfigurationColumns; ++position) {
      if (position >= columns) raise(ErrorNumber::SubscriptOutOfRange);
      record.push_back(expectedValue(path, position, row[position]));
    }
    addKey(keys, record[0]);
    return record;
  });
}

Load expectedWorkstations(Path path, const Rows& rows, std::size_t columns) {
  return loadUntilError(rows, [&](const Row& row, std::set<std::wstring>& keys) {
    if (columns < kWorkstationColumns) raise(ErrorNumber::SubscriptOutOfRange);
    const std::optional<std::wstring>& config = row[1];
    const bool assigned = config && (path == Path::Direct || isNumeric(*config));
    // Directly the identifier comes before the name, remotely after it.
    std::int16_t id = assigned && path == Path::Direct ? toInt16(*config) : std::int16_t{0};
    const std::wstring name(trimBlanks(required(row[0])));
    if (assigned) id = toInt16(*config);
    const std::int16_t flag = toInt16(required(row[3]));
    addKey(keys, name);
    return std::vector<std::wstring>{name, decimal(id), decimal(flag)};
  });
}

Load loadedConfigurations() {
  Load load;
  colPACSConfiguration configurations;
  load.error = errorOf([&] { configurations.GetPACSConfigurations(); });
  bool placeholder = true;
  for (const auto& record : configurations.ColPACSConfigs->items()) {
    if (placeholder) {
      require(record->configID == 0 && record->ExistingConfig == kFalse,
              "the first record stands for none");
      placeholder = false;
      continue;
    }
    require(record->ExistingConfig == kTrue && record->Changed == kFalse,
            "a loaded record exists and is unchanged");
    std::vector<std::wstring> values;
    for (const Column* column : columnsInLoadOrder()) {
      const FieldValue value = valueOf(*record, column->field);
      values.push_back(std::visit(
          []<class Value>(const Value& held) -> std::wstring {
            if constexpr (std::is_same_v<Value, std::wstring>)
              return held;
            else
              return decimal(held);
          },
          value));
    }
    load.records.push_back(std::move(values));
  }
  return load;
}

Load loadedWorkstations() {
  Load load;
  system::showMessage = [&](const system::Message& message) {
    // "Error <number> Error Desc <description>", or a text without a number.
    load.error = message.text.starts_with(L"Error ")
                     ? static_cast<std::int32_t>(std::wcstol(message.text.c_str() + 6, nullptr, 10))
                     : -1;
    return system::Answer::Ok;
  };
  colWorkstation workstations;
  workstations.GetWorkstationsList();
  for (const auto& workstation : workstations.ColWorkStations->items()) {
    load.records.push_back(
        {workstation->WorkStation, decimal(workstation->configID), decimal(workstation->Flag2)});
  }
  return load;
}

void requireSame(const Load& found, const Load& expected, const char* property) {
  if (found == expected) return;
  print("Found", found);
  print("Expected", expected);
  require(false, property);
}

}  // namespace tlpacscfg::fuzz
