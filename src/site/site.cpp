#include "site/site.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

#include "config/columns.h"
#include "config/row_reading.h"
#include "data/data_path.h"
#include "data/mod_main.h"
#include "odbc/table.h"
#include "support/conversions.h"
#include "support/text.h"
#include "workstation/workstation.h"

namespace tlpacscfg {
namespace {

constexpr const wchar_t* kNames = L"SELECT pc_name, flag2 FROM System_pc_names";
constexpr const wchar_t* kAssignments =
    L"SELECT pc_name, key_value FROM System_workstation_cfg WHERE key_name = 'PACSConfig'";

template <class Convert>
auto orNull(Convert convert) -> std::optional<decltype(convert())> {
  try {
    return convert();
  } catch (const RunTimeError&) {
    return std::nullopt;
  }
}

SiteWorkstation workstationOf(const Cell& name, const Cell& assigned, const Cell& flag2) {
  SiteWorkstation workstation;
  workstation.name = trimBlanks(name.value_or(L""));
  if (assigned) workstation.assigned = *assigned;
  workstation.configID = configIDIn(workstation.assigned);
  if (flag2) workstation.flag2 = orNull([&] { return toInt16(*flag2); });
  return workstation;
}

std::vector<SiteWorkstation> workstationsByTables(
    const std::vector<StoredAssignment>& assignments) {
  std::unordered_map<std::wstring, Cell> assignedTo;
  for (const StoredAssignment& row : assignments) {
    assignedTo.try_emplace(upperCase(row.workstation),
                           row.assigned ? Cell(*row.assigned) : std::nullopt);
  }
  const Table names = loadingPath().query(kNames);
  std::vector<SiteWorkstation> workstations;
  workstations.reserve(names.rows());
  for (std::size_t row = 0; row < names.rows(); ++row) {
    const Cell name = names.at(0, row);
    const auto found = assignedTo.find(upperCase(trimBlanks(name.value_or(L""))));
    workstations.push_back(
        workstationOf(name, found == assignedTo.end() ? Cell() : found->second, names.at(1, row)));
  }
  return workstations;
}

Site readConfigurations() {
  Site site;
  const DataPath& path = loadingPath();
  const Table rows = path.query(loadingStatement());
  if (rows.rows() > 0 && rows.columns() < kColumnCount) raise(ErrorNumber::SubscriptOutOfRange);
  site.configurations.reserve(rows.rows());
  for (std::size_t row = 0; row < rows.rows(); ++row) {
    try {
      site.configurations.push_back(
          recordOfRow([&](std::size_t column) { return rows.at(column, row); }, path.cellRules()));
    } catch (const RunTimeError& error) {
      site.unreadable.push_back({std::wstring(rows.at(0, row).value_or(L"Null")), error});
    }
  }
  std::ranges::stable_sort(site.configurations, {},
                           [](const auto& record) { return record->configID; });
  return site;
}

}  // namespace

Site::Configuration Site::find(std::int16_t configID) const {
  const auto found = std::ranges::lower_bound(configurations, configID, {},
                                              [](const auto& record) { return record->configID; });
  return found != configurations.end() && (*found)->configID == configID ? *found : nullptr;
}

bool Site::isUnreadable(std::int16_t configID) const {
  return std::ranges::any_of(unreadable, [&](const UnreadableConfiguration& row) {
    return orNull([&] { return toInt16(row.configID); }) == configID;
  });
}

std::optional<std::int16_t> configIDIn(const std::optional<std::wstring>& assigned) {
  return orNull([&] { return assignedConfigID(assigned ? Cell(*assigned) : Cell()); });
}

bool isSameAssignment(const std::optional<std::wstring>& first,
                      const std::optional<std::wstring>& second) {
  if (first == second) return true;
  const auto configID = configIDIn(first);
  return configID && configID == configIDIn(second);
}

std::vector<SiteWorkstation> readWorkstations() {
  const Table rows = loadingPath().query(kListStatement);
  if (rows.rows() > 0 && rows.columns() <= kListFlag2) raise(ErrorNumber::SubscriptOutOfRange);
  std::vector<SiteWorkstation> workstations;
  workstations.reserve(rows.rows());
  for (std::size_t row = 0; row < rows.rows(); ++row) {
    workstations.push_back(workstationOf(rows.at(kListName, row), rows.at(kListConfig, row),
                                         rows.at(kListFlag2, row)));
  }
  return workstations;
}

Site readSite() {
  // A database file without a server knows no subqueries.
  if (modMain.g_blnUseOfflineDB) return readSiteByTables(readStoredAssignments());
  Site site = readConfigurations();
  site.workstations = readWorkstations();
  return site;
}

std::vector<StoredAssignment> readStoredAssignments() {
  const Table rows = loadingPath().query(kAssignments);
  std::vector<StoredAssignment> assignments;
  assignments.reserve(rows.rows());
  for (std::size_t row = 0; row < rows.rows(); ++row) {
    StoredAssignment& stored = assignments.emplace_back();
    stored.workstation = trimBlanks(rows.at(0, row).value_or(L""));
    if (const Cell assigned = rows.at(1, row)) stored.assigned = *assigned;
  }
  return assignments;
}

Site readSiteByTables(const std::vector<StoredAssignment>& assignments) {
  Site site = readConfigurations();
  site.workstations = workstationsByTables(assignments);
  return site;
}

}  // namespace tlpacscfg
