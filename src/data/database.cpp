#include "data/database.h"

#include <chrono>
#include <filesystem>
#include <optional>
#include <utility>

#include "data/odbc/error.h"
#include "data/tl_comm_client.h"
#include "log/log_support.h"
#include "support/doors.h"
#include "support/registry.h"
#include "support/runtime_error.h"
#include "support/text.h"

namespace tlpacscfg {

bool g_blnSqlConnected = false;
bool g_blnOfflineConnected = false;
std::shared_ptr<odbc::Environment> g_envSql;
std::shared_ptr<odbc::Connection> g_conSql;
std::shared_ptr<odbc::Environment> g_envOffline;
std::shared_ptr<odbc::Connection> g_conOffline;
std::unique_ptr<ResultSet> g_rsQuery;
std::wstring g_strSqlUser;
std::wstring g_strSqlPassword;

namespace {

constexpr const wchar_t* kTestStatement = L"SELECT GetDate()";

std::wstring errorText(const RunTimeError& error, const wchar_t* lastLine) {
  return L"Err.Description= " + error.description() + kLineBreak + L"Err.Number " +
         decimal(error.number()) + kLineBreak + lastLine;
}

void showConnectError(const RunTimeError& error) {
  if (error.number() == odbc::kLoginFailed) {
    doors::showMessage({.text = error.description() + kLineBreak + decimal(error.number()) +
                                kLineBreak + L"SQL Timeout, Please try again."});
  } else {
    // The connect string holds the password and is not shown.
    doors::showMessage({.text = errorText(error, L"ADO connection String ")});
  }
}

void openSqlConnection(const HostSettings& config) {
  g_envSql = std::make_shared<odbc::Environment>(odbc::CursorLibrary::NotUsed,
                                                 std::chrono::seconds(config.SqlTimeout));
  const std::wstring login = L"UID=" + g_strSqlUser + L";PWD=" + g_strSqlPassword;
  const std::wstring application = L";APP=TLPACSCFG.DLL;";
  if (DSNDatabaseExists(config.SQLDSN)) {
    g_conSql = std::make_shared<odbc::Connection>(g_envSql, config.SQLDSN, odbc::Prompt::Never,
                                                  login + application);
  } else {
    g_conSql = std::make_shared<odbc::Connection>(g_envSql, L"", odbc::Prompt::Never,
                                                  login + L";Database=" + config.SqlDbName +
                                                      L";Server=" + config.SqlServerName +
                                                      L";Driver={SQL Server};DSN=''" + application);
  }
}

bool fileExists(const std::wstring& file) {
  std::error_code ignored;
  return !file.empty() && std::filesystem::exists(std::filesystem::path(toUtf16(file)), ignored);
}

}  // namespace

bool ConnectToDatabase(const HostSettings& config) {
  if (g_blnSqlConnected) return true;
  WriteLog(L"[TLPACSCFG] Connecting to database", log_level::kOperation);
  g_strSqlUser = config.SqlUserName.empty() ? L"sa" : config.SqlUserName;
  g_strSqlPassword = trimBlanks(config.Password);
  try {
    doors::processPendingMessages();
    openSqlConnection(config);
    g_blnSqlConnected = true;
    return true;
  } catch (const std::exception& error) {
    showConnectError(describe(error));
    return false;
  }
}

bool ConnectToOfflineDatabase(const HostSettings&) {
  if (g_blnOfflineConnected) return true;
  try {
    WriteLog(L"[TLPACSCFG] Connecting to offline database", log_level::kOperation);
    if (!fileExists(g_strOfflineDbPath)) {
      doors::showMessage({.text =
                              L"Local configuration database was not set or could not be found.  "
                              L"Cannot load PACS configurations in Stand Alone mode"});
      return false;
    }
    g_envOffline =
        std::make_shared<odbc::Environment>(odbc::CursorLibrary::Used, std::chrono::seconds(10));
    g_conOffline = std::make_shared<odbc::Connection>(
        g_envOffline, L"", odbc::Prompt::ForMissingInformation,
        L"UID=;PWD=;DRIVERID=25;Driver={Microsoft Access Driver (*.mdb)};DBQ=" +
            g_strOfflineDbPath + L";");
    g_blnOfflineConnected = true;
    return true;
  } catch (const std::exception& error) {
    doors::showMessage(
        {.text = errorText(describe(error), L"Unable to connect to local database.")});
    return false;
  }
}

void DisconnectDatabase() {
  DisconnectTlCommClient();
  if (g_blnSqlConnected) {
    g_conSql.reset();
    g_envSql.reset();
  }
  if (g_blnOfflineConnected) {
    g_conOffline.reset();
    g_envOffline.reset();
  }
  g_blnSqlConnected = false;
  g_blnOfflineConnected = false;
}

bool TestDatabaseConnection() {
  if (TlCommClientConnected()) return TlCommClientExecute(kTestStatement);
  if (g_blnSqlConnected) {
    g_rsQuery.reset();
    try {
      openShared(*g_conSql, kTestStatement);
    } catch (const RunTimeError&) {
      return false;
    }
  }
  if (!g_rsQuery) return false;
  try {
    const bool atEnd = g_rsQuery->EndOfData();
    g_rsQuery->Close();
    return !atEnd;
  } catch (const RunTimeError&) {
    // A result set closed earlier answers no question, which does not fail the test.
    return true;
  }
}

bool DSNDatabaseExists(const std::wstring& dsn) {
  if (dsn.empty()) return false;
  const std::wstring key = L"SOFTWARE\\ODBC\\ODBC.INI\\" + dsn;
  return !ReadRegString(registry::Root::LocalMachine, key, L"DATABASE").empty() ||
         !ReadRegString(registry::Root::CurrentUser, key, L"DATABASE").empty();
}

void requireExecution(const std::function<void()>& statements) {
  g_strTlRefusal.reset();
  statements();
  if (!g_strTlRefusal) return;
  throw RunTimeError(odbc::kOdbcFailed,
                     g_strTlRefusal->empty()
                         ? L"The remote data client could not execute a statement."
                         : *g_strTlRefusal);
}

void openShared(odbc::Connection& connection, const std::wstring& sql) {
  g_rsQuery = std::make_unique<ResultSet>(connection.query(sql));
}

ResultSet& sharedResult() {
  if (!g_rsQuery) raise(ErrorNumber::ObjectNotSet);
  return *g_rsQuery;
}

}  // namespace tlpacscfg
