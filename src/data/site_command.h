#pragma once

#include <memory>
#include <optional>
#include <string>

#include "data/data_path.h"
#include "odbc/connection.h"
#include "support/runtime_error.h"

namespace tlpacscfg {

/// The connection was lost while the database was asked to commit.
class OutcomeUnknown : public RunTimeError {
 public:
  explicit OutcomeUnknown(const RunTimeError& reason);
};

/// One command of the windows, from its first query to its last statement. On the direct path it
/// is one transaction, the mark for offline copies included, and rolled back unless it was
/// committed. On the remote path each request is a transaction of its own. Whatever fails is a
/// RunTimeError.
class SiteCommand {
 public:
  SiteCommand();

  /// False in stand-alone mode and while nothing is connected: queries give no rows then, and
  /// statements do nothing.
  bool reachesDatabase() const { return path_.executes(); }
  /// Whether statements can still be rolled back.
  bool isTransaction() const { return transaction_.has_value(); }

  Table query(const std::wstring& sql) { return path_.query(sql); }
  void execute(const std::wstring& sql) { path_.require(sql); }

  /// Writes the mark for offline copies and commits. On the remote path, where the change is
  /// stored already, a mark that fails is only logged.
  void markAndCommit();

 private:
  const DataPath& path_;
  std::shared_ptr<odbc::Connection> connection_;
  std::optional<odbc::Connection::Transaction> transaction_;
};

}  // namespace tlpacscfg
