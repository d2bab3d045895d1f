#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "data/result_set.h"
#include "odbc/connection.h"
#include "odbc/table.h"

namespace tlpacscfg {

/// How the cells of a loaded row are converted.
enum class CellRules {
  Database,
  DatabaseWithoutEmptyTexts,  ///< Its driver returns NULL for an empty text.
  RemoteClient,               ///< In columns with a substitute, what is no number becomes that.
};

/// What the remote path writes into the log before a request.
struct RemoteLogLine {
  const wchar_t* text;
  std::int16_t level;
};

/// A path to the site's data: SQL Server directly, the remote data client, or the local file of
/// stand-alone mode. This class itself is the path while none is open: it reads and executes
/// nothing. The paths hold no state; they work on what the modules hold.
class DataPath {
 public:
  virtual ~DataPath() = default;

  /// A remote client runs each request as a transaction of its own, keeps no shared result set, and
  /// reports its failures with texts of its own.
  virtual bool isRemote() const { return false; }
  /// Whether statements reach a database.
  virtual bool executes() const { return false; }
  virtual CellRules cellRules() const { return CellRules::Database; }

  /// Whether the database answers a query.
  virtual bool test() const;

  /// The rows of a statement, in the shared result set where the path has one. Null when no
  /// database is open, and when a remote client fails, which is only logged. Otherwise throws.
  virtual std::shared_ptr<ResultSet> load(const std::wstring& sql,
                                          const RemoteLogLine& remoteLogLine) const;
  /// Whether the statement has a row. Throws ObjectNotSet without a connection; a remote client
  /// that fails has none.
  virtual bool hasRow(const std::wstring& sql, const RemoteLogLine& remoteLogLine) const;
  /// Opens the shared result set anew where a database is open; otherwise it stays as it is.
  virtual void fillSharedResult(const std::wstring& /*sql*/) const {}

  /// Runs one or several action statements. What a remote client refuses is only logged.
  virtual void execute(const std::wstring& /*sql*/) const {}
  /// The same for one statement whose result goes into the shared result set, without log lines.
  virtual void executeIntoSharedResult(const std::wstring& sql) const { execute(sql); }

  /// For callers that must not miss a failure: these throw RunTimeError for whatever fails.
  virtual Table query(const std::wstring& /*sql*/) const { return Table(); }
  virtual void require(const std::wstring& sql) const { execute(sql); }
  /// The connection whose transaction a command can be; null where there is none.
  virtual std::shared_ptr<odbc::Connection> transactionConnection() const { return nullptr; }

  /// The names of the XML files in a directory; none when it cannot be read.
  virtual std::vector<std::wstring> xmlFiles(const std::wstring& directory) const;
};

/// The path that statements take: the remote client while it is connected, else the SQL Server
/// connection, else none.
const DataPath& dataPath();

/// The path that configurations are loaded by: the local file where the host asks for stand-alone
/// mode, whatever else is connected.
const DataPath& loadingPath();

}  // namespace tlpacscfg
