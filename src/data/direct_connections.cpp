#include "data/direct_connections.h"

#include <chrono>
#include <filesystem>

#include "data/data_path.h"
#include "data/mod_main.h"
#include "data/tl_comm_client.h"
#include "log/log_support.h"
#include "odbc/error.h"
#include "support/registry.h"
#include "support/runtime_error.h"
#include "support/secret.h"
#include "support/system.h"
#include "support/text.h"

namespace tlpacscfg {

namespace {

std::wstring errorText(const RunTimeError& error, const wchar_t* lastLine) {
  return L"Err.Description= " + error.description() + kLineBreak + L"Err.Number " +
         decimal(error.number()) + kLineBreak + lastLine;
}

void showConnectError(const RunTimeError& error) {
  if (error.number() == odbc::kLoginFailed) {
    system::showMessage({.text = error.description() + kLineBreak + decimal(error.number()) +
                                 kLineBreak + L"SQL Timeout, Please try again."});
  } else {
    // The connect string holds the password and is not shown.
    system::showMessage({.text = errorText(error, L"ADO connection String ")});
  }
}

/// A connect string, which holds a password: it is overwritten when destroyed, and growing leaves
/// no copy.
class ConnectString {
 public:
  /// The text never grows beyond `maxLength`, so it is never reallocated.
  explicit ConnectString(std::size_t maxLength) { text_.reserve(maxLength); }
  ~ConnectString() { wipe(text_); }
  ConnectString(const ConnectString&) = delete;
  ConnectString& operator=(const ConnectString&) = delete;

  void append(std::wstring_view piece) { text_.append(piece); }

  void appendValue(std::wstring_view value) { odbc::appendConnectValue(text_, value); }

  const std::wstring& text() const { return text_; }

 private:
  std::wstring text_;
};

std::wstring loginName(const HostSettings& config) {
  return config.SqlUserName.empty() ? L"sa" : config.SqlUserName;
}

bool fileExists(const std::wstring& file) {
  std::error_code ignored;
  return !file.empty() && std::filesystem::exists(std::filesystem::path(toUtf16(file)), ignored);
}

std::shared_ptr<odbc::Connection> openServer(const HostSettings& config,
                                             std::chrono::seconds loginTimeout, bool registered) {
  const std::wstring user = loginName(config);
  constexpr std::size_t kFixedPieces = 100;
  ConnectString parameters(kFixedPieces +
                           2 * (user.size() + config.Password.size() + config.SqlDbName.size() +
                                config.SqlServerName.size()));
  parameters.append(L"UID=");
  parameters.appendValue(user);
  parameters.append(L";PWD=");
  parameters.appendValue(trimBlanks(config.Password));
  if (!registered) {
    parameters.append(L";Database=");
    parameters.appendValue(config.SqlDbName);
    parameters.append(L";Server=");
    parameters.appendValue(config.SqlServerName);
    parameters.append(L";Driver={SQL Server};DSN=''");
  }
  parameters.append(L";APP=TLPACSCFG.DLL;");
  const auto environment =
      std::make_shared<const odbc::Environment>(odbc::CursorLibrary::NotUsed, loginTimeout);
  auto connection =
      std::make_shared<odbc::Connection>(environment, registered ? config.SQLDSN : std::wstring(),
                                         odbc::Prompt::Never, parameters.text());
  connection->limitStatements({.time = kStatementTime});
  return connection;
}

}  // namespace

std::shared_ptr<odbc::Connection> openSqlConnection(const HostSettings& config,
                                                    std::chrono::seconds loginTimeout) {
  return openServer(config, loginTimeout, DSNDatabaseExists(config.SQLDSN));
}

std::shared_ptr<odbc::Connection> openDataSource(const HostSettings& config,
                                                 std::chrono::seconds loginTimeout) {
  return openServer(config, loginTimeout, true);
}

std::shared_ptr<odbc::Connection> openAccessFile(const std::wstring& file) {
  const auto environment = std::make_shared<const odbc::Environment>(odbc::CursorLibrary::Used,
                                                                     std::chrono::seconds(10));
  return std::make_shared<odbc::Connection>(
      environment, L"", odbc::Prompt::ForMissingInformation,
      L"UID=;PWD=;DRIVERID=25;Driver={Microsoft Access Driver (*.mdb)};DBQ=" + file + L";");
}

bool ConnectToDatabase(const HostSettings& config) {
  if (modMain.g_blnSqlConnected) return true;
  WriteLog(L"[TLPACSCFG] Connecting to database", log_level::kOperation);
  modMain.g_strSqlUser = loginName(config);
  wipe(modMain.g_strSqlPassword);
  modMain.g_strSqlPassword = trimBlanks(config.Password);
  try {
    system::processPendingMessages();
    modMain.g_conSql = openSqlConnection(config, std::chrono::seconds(config.SqlTimeout));
    modMain.g_envSql = modMain.g_conSql->environment();
    modMain.g_blnSqlConnected = true;
    return true;
  } catch (const std::exception& error) {
    showConnectError(describe(error));
    return false;
  }
}

bool ConnectToOfflineDatabase(const HostSettings&) {
  if (modMain.g_blnOfflineConnected) return true;
  try {
    WriteLog(L"[TLPACSCFG] Connecting to offline database", log_level::kOperation);
    if (!fileExists(modMain.g_strOfflineDbPath)) {
      system::showMessage({.text =
                               L"Local configuration database was not set or could not be found.  "
                               L"Cannot load PACS configurations in Stand Alone mode"});
      return false;
    }
    modMain.g_conOffline = openAccessFile(modMain.g_strOfflineDbPath);
    modMain.g_envOffline = modMain.g_conOffline->environment();
    modMain.g_blnOfflineConnected = true;
    return true;
  } catch (const std::exception& error) {
    system::showMessage(
        {.text = errorText(describe(error), L"Unable to connect to local database.")});
    return false;
  }
}

void DisconnectDatabase() {
  DisconnectTlCommClient();
  const auto disconnect = [](auto& connection, auto& environment) {
    // A configuration object may hold it too, and must see that it is closed.
    if (connection) connection->close();
    connection.reset();
    environment.reset();
  };
  if (modMain.g_blnSqlConnected) disconnect(modMain.g_conSql, modMain.g_envSql);
  if (modMain.g_blnOfflineConnected) disconnect(modMain.g_conOffline, modMain.g_envOffline);
  modMain.g_blnSqlConnected = false;
  modMain.g_blnOfflineConnected = false;
}

bool TestDatabaseConnection() { return dataPath().test(); }

bool DSNDatabaseExists(const std::wstring& dsn) {
  if (dsn.empty()) return false;
  const std::wstring key = L"SOFTWARE\\ODBC\\ODBC.INI\\" + dsn;
  return !ReadRegString(registry::Root::LocalMachine, key, L"DATABASE").empty() ||
         !ReadRegString(registry::Root::CurrentUser, key, L"DATABASE").empty();
}

}  // namespace tlpacscfg
