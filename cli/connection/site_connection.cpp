#include "cli/connection/site_connection.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <functional>
#include <optional>
#include <utility>

#include "cli/connection/secret.h"
#include "cli/connection/service_client.h"
#include "cli/connection/settings_file.h"
#include "cli/formats/files.h"
#include "cli/base/console.h"
#include "cli/base/failure.h"
#include "client/protocol.h"
#include "data/direct_connections.h"
#include "data/mod_main.h"
#include "data/tl_comm_client.h"
#include "host/host_object.h"
#include "odbc/error.h"
#include "support/scope_exit.h"
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

void openServer(const ConnectionOptions& options, HostSettings& settings, std::wstring& secret) {
  settings.SqlServerName = fromUtf8(options.server);
  settings.Password = std::move(secret);
  useConnection(openSqlConnection(settings, std::chrono::seconds(options.timeout)));
}

void openDsn(const ConnectionOptions& options, HostSettings& settings, std::wstring& secret) {
  settings.SQLDSN = fromUtf8(options.dataSource);
  settings.Password = std::move(secret);
  useConnection(openDataSource(settings, std::chrono::seconds(options.timeout)));
}

void openSqlite(const ConnectionOptions& options, HostSettings&, std::wstring&) {
  requireFile(options.sqliteFile);
  std::wstring parameters = L"Driver={SQLite3};Timeout=10000;Database=";
  odbc::appendConnectValue(parameters, fromUtf8(options.sqliteFile));
  const auto environment = std::make_shared<const odbc::Environment>(
      odbc::CursorLibrary::NotUsed, std::chrono::seconds(options.timeout));
  useConnection(
      std::make_shared<odbc::Connection>(environment, L"", odbc::Prompt::Never, parameters + L";"));
}

void openOffline(const ConnectionOptions& options, HostSettings&, std::wstring&) {
  requireFile(options.offlineFile);
  modMain.g_blnUseOfflineDB = true;
  modMain.g_conOffline = openAccessFile(fromUtf8(options.offlineFile));
  modMain.g_envOffline = modMain.g_conOffline->environment();
  modMain.g_blnOfflineConnected = true;
}

/// Without the token. Throws Failure.
client::Settings serviceSettings(const ConnectionOptions& options) {
  client::Settings settings;
  settings.plainHttp = options.plainHttp;
  if (options.fingerprint.empty()) return settings;
  const auto fingerprint = client::parseFingerprint(fromUtf8(options.fingerprint));
  if (!fingerprint) {
    throw Failure(ExitCode::Usage, "The fingerprint is not one of a SHA-256 certificate digest.");
  }
  settings.fingerprints.push_back(*fingerprint);
  return settings;
}

void openService(const ConnectionOptions& options, HostSettings&, std::wstring& secret) {
  const std::size_t colon = options.service.rfind(':');
  client::Settings settings = serviceSettings(options);
  settings.token = std::move(secret);
  modTlCommClient.g_objTlCommClient = std::make_shared<ServiceClient>(
      settings, ServiceClient::Address{fromUtf8(options.service.substr(0, colon)),
                                       fromUtf8(options.service.substr(colon + 1)),
                                       decimal(options.timeout)});
  modTlCommClient.g_strTlDatabase = fromUtf8(options.database);
  wipe(settings.token);
}

struct Way {
  const std::string& chosen;
  /// What the password is called; null for a way without one.
  const char* secret;
  IfMissing ifMissing;
  void (*open)(const ConnectionOptions&, HostSettings&, std::wstring& secret);
};

/// Throws Failure unless the options name one way, and all of it.
Way wayTo(const ConnectionOptions& options) {
  const auto ifMissing = options.user.empty() ? IfMissing::Empty : IfMissing::Refuse;
  const Way ways[] = {{options.server, "password of the server", IfMissing::Refuse, openServer},
                      {options.dataSource, "password of the data source", ifMissing, openDsn},
                      {options.sqliteFile, nullptr, IfMissing::Empty, openSqlite},
                      {options.offlineFile, nullptr, IfMissing::Empty, openOffline},
                      {options.service, "token of the service", IfMissing::Refuse, openService}};
  const auto isChosen = [](const Way& way) { return !way.chosen.empty(); };
  if (std::ranges::count_if(ways, isChosen) != 1) {
    throw Failure(ExitCode::Usage,
                  "Name the site with one of --server, --dsn, --sqlite, --offline, --service and "
                  "--site.");
  }
  const std::size_t colon = options.service.rfind(':');
  if (!options.service.empty() &&
      (colon == options.service.npos || colon == 0 || options.database.empty())) {
    throw Failure(ExitCode::Usage, "Write --service HOST:PORT --database NAME.");
  }
  serviceSettings(options);
  return *std::ranges::find_if(ways, isChosen);
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

std::wstring secretOf(const ConnectionOptions& given) {
  const ConnectionOptions options = withSiteSettings(given);
  const Way way = wayTo(options);
  return way.secret != nullptr ? readSecret(options, way.secret, way.ifMissing) : std::wstring();
}

SiteConnection::SiteConnection(const ConnectionOptions& given)
    : SiteConnection(given, secretOf(given)) {}

SiteConnection::SiteConnection(const ConnectionOptions& given, std::wstring secret) {
  const ScopeExit wiped([&] { wipe(secret); });
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
    wayTo(options).open(options, *settings, secret);
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

void requireFittingRequest(const ConnectionOptions& given, const std::wstring& sql) {
  const ConnectionOptions options = withSiteSettings(given);
  if (options.service.empty()) return;
  const auto size =
      client::protocol::requestOf(L"", {{"database", fromUtf8(options.database)}, {"sql", sql}})
          .size();
  if (std::cmp_less_equal(size, options.requestBytes)) return;
  throw Failure(ExitCode::Usage,
                "The change is too big for the service: a request of " + std::to_string(size) +
                    " bytes, where it takes " + std::to_string(options.requestBytes) +
                    ". Nothing was changed. Change fewer rows at a time, or configure a larger "
                    "request-bytes for the service and give it here as --request-bytes.");
}

Failure failureOf(const RunTimeError& error) {
  return {connectionIsLost() ? ExitCode::NoConnection : ExitCode::Refused,
          toUtf8(error.description())};
}

bool knowsPromptFiles() { return !modMain.g_strNetworkRootDir.empty(); }

}  // namespace tlpacscfg::cli
