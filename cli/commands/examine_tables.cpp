#include <map>
#include <string_view>

#include "cli/base/listening_port.h"
#include "cli/commands/examinations.h"
#include "cli/commands/site_check.h"
#include "cli/connection/site_connection.h"
#include "config/columns.h"
#include "config/option_tables.h"
#include "data/data_path.h"
#include "data/mod_main.h"
#include "support/runtime_error.h"
#include "support/system.h"
#include "support/text.h"

namespace tlpacscfg::cli {
namespace {

/// Each table's columns with their types; null when they cannot be seen.
std::optional<std::map<std::wstring, std::wstring>> typesOf(System system,
                                                            const std::wstring& table) {
  const auto rows = tryQuery(system == System::Sqlite
                                 ? L"SELECT name, type FROM pragma_table_info('" + table + L"')"
                                 : L"SELECT COLUMN_NAME, DATA_TYPE FROM "
                                   L"INFORMATION_SCHEMA.COLUMNS WHERE TABLE_NAME = '" +
                                       table + L"'");
  if (!rows || rows->rows() == 0) return std::nullopt;
  std::map<std::wstring, std::wstring> types;
  for (std::size_t row = 0; row < rows->rows(); ++row) {
    types[upperCase(rows->at(0, row).value_or(L""))] = upperCase(rows->at(1, row).value_or(L""));
  }
  return types;
}

Symptom codePage(const std::string& narrowColumns) {
  if (narrowColumns.empty()) return {Health::Ok, "code page", "none: every text is Unicode"};
  const auto number = tryValue(
      L"SELECT CAST(COLLATIONPROPERTY(CAST(DATABASEPROPERTYEX(DB_NAME(), 'Collation') AS "
      L"nvarchar(128)), 'CodePage') AS int)");
  return {Health::Warning, "code page",
          "letters outside of code page " + number.value_or("(unknown)") + " are lost in" +
              narrowColumns,
          "Use nvarchar, or keep to the letters of the code page."};
}

Symptom examineKey(const std::string& subject, const wchar_t* duplicates) {
  const auto rows = tryQuery(duplicates);
  if (!rows) return unseen(subject);
  if (rows->rows() == 0) return {Health::Ok, subject, "each is stored once"};
  return {Health::Error, subject,
          toUtf8(rows->at(0, 0).value_or(L"")) + " is stored more than once",
          "Read 'tlpacscfg check', and delete the row that is too many."};
}

/// The ports on which configurations listen.
Symptom listeners(const Site& site) {
  std::map<std::int32_t, std::string> users;
  for (const auto& record : site.configurations) {
    if (!listens(*record)) continue;
    std::string& text = users[record->Port];
    text += (text.empty() ? "" : ", ") + std::to_string(record->configID);
  }
  std::string text;
  for (const auto& [port, configurations] : users) {
    text +=
        (text.empty() ? "" : "; ") + std::to_string(port) + " in configuration " + configurations;
  }
  return {Health::Ok, "ports", text.empty() ? "no configuration listens" : text};
}

Symptom ownPort(const clsPACSConfiguration& record) {
  const std::string port = "port " + std::to_string(record.Port) + " of configuration " +
                           std::to_string(record.configID);
  const auto obstacle = whyNobodyCanListenOn(record.Port);
  if (!obstacle) return {Health::Ok, "ports here", port + " can be opened on this computer"};
  return {Health::Warning, "ports here", port + " cannot be opened on this computer: " + *obstacle,
          "Unless it is the integration itself that listens there, end the other program, or "
          "give the configuration another port."};
}

}  // namespace

Symptoms examineRows(ExaminedSite& examined) {
  try {
    examined.assignments = readStoredAssignments();
    examined.site = readSiteByTables(examined.assignments);
  } catch (const RunTimeError& error) {
    const Failure failure = failureOf(error);
    if (failure.code() == ExitCode::NoConnection) throw failure;
    return {{Health::Error, "tables", toUtf8(error.description()),
             "Give the login the right to read Interface_PACS_cfg, System_pc_names and "
             "System_workstation_cfg."}};
  }
  const Site& site = *examined.site;
  const std::string stored = std::to_string(site.configurations.size()) + " stored";
  const Symptom workstations = {Health::Ok, "workstations",
                                std::to_string(site.workstations.size()) + " listed"};
  if (site.unreadable.empty()) return {{Health::Ok, "configurations", stored}, workstations};
  return {{Health::Error, "configurations",
           stored + ", " + std::to_string(site.unreadable.size()) + " more cannot be read",
           "Read 'tlpacscfg check'."},
          workstations};
}

Symptoms examineOfflineMarks(ExaminedSite&) {
  if (modMain.g_blnUseOfflineDB) return {};
  if (tryQuery(L"SELECT user_id FROM System_offline_db_updates WHERE 1 = 0")) {
    return {{Health::Ok, "offline marks", "System_offline_db_updates can be read"}};
  }
  return {{Health::Error, "offline marks", "System_offline_db_updates cannot be read",
           "Without it no change is saved: create it, or give the login its rights."}};
}

Symptoms examineColumnTypes(ExaminedSite& site) {
  if (modMain.g_blnUseOfflineDB) return {};
  const auto types = typesOf(site.system, L"Interface_PACS_cfg");
  if (!types) return {unseen("column types")};
  std::string wrong, narrow;
  for (const Column& column : columns()) {
    const auto found = types->find(upperCase(column.name));
    // A missing column is an error of the query for the rows.
    if (found == types->end() || column.onUpdate != Source::Record) continue;
    const bool holdsText = found->second.find(L"CHAR") != std::wstring::npos ||
                           found->second.find(L"TEXT") != std::wstring::npos;
    if (holdsText != isText(column.field)) wrong += " " + toUtf8(column.name);
    if (holdsText && !found->second.starts_with(L"N")) narrow += " " + toUtf8(column.name);
  }
  Symptoms symptoms;
  if (wrong.empty()) {
    symptoms.push_back({Health::Ok, "column types", "as the component needs them"});
  } else {
    symptoms.push_back({Health::Error, "column types", "numbers and texts are exchanged in" + wrong,
                        "Give the columns the types of the other sites."});
  }
  if (site.system == System::SqlServer) symptoms.push_back(codePage(narrow));
  return symptoms;
}

Symptoms examineKeys(ExaminedSite&) {
  if (modMain.g_blnUseOfflineDB) return {};
  return {examineKey(
              "unique numbers",
              L"SELECT config_id FROM Interface_PACS_cfg GROUP BY config_id HAVING COUNT(*) > 1"),
          examineKey("unique workstation names",
                     L"SELECT pc_name FROM System_pc_names GROUP BY pc_name HAVING COUNT(*) > 1"),
          examineKey("unique assignments",
                     L"SELECT pc_name FROM System_workstation_cfg WHERE key_name = 'PACSConfig' "
                     L"GROUP BY pc_name HAVING COUNT(*) > 1")};
}

Symptoms examinePorts(ExaminedSite& examined) {
  if (!examined.site) return {};
  const Site& site = *examined.site;
  Symptoms symptoms = {listeners(site)};
  for (const Finding& finding : findingsIn(site, examined.assignments, std::nullopt)) {
    if (std::string_view(finding.rule) != kPortUsedTwice) continue;
    symptoms.push_back({Health::Error, "ports",
                        toUtf8(*finding.workstation + L": " + finding.message),
                        "Give one of the configurations another port."});
  }
  const std::wstring here = system::computerName();
  for (const SiteWorkstation& workstation : site.workstations) {
    if (!equalIgnoringCase(workstation.name, here)) continue;
    const auto record = site.find(workstation.configID.value_or(0));
    if (record && listens(*record)) symptoms.push_back(ownPort(*record));
  }
  return symptoms;
}

}  // namespace tlpacscfg::cli
