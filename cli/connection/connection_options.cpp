#include "cli/connection/connection_options.h"

#include <cstdint>

namespace tlpacscfg::cli {

std::vector<Option> optionsOf(ConnectionOptions& options) {
  return {
      {"--server", "NAME", "The SQL Server, with --database and --user", &options.server},
      {"--database", "NAME", "The database of the server or of the service", &options.database},
      {"--user", "NAME", "The login name; sa when it is not given", &options.user},
      {"--dsn", "NAME", "An ODBC data source", &options.dataSource},
      {"--sqlite", "FILE", "An SQLite database", &options.sqliteFile},
      {"--offline", "FILE", "The Access file of a workstation, which is only read",
       &options.offlineFile},
      {"--service", "HOST:PORT", "The remote data service, with --database", &options.service},
      {"--fingerprint", "SHA256", "Of the service's certificate, instead of an authority",
       &options.fingerprint},
      {"--plain-http", "", "Reach a service on this computer without TLS", &options.plainHttp},
      {"--request-bytes", "BYTES",
       "The largest request that the service takes; 1048576 when it is not given",
       Number{&options.requestBytes, 1024, 1 << 30}},
      {"--site", "NAME", "A site of the settings file", &options.site},
      {"--settings", "FILE", "The settings file, if it is not the user's own",
       &options.settingsFile},
      {"--password-file", "FILE", "The file with the password, or with the service's token",
       &options.passwordFile},
      {"--password-stdin", "", "Read the password or token from the first line of standard input",
       &options.passwordFromInput},
      {"--ini", "FILE", "The site's INI file, which names the network root directory",
       &options.iniFile},
      {"--root", "DIR", "The network root directory, with TALORA/PROMPTS in it",
       &options.rootDirectory},
      {"--timeout", "SECONDS", "How long to wait for a connection; 15 when it is not given",
       Number{&options.timeout, 1, 3600}},
      {"--user-id", "NUMBER", "Stored as the last user of configurations that change",
       Number{&options.userId, 0, INT16_MAX}},
      {"--journal", "DIR", "Where changes are recorded, if not at the user's own place",
       &options.journal},
  };
}

}  // namespace tlpacscfg::cli
