#include <algorithm>
#include <clocale>

#include "config/columns.h"
#include "data/direct_connections.h"
#include "data/mod_main.h"
#include "data/statements.h"
#include "fuzz/expected_load.h"
#include "support/text.h"

using namespace tlpacscfg;
using fuzz::Path;

namespace {

constexpr const wchar_t* kPcColumns = L"pc_name, access_string, flag2";
constexpr const wchar_t* kCfgColumns = L"pc_name, key_name, key_value";

std::wstring configurationColumns() {
  std::wstring names;
  for (const Column* column : columnsInLoadOrder()) {
    names += (names.empty() ? L"" : L", ") + std::wstring(column->name);
  }
  return names;
}

/// A database in memory; its columns have no types and keep whatever text they are given.
void openDatabase() {
  if (modMain.g_blnSqlConnected) return;
  modMain.g_envSql =
      std::make_shared<odbc::Environment>(odbc::CursorLibrary::NotUsed, std::chrono::seconds(0));
  modMain.g_conSql = std::make_shared<odbc::Connection>(modMain.g_envSql, L"", odbc::Prompt::Never,
                                                        L"DRIVER={SQLite3};Database=:memory:;");
  modMain.g_blnSqlConnected = true;
  const auto create = [](const std::wstring& table, const std::wstring& columns) {
    modMain.g_conSql->query(L"CREATE TABLE " + table + L" (" + columns + L")");
  };
  create(L"Interface_PACS_cfg", configurationColumns());
  create(L"system_pc_names", kPcColumns);
  create(L"system_workstation_cfg", kCfgColumns);
}

/// In the words of SQL; zeros do not occur in the texts.
std::wstring literal(const std::optional<std::wstring>& cell) {
  return cell ? L"'" + FixQuotes(*cell) + L"'" : L"NULL";
}

void insert(const std::wstring& table, const std::vector<std::optional<std::wstring>>& cells) {
  std::wstring values;
  for (const auto& cell : cells) values += (values.empty() ? L"" : L", ") + literal(cell);
  modMain.g_conSql->execute(L"INSERT INTO " + table + L" VALUES (" + values + L")");
}

/// The driver manager knows no characters that need two units of UTF-16.
fuzz::Rows withinOneUnit(fuzz::Rows rows) {
  for (auto& row : rows) {
    for (auto& cell : row) {
      if (cell) std::erase_if(*cell, [](wchar_t letter) { return letter > 0xFFFF; });
    }
  }
  return rows;
}

/// The order in which the statement delivers the rows: that of their identifiers as texts.
void sortByIdentifier(fuzz::Rows& rows) {
  std::stable_sort(rows.begin(), rows.end(), [](const auto& first, const auto& second) {
    if (!first[0] || !second[0]) return !first[0] && second[0];
    return toUtf8(*first[0]) < toUtf8(*second[0]);
  });
}

/// Several rows for one workstation would be an error of the statement; the first one counts here.
bool namesRepeat(const fuzz::Rows& workstations) {
  for (std::size_t i = 1; i < workstations.size(); ++i) {
    for (std::size_t earlier = 0; earlier < i; ++earlier) {
      if (workstations[i][0] == workstations[earlier][0]) return true;
    }
  }
  return false;
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  // The driver takes texts in the encoding of the locale.
  std::setlocale(LC_CTYPE, "C.UTF-8");
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  openDatabase();
  FuzzedDataProvider input(data, size);

  fuzz::Rows configurations = withinOneUnit(fuzz::takeConfigurations(input));
  modMain.g_conSql->execute(L"DELETE FROM Interface_PACS_cfg");
  for (const auto& row : configurations) insert(L"Interface_PACS_cfg", row);
  sortByIdentifier(configurations);
  fuzz::requireSame(
      fuzz::loadedConfigurations(),
      fuzz::expectedConfigurations(Path::Direct, configurations, fuzz::kConfigurationColumns),
      "configurations arrive as the database holds them");

  fuzz::Rows workstations = withinOneUnit(fuzz::takeWorkstations(input));
  if (namesRepeat(workstations)) return 0;
  modMain.g_conSql->execute(L"DELETE FROM system_pc_names");
  modMain.g_conSql->execute(L"DELETE FROM system_workstation_cfg");
  for (auto& row : workstations) {
    insert(L"system_pc_names", {row[0], row[2], row[3]});
    insert(L"system_workstation_cfg", {row[0], L"PACSConfig", row[1]});
    // Without a name there is no assignment to find.
    if (!row[0]) row[1] = std::nullopt;
  }
  fuzz::requireSame(
      fuzz::loadedWorkstations(),
      fuzz::expectedWorkstations(Path::Direct, workstations, fuzz::kWorkstationColumns),
      "workstations arrive as the database holds them");
  return 0;
}
