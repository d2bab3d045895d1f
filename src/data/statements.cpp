#include "data/statements.h"

#include "data/database.h"
#include "data/tl_comm_client.h"
#include "log/log_support.h"
#include "support/text.h"

namespace tlpacscfg {

void ExecuteSQL(const std::wstring& sql) {
  if (TlCommClientConnected()) {
    TlCommClientExecute(sql);
  } else if (g_blnSqlConnected) {
    WriteLog(L"[TLPACSCFG] Executing query", log_level::kOperation);
    WriteLog(std::wstring(L"[TLPACSCFG] Query:") + kLineBreak + sql, log_level::kStatementText);
    const std::shared_ptr<odbc::Connection> connection = g_conSql;
    if (!connection) raise(ErrorNumber::ObjectNotSet);
    connection->execute(sql);
  }
}

std::wstring FixQuotes(const std::wstring& text) {
  std::wstring doubled;
  doubled.reserve(text.size());
  for (const wchar_t letter : text) {
    doubled += letter;
    if (letter == L'\'') doubled += letter;
  }
  return doubled;
}

bool statementsAreExecuted() { return TlCommClientConnected() || g_blnSqlConnected; }

}  // namespace tlpacscfg
