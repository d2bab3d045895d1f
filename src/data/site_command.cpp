#include "data/site_command.h"

#include "data/database.h"
#include "odbc/error.h"
#include "data/statements.h"
#include "data/tl_comm_client.h"
#include "data/workstation_key.h"
#include "support/text.h"

namespace tlpacscfg {

OutcomeUnknown::OutcomeUnknown(const RunTimeError& reason)
    : RunTimeError(reason.number(),
                   reason.description() + kLineBreak +
                       L"The connection was lost before the database confirmed. It may have saved "
                       L"the change.") {}

SiteCommand::SiteCommand() : remote_(TlCommClientConnected()) {
  if (remote_ || !g_blnSqlConnected) return;
  connection_ = g_conSql;
  if (!connection_) raise(ErrorNumber::ObjectNotSet);
  transaction_.emplace(*connection_);
}

Table SiteCommand::query(const std::wstring& sql) {
  if (remote_) return requireTlCommClientTable(sql);
  return connection_ ? connection_->query(sql) : Table();
}

void SiteCommand::execute(const std::wstring& sql) {
  if (remote_) {
    requireTlCommClientExecution(sql);
  } else {
    ExecuteSQL(sql);
  }
}

void SiteCommand::markAndCommit() {
  if (remote_) return AddOfflineDbUpdate();
  if (!transaction_) return;
  execute(kOfflineUpdateStatement);
  try {
    transaction_->commit();
  } catch (const odbc::Error& error) {
    if (connection_->isLost()) throw OutcomeUnknown(error);
    throw;
  }
  transaction_.reset();
}

}  // namespace tlpacscfg
