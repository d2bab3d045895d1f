#include "cli/connection/site_connection.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <functional>
#include <optional>

#include "cli/connection/secret.h"
#include "cli/connection/service_client.h"
#include "cli/connection/settings_file.h"
#include "cli/formats/files.h"
#include "cli/base/console.h"
#include "cli/base/failure.h"
#include "data/direct_connections.h"
#include "data/mod_main.h"
#include "data/tl_comm_client.h"
#include "host/host_object.h"
#include "odbc/error.h"
#include "support/secret.h"
#include "support/system.h"
#include "support/text.h"

namespace tlpacscfg::cli {
namespace {

void useConnection(std::shared_ptr<odbc::Connection> connection) {
  modMain.g_envSql = connection->environment();
  modMain.g_conSql = std::move(connection);
  modMain.g_blnSqlConnected = true;
}

/// The driver manager would create a missing file, or report something else.
void requireFile(const std::string& file) {
  std::error_code ignored;
  if (std::filesystem::is_regular_file(pathOf(file), ignored)) return;
  throw Failure(ExitCode::NoConnection, "There is no file '" + file + "'.");
}

void openServer(const ConnectionOptions& options, HostSettings& settings) {
  settings.SqlServerName = fromUtf8(options.server);
  settings.Password = readSecret(options, "password of the server", IfMissing::Refuse);
  useConnection(openSqlConnection(settings, std::chrono::seconds(options.timeout)));
}

void openDsn(const ConnectionOptions& options, HostSettings& settings) {
  settings.SQLDSN = fromUtf8(options.dataSource);
  const bool hasLogin = !options.user.empty();
  settings.Password = readSecret(options, "password of the data source",
                                 hasLogin ? IfMissing::Refuse : IfMissing::Empty);
  useConnection(openDataSource(settings, std::chrono::seconds(options.timeout)));
}

void openSqlite(const ConnectionOptions& options, HostSettings&) {
  requireFile(options.sqliteFile);
  std::wstring parameters = L"Driver={SQLite3};Timeout=10000;Database=";
  odbc::appendConnectValue(parameters, fromUtf8(options.sqliteFile));
  const auto environment = std::make_shared<const odbc::Environment>(
      odbc::CursorLibrary::NotUsed, std::chrono::seconds(options.timeout));
  useConnection(
      std::make_shared<odbc::Connection>(environment, L"", odbc::Prompt::Never, parameters + L";"));
}

void openOffline(const ConnectionOptions& options, HostSettings&) {
  requireFile(options.offlineFile);
  modMain.g_blnUseOfflineDB = true;
  modMain.g_conOffline = openAccessFile(fromUtf8(options.offlineFile));
  modMain.g_envOffline = modMain.g_conOffline->environment();
  modMain.g_blnOfflineConnected = true;
}

void openService(const ConnectionOptions& options, HostSettings&) {
  const std::size_t colon = options.service.rfind(':');
  if (colon == options.service.npos || colon == 0 || options.database.empty()) {
    throw Failure(ExitCode::Usage, "Write --service HOST:PORT --database NAME.");
  }
  client::Settings settings;
  settings.plainHttp = options.plainHttp;
  if (!options.fingerprint.empty()) {
    const auto fingerprint = client::parseFingerprint(fromUtf8(options.fingerprint));
    if (!fingerprint) {
      throw Failure(ExitCode::Usage, "The fingerprint is not one of a SHA-256 certificate digest.");
    }
    settings.fingerprints.push_back(*fingerprint);
  }
  settings.token = readSecret(options, "token of the service", IfMissing::Refuse);
  modTlCommClient.g_objTlCommClient = std::make_shared<ServiceClient>(
      settings, ServiceClient::Address{fromUtf8(options.service.substr(0, colon)),
                                       fromUtf8(options.service.substr(colon + 1)),
                                       decimal(options.timeout)});
  modTlCommClient.g_strTlDatabase = fromUtf8(options.database);
  wipe(settings.token);
}

struct Way {
  const std::string& chosen;
  void (*open)(const ConnectionOptions&, HostSettings&);
};

void open(const ConnectionOptions& options, HostSettings& settings) {
  const Way ways[] = {{options.server, openServer},
                      {options.dataSource, openDsn},
                      {options.sqliteFile, openSqlite},
                      {options.offlineFile, openOffline},
                      {options.service, openService}};
  const auto isChosen = [](const Way& way) { return !way.chosen.empty(); };
  if (std::ranges::count_if(ways, isChosen) != 1) {
    throw Failure(ExitCode::Usage,
                  "Name the site with one of --server, --dsn, --sqlite, --offline, --service and "
                  "--site.");
  }
  std::ranges::find_if(ways, isChosen)->open(options, settings);
}

void findRootDirectory(const ConnectionOptions& options, HostSettings& settings) {
  if (!options.rootDirectory.empty()) {
    modMain.g_strNetworkRootDir = fromUtf8(options.rootDirectory);
  } else if (!options.iniFile.empty()) {
    settings.Talora_INIFile = fromUtf8(options.iniFile);
    ReadNetworkRootDir();
  }
}

bool connectionIsLost() {
  const auto service = std::dynamic_pointer_cast<ServiceClient>(modTlCommClient.g_objTlCommClient);
  if (service) return !service->answers();
  const auto& connection = modMain.g_blnUseOfflineDB ? modMain.g_conOffline : modMain.g_conSql;
  return !connection || connection->isLost();
}

}  // namespace

std::string nameOfSite(const ConnectionOptions& given) {
  const ConnectionOptions options = withSiteSettings(given);
  const auto absolute = [](const std::string& file) {
    std::error_code error;
    const auto path = std::filesystem::weakly_canonical(pathOf(file), error);
    return error ? file : utf8Of(path);
  };
  const std::string database = options.database.empty() ? "" : ", database " + options.database;
  if (!options.server.empty()) return "server " + options.server + database;
  if (!options.dataSource.empty()) return "data source " + options.dataSource;
  if (!options.sqliteFile.empty()) return "file " + absolute(options.sqliteFile);
  if (!options.offlineFile.empty()) return "file " + absolute(options.offlineFile);
  if (!options.service.empty()) return "service " + options.service + database;
  return {};
}

SiteConnection::SiteConnection(const ConnectionOptions& given) {
  const ConnectionOptions options = withSiteSettings(given);
  system::showMessage = system::MessageBoxes([](const system::Message& message) {
    say("tlpacscfg: " + toUtf8(message.text));
    return message.buttons == system::Buttons::Ok ? system::Answer::Ok : system::Answer::No;
  });
  const auto settings = std::make_shared<HostSettings>();
  settings->SqlDbName = fromUtf8(options.database);
  settings->SqlUserName = fromUtf8(options.user);
  settings->User_ID = static_cast<std::int16_t>(options.userId);
  modMain.g_objConfig = settings;
  try {
    open(options, *settings);
  } catch (const odbc::Error& error) {
    throw Failure(ExitCode::NoConnection,
                  "There is no connection to the database.\n" + toUtf8(error.description()));
  }
  findRootDirectory(options, *settings);
}

SiteConnection::~SiteConnection() {
  DisconnectDatabase();
  releaseModMain();
  modMain.g_blnUseOfflineDB = false;
  modMain.g_strNetworkRootDir.clear();
}

Failure failureOf(const RunTimeError& error) {
  return {connectionIsLost() ? ExitCode::NoConnection : ExitCode::Refused,
          toUtf8(error.description())};
}

bool knowsPromptFiles() { return !modMain.g_strNetworkRootDir.empty(); }

}  // namespace tlpacscfg::cli
