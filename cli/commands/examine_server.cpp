#include "cli/commands/examinations.h"
#include "data/data_path.h"
#include "data/mod_main.h"
#include "odbc/connection.h"
#include "support/runtime_error.h"
#include "support/text.h"

namespace tlpacscfg::cli {
namespace {

Symptom valueOrWarning(const std::string& subject, const std::optional<std::string>& value) {
  return value ? Symptom{Health::Ok, subject, *value} : unseen(subject);
}

Symptoms examineDriver(const odbc::Connection& open) {
  try {
    const odbc::Connection::Description is = open.description();
    return {{Health::Ok, "driver", toUtf8(is.driver + L" " + is.driverVersion)},
            {Health::Ok, "database", toUtf8(is.system + L" " + is.systemVersion)}};
  } catch (const RunTimeError&) {
    return {{Health::Warning, "driver", "it does not tell its name and version"}};
  }
}

/// Whether dates are understood as the component writes them.
Symptom dateOrder() {
  const auto month = tryValue(L"SELECT MONTH('2000-02-01 00:00:00')");
  if (!month) return unseen("date order");
  if (*month == "2") return {Health::Ok, "date order", "year, month, day"};
  return {Health::Error, "date order",
          "year, day, month: the component's dates are misread, or refused",
          "Give the login a language whose dates have the month first, such as us_english."};
}

}  // namespace

Symptoms examineConnection(ExaminedSite& site) {
  if (dataPath().isRemote()) {
    const bool plain = site.options.plainHttp;
    site.system = tryValue(L"SELECT @@VERSION") ? System::SqlServer : System::Sqlite;
    return {{Health::Ok, "connection", "through the service at " + site.options.service},
            {plain ? Health::Warning : Health::Ok, "encryption",
             plain ? "none, on this computer" : "TLS",
             plain ? "Use TLS where others can reach the computer." : ""}};
  }
  const bool offline = modMain.g_blnUseOfflineDB;
  const auto& open = offline ? modMain.g_conOffline : modMain.g_conSql;
  if (open->dialect() == Dialect::Sqlite) site.system = System::Sqlite;
  if (open->dialect() == Dialect::SqlServer && !offline) site.system = System::SqlServer;
  Symptoms symptoms = {
      {Health::Ok, "connection", offline ? "the file " + site.options.offlineFile : "directly"}};
  const Symptoms driver = examineDriver(*open);
  symptoms.insert(symptoms.end(), driver.begin(), driver.end());
  return symptoms;
}

Symptoms examineLogin(ExaminedSite& site) {
  if (site.system != System::SqlServer) return {};
  Symptoms symptoms = {valueOrWarning("login", tryValue(L"SELECT SUSER_SNAME()"))};
  std::string missing;
  bool seen = true;
  for (const char* right :
       {"INSERT on Interface_PACS_cfg", "UPDATE on Interface_PACS_cfg",
        "DELETE on Interface_PACS_cfg", "INSERT on System_workstation_cfg",
        "DELETE on System_workstation_cfg", "INSERT on System_offline_db_updates"}) {
    const std::wstring text = fromUtf8(right);
    const std::size_t blank = text.find(L' ');
    const auto has = tryValue(L"SELECT HAS_PERMS_BY_NAME('" + text.substr(text.rfind(L' ') + 1) +
                              L"', 'OBJECT', '" + text.substr(0, blank) + L"')");
    seen = seen && has;
    if (has == "0") missing += (missing.empty() ? "" : ", ") + std::string(right);
  }
  if (!missing.empty()) {
    symptoms.push_back({Health::Error, "rights", "the login lacks " + missing,
                        "Grant them, or look only: nothing can be saved."});
  } else {
    symptoms.push_back(seen ? Symptom{Health::Ok, "rights", "the login may change the site"}
                            : unseen("rights"));
  }
  return symptoms;
}

Symptoms examineEncryption(ExaminedSite& site) {
  if (site.system != System::SqlServer || dataPath().isRemote()) return {};
  const auto encrypted =
      tryValue(L"SELECT encrypt_option FROM sys.dm_exec_connections WHERE session_id = @@SPID");
  if (!encrypted) return {unseen("encryption")};
  if (*encrypted == "TRUE") return {{Health::Ok, "encryption", "TLS"}};
  return {{Health::Warning, "encryption", "none: others on the network can read along",
           "Demand it on the server, or in the data source."}};
}

Symptoms examineLanguage(ExaminedSite& site) {
  if (site.system != System::SqlServer) return {};
  return {valueOrWarning("login language", tryValue(L"SELECT @@LANGUAGE")), dateOrder()};
}

Symptoms examineCollation(ExaminedSite& site) {
  if (site.system != System::SqlServer) return {};
  const auto collation =
      tryValue(L"SELECT CAST(DATABASEPROPERTYEX(DB_NAME(), 'Collation') AS nvarchar(128))");
  if (collation && collation->find("_CI") == std::string::npos) {
    return {{Health::Error, "collation", *collation + " tells upper case from lower case",
             "Names of workstations must compare without regard to case."}};
  }
  return {valueOrWarning("collation", collation)};
}

}  // namespace tlpacscfg::cli
