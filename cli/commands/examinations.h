#pragma once

#include <optional>
#include <string>
#include <vector>

#include "cli/connection/connection_options.h"
#include "odbc/table.h"
#include "site/site.h"

/// What `doctor` looks at. Nothing here writes to the site.
namespace tlpacscfg::cli {

enum class Health { Ok, Warning, Error };

struct Symptom {
  Health health = Health::Ok;
  std::string subject;
  std::string finding;
  std::string advice = {};  ///< Empty when there is nothing to do.
};
using Symptoms = std::vector<Symptom>;

enum class System { SqlServer, Sqlite, Other };

/// The site that is open, and what earlier examinations found out about it.
struct ExaminedSite {
  ConnectionOptions options;
  System system = System::Other;
  std::vector<StoredAssignment> assignments = {};
  std::optional<Site> site = {};  ///< Null when it cannot be read.
};

struct Examination {
  const char* subject;
  Symptoms (*run)(ExaminedSite&);
};

/// In the order in which they run. The site is open for all of them.
std::vector<Examination> examinations();

/// How the data are reached, and by what.
Symptoms examineConnection(ExaminedSite& site);
// What SQL Server says of itself and of the login; nothing of another system.
Symptoms examineLogin(ExaminedSite& site);
Symptoms examineEncryption(ExaminedSite& site);
Symptoms examineLanguage(ExaminedSite& site);
Symptoms examineCollation(ExaminedSite& site);
// The rows and the tables.
Symptoms examineRows(ExaminedSite& site);
Symptoms examineOfflineMarks(ExaminedSite& site);
Symptoms examineColumnTypes(ExaminedSite& site);
Symptoms examineKeys(ExaminedSite& site);
/// Listeners of configurations, and those of this computer if it is a workstation of the site.
Symptoms examinePorts(ExaminedSite& site);
// What surrounds the database.
Symptoms examineIniFile(ExaminedSite& site);
Symptoms examinePromptsFolder(ExaminedSite& site);
Symptoms examineClock(ExaminedSite& site);

/// The settings file, before it is used. Throws nothing.
Symptom examineSettingsFile(const ConnectionOptions& given);
/// Who can read the password file; nothing where none is named.
Symptoms examinePasswordFile(const ConnectionOptions& options);
/// The drivers of this computer, and whether both kinds of programs have the data source.
Symptoms examineDrivers(const ConnectionOptions& options);

/// Null when the database refuses the query. Throws Failure when the connection is lost.
std::optional<Table> tryQuery(const std::wstring& sql);
/// The first cell; null when the database refuses the query, and for no row.
std::optional<std::string> tryValue(const std::wstring& sql);
/// A warning for what the database does not tell.
Symptom unseen(const std::string& subject);

}  // namespace tlpacscfg::cli
