#include "data/site_command.h"

#include "data/workstation_key.h"
#include "odbc/error.h"
#include "support/text.h"

namespace tlpacscfg {

OutcomeUnknown::OutcomeUnknown(const RunTimeError& reason)
    : RunTimeError(reason.number(),
                   reason.description() + kLineBreak +
                       L"The connection was lost before the database confirmed. It may have saved "
                       L"the change.") {}

SiteCommand::SiteCommand() : path_(dataPath()), connection_(path_.transactionConnection()) {
  if (connection_) transaction_.emplace(*connection_);
}

void SiteCommand::markAndCommit() {
  if (!transaction_) return AddOfflineDbUpdate();
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
