#include "cli/commands/site_diagnosis.h"

#include <cstdio>
#include <cstdlib>
#include <map>
#include <optional>
#include <utility>

#include "cli/connection/site_connection.h"
#include "config/columns.h"
#include "config/option_tables.h"
#include "data/data_path.h"
#include "data/mod_main.h"
#include "odbc/connection.h"
#include "site/site.h"
#include "support/runtime_error.h"
#include "support/system.h"
#include "support/text.h"
#include "ui/settings/values/settings_files.h"

namespace tlpacscfg::cli {
namespace {

using Symptoms = std::vector<Symptom>;

std::string cellText(const Cell& cell) { return toUtf8(cell.value_or(L"")); }

/// Null when the database does not answer it.
std::optional<Table> tryQuery(const std::wstring& sql) {
  try {
    return loadingPath().query(sql);
  } catch (const RunTimeError&) {
    return std::nullopt;
  }
}

/// Null when the database does not answer it, or without a row.
std::optional<std::string> tryValue(const std::wstring& sql) {
  const auto rows = tryQuery(sql);
  if (!rows || rows->rows() == 0) return std::nullopt;
  return cellText(rows->at(0, 0));
}

enum class System { SqlServer, Sqlite, Other };

class Diagnosis {
 public:
  explicit Diagnosis(const ConnectionOptions& options) : options_(options) {}

  Symptoms run() {
    connection();
    if (system_ == System::SqlServer) server();
    tables();
    keys();
    surroundings();
    return std::move(symptoms_);
  }

 private:
  void note(Health health, std::string subject, std::string finding, std::string advice = "") {
    symptoms_.push_back({health, std::move(subject), std::move(finding), std::move(advice)});
  }

  void connection() {
    if (dataPath().isRemote()) {
      note(Health::Ok, "connection", "through the service at " + options_.service);
      note(options_.plainHttp ? Health::Warning : Health::Ok, "encryption",
           options_.plainHttp ? "none, on this computer" : "TLS",
           options_.plainHttp ? "Use TLS where others can reach the computer." : "");
      system_ = tryValue(L"SELECT @@VERSION") ? System::SqlServer : System::Sqlite;
      return;
    }
    const auto& open = modMain.g_blnUseOfflineDB ? modMain.g_conOffline : modMain.g_conSql;
    note(Health::Ok, "connection",
         modMain.g_blnUseOfflineDB ? "the file " + options_.offlineFile : "directly");
    try {
      const odbc::Connection::Description is = open->description();
      note(Health::Ok, "driver", toUtf8(is.driver + L" " + is.driverVersion));
      note(Health::Ok, "database", toUtf8(is.system + L" " + is.systemVersion));
    } catch (const RunTimeError&) {
      note(Health::Warning, "driver", "it does not tell its name and version");
    }
    if (open->dialect() == Dialect::Sqlite) system_ = System::Sqlite;
    if (open->dialect() == Dialect::SqlServer && !modMain.g_blnUseOfflineDB) {
      system_ = System::SqlServer;
    }
  }

  void valueOrWarning(const std::string& subject, const std::optional<std::string>& value) {
    if (value) return note(Health::Ok, subject, *value);
    note(Health::Warning, subject, "cannot be seen",
         "The login may not see it; ask an administrator.");
  }

  void server() {
    valueOrWarning("login", tryValue(L"SELECT SUSER_SNAME()"));
    if (!dataPath().isRemote()) encryption();
    valueOrWarning("login language", tryValue(L"SELECT @@LANGUAGE"));
    dateOrder();
    codePage();
  }

  void encryption() {
    const auto encrypted =
        tryValue(L"SELECT encrypt_option FROM sys.dm_exec_connections WHERE session_id = @@SPID");
    if (encrypted == "FALSE") {
      return note(Health::Warning, "encryption", "none: others on the network can read along",
                  "Demand it on the server, or in the data source.");
    }
    valueOrWarning("encryption", encrypted ? std::optional<std::string>("TLS") : std::nullopt);
  }

  void dateOrder() {
    const auto month = tryValue(L"SELECT MONTH('2000-02-01 00:00:00')");
    if (!month) return valueOrWarning("date order", month);
    if (*month == "2") return note(Health::Ok, "date order", "year, month, day");
    note(Health::Error, "date order",
         "year, day, month: the component's dates are misread, or refused",
         "Give the login a language whose dates have the month first, such as us_english.");
  }

  void codePage() {
    const auto collation =
        tryValue(L"SELECT CAST(DATABASEPROPERTYEX(DB_NAME(), 'Collation') AS nvarchar(128))");
    if (collation && collation->find("_CS") != std::string::npos) {
      return note(Health::Error, "collation", *collation + " tells upper case from lower case",
                  "Names of workstations must compare without regard to case.");
    }
    valueOrWarning("collation", collation);
  }

  /// Each table's columns with their types; null when they cannot be seen.
  std::optional<std::map<std::wstring, std::wstring>> typesOf(const std::wstring& table) const {
    const auto rows = tryQuery(system_ == System::Sqlite
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

  void tables() {
    try {
      const Site site = readSiteByTables(readStoredAssignments());
      note(site.unreadable.empty() ? Health::Ok : Health::Error, "configurations",
           std::to_string(site.configurations.size()) + " stored, " +
               std::to_string(site.unreadable.size()) + " of them cannot be read",
           site.unreadable.empty() ? "" : "Read 'tlpacscfg check'.");
      if (site.unreadable.empty()) {
        symptoms_.back().finding = std::to_string(site.configurations.size()) + " stored";
      }
      note(Health::Ok, "workstations", std::to_string(site.workstations.size()) + " listed");
      ports(site);
    } catch (const RunTimeError& error) {
      note(Health::Error, "tables", toUtf8(error.description()),
           "Give the login the right to read Interface_PACS_cfg, System_pc_names and "
           "System_workstation_cfg.");
    }
    if (modMain.g_blnUseOfflineDB) return;
    const bool marks =
        tryQuery(L"SELECT user_id FROM System_offline_db_updates WHERE 1 = 0").has_value();
    note(marks ? Health::Ok : Health::Error, "offline marks",
         marks ? "System_offline_db_updates can be read"
               : "System_offline_db_updates cannot be read",
         marks ? "" : "Without it no change is saved: create it, or give the login its rights.");
    columnTypes();
  }

  void columnTypes() {
    const auto types = typesOf(L"Interface_PACS_cfg");
    if (!types) return valueOrWarning("column types", std::nullopt);
    std::string wrong, narrow;
    for (const Column& column : columns()) {
      const auto found = types->find(upperCase(column.name));
      // A missing column is an error of the query above.
      if (found == types->end() || column.onUpdate != Source::Record) continue;
      const bool holdsText = found->second.find(L"CHAR") != std::wstring::npos ||
                             found->second.find(L"TEXT") != std::wstring::npos;
      if (holdsText != isText(column.field)) wrong += " " + toUtf8(column.name);
      const bool hasCodePage = holdsText && !found->second.starts_with(L"N");
      if (system_ == System::SqlServer && hasCodePage) narrow += " " + toUtf8(column.name);
    }
    if (!wrong.empty()) {
      note(Health::Error, "column types", "numbers and texts are exchanged in" + wrong,
           "Give the columns the types of the other sites.");
    } else {
      note(Health::Ok, "column types", "as the component needs them");
    }
    if (narrow.empty()) return;
    note(Health::Warning, "code page", "letters outside of it are lost in" + narrow,
         "Use nvarchar, or keep to the letters of the code page.");
  }

  void keys() {
    struct Key {
      const char* subject;
      const wchar_t* duplicates;
    };
    constexpr Key kKeys[] = {
        {"numbers",
         L"SELECT config_id FROM Interface_PACS_cfg GROUP BY config_id HAVING COUNT(*) > 1"},
        {"workstation names",
         L"SELECT pc_name FROM System_pc_names GROUP BY pc_name HAVING COUNT(*) > 1"},
        {"assignments",
         L"SELECT pc_name FROM System_workstation_cfg WHERE key_name = 'PACSConfig' GROUP BY "
         L"pc_name "
         L"HAVING COUNT(*) > 1"},
    };
    if (modMain.g_blnUseOfflineDB) return;
    for (const Key& key : kKeys) {
      const auto rows = tryQuery(key.duplicates);
      const std::string subject = std::string("unique ") + key.subject;
      if (!rows) {
        valueOrWarning(subject, std::nullopt);
      } else if (rows->rows() > 0) {
        note(Health::Error, subject, cellText(rows->at(0, 0)) + " is stored more than once",
             "Read 'tlpacscfg check', and delete the row that is too many.");
      } else {
        note(Health::Ok, subject, "each is stored once");
      }
    }
  }

  void ports(const Site& site) {
    std::map<std::int32_t, std::string> used;
    for (const auto& record : site.configurations) {
      if (record->PACSType != vendor::kTcpIp && record->PACSType != vendor::kBrokerExtended)
        continue;
      std::string& users = used[record->Port];
      users += (users.empty() ? "" : ", ") + std::to_string(record->configID);
    }
    std::string text;
    for (const auto& [port, users] : used) {
      if (port == 0) continue;
      text += (text.empty() ? "" : "; ") + std::to_string(port) + " in configuration " + users;
    }
    note(Health::Ok, "ports", text.empty() ? "no configuration listens" : text);
  }

  void surroundings() {
    if (!knowsPromptFiles()) {
      note(Health::Warning, "prompts folder", "not looked at",
           "Name it with --root DIR or --ini FILE.");
    } else {
      const auto files = promptXmlFiles();
      note(files.empty() ? Health::Warning : Health::Ok, "prompts folder",
           toUtf8(modMain.g_strNetworkRootDir) + ": " + std::to_string(files.size()) +
               " mapping files",
           files.empty() ? "Configurations that map with a file cannot be used." : "");
    }
    clock();
  }

  void clock() {
    if (modMain.g_blnUseOfflineDB) return;
    const auto theirs = tryValue(L"SELECT GetDate()");
    const system::LocalTime now = system::localTime();
    char ours[32];
    std::snprintf(ours, sizeof(ours), "%04d-%02d-%02d %02d:%02d", now.year, now.month, now.day,
                  now.hour, now.minute);
    if (!theirs || theirs->size() < 16) return valueOrWarning("clock", theirs);
    const auto minutes = [](const std::string& time) {
      return std::stoi(time.substr(11, 2)) * 60 + std::stoi(time.substr(14, 2));
    };
    constexpr int kAllowed = 5;
    const bool isNear = theirs->substr(0, 10) == std::string(ours).substr(0, 10) &&
                        std::abs(minutes(*theirs) - minutes(ours)) <= kAllowed;
    note(isNear ? Health::Ok : Health::Warning, "clock",
         "the database has " + theirs->substr(0, 16) + ", this computer " + ours,
         isNear ? "" : "The times of changes come from this computer: set its clock or time zone.");
  }

  const ConnectionOptions& options_;
  System system_ = System::Other;
  Symptoms symptoms_;
};

}  // namespace

Symptoms diagnose(const ConnectionOptions& options) { return Diagnosis(options).run(); }

}  // namespace tlpacscfg::cli
