#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "odbc/dialect.h"
#include "odbc/fetch.h"
#include "odbc/handle.h"
#include "odbc/table.h"

namespace tlpacscfg::odbc {

enum class CursorLibrary { NotUsed, Used };
enum class Prompt { Never, ForMissingInformation };

class Environment {
 public:
  Environment(CursorLibrary cursorLibrary, std::chrono::seconds loginTimeout);

  const EnvironmentHandle& handle() const { return handle_; }
  CursorLibrary cursorLibrary() const { return cursorLibrary_; }
  std::chrono::seconds loginTimeout() const { return loginTimeout_; }

 private:
  EnvironmentHandle handle_;
  CursorLibrary cursorLibrary_;
  std::chrono::seconds loginTimeout_;
};

struct StatementLimits {
  /// 0: no limit. Drivers without time limits ignore it.
  std::chrono::seconds time{0};
  /// Of all cells together, a few added for each cell; a larger result throws ResultTooLarge.
  std::size_t resultCharacters = kNoResultLimit;
};

/// An open connection; closed when the last owner lets go of it. Keeps its environment alive.
/// Every operation throws Error. A connection that is lost stays lost: its owner opens another one.
class Connection {
 public:
  /// While it exists, everything that the connection runs is one transaction, serializable where
  /// the driver supports it. The destructor rolls back what was not committed. If that fails, it
  /// closes the connection, so that the transaction is never committed.
  class Transaction {
   public:
    /// Throws Error, also while another transaction is open.
    explicit Transaction(Connection& connection);
    ~Transaction();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

    /// Throws the first failure of the transaction's statements, even if the caller ignored it.
    void commit();

   private:
    void restoreIsolation() noexcept;

    Connection& connection_;
    std::optional<SQLUINTEGER> isolationBefore_;
  };

  /// `dataSource` may be empty; then the parameters name the driver. Connects without the cursor
  /// library when the driver cannot be used with it.
  Connection(std::shared_ptr<const Environment> environment, std::wstring_view dataSource,
             Prompt prompt, std::wstring_view parameters);
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  /// All rows of the first result that has columns; an error in a later result is an error too. A
  /// text that only reads may be executed again to read a long cell.
  Table query(std::wstring_view sql);

  /// The same for a foreign text, which is executed once, and as one transaction if it may write.
  /// It joins a transaction that is open.
  Table queryOnce(std::wstring_view sql);

  /// Runs one or several statements in one transaction: all of them, or none. They join a
  /// transaction that is open.
  void execute(std::wstring_view sql);

  /// Asks the driver, not the server, and remembers what earlier failures told.
  bool isLost() const;

  /// Sends the server a query that changes nothing. False when the connection is lost.
  bool answers();

  /// Rolls back what is not committed.
  void close() noexcept;

  /// Applies to the statements that follow.
  void limitStatements(const StatementLimits& limits);
  const StatementLimits& limits() const { return limits_; }

  /// The driver in use and the database management system.
  struct Description {
    std::wstring driver;
    std::wstring driverVersion;
    std::wstring system;
    std::wstring systemVersion;
  };
  Description description() const;

  const std::shared_ptr<const Environment>& environment() const { return environment_; }
  Dialect dialect() const { return dialect_; }

  /// Debian's driver for Access files returns NULL for an empty text.
  bool emptyTextsComeAsNull() const { return dialect_ == Dialect::AccessReader; }

 private:
  void open(CursorLibrary cursorLibrary, Prompt prompt, std::wstring_view parameters);
  void run(std::wstring_view sql);
  enum class Fetch { Blocks, Cells };
  Table fetch(std::wstring_view sql, Fetch way);
  template <class Work>
  auto recordingFailure(Work work);
  template <class Work>
  void asTransaction(Work work);
  void begin();
  void commit();
  void rollBack() noexcept;
  bool endInRollback() const noexcept;
  bool resynchronizeAndRollBack() const noexcept;
  void tryToExecute(std::wstring_view sql) const noexcept;
  SQLRETURN setAutocommit(std::uintptr_t mode) const;
  SQLRETURN setIsolation(SQLUINTEGER level) const noexcept;
  StatementHandle newStatement() const;

  std::shared_ptr<const Environment> environment_;
  ConnectionHandle handle_;
  Dialect dialect_ = Dialect::SqlServer;
  StatementLimits limits_;
  bool lost_ = false;
  bool inTransaction_ = false;
  /// The first failure in the open transaction.
  std::optional<Error> failure_;
};

/// Appends a value to a connect string, in braces where it would be misread without them. The text
/// that follows must begin with a semicolon.
void appendConnectValue(std::wstring& text, std::wstring_view value);

/// The connect string without a pair for an empty data source name, which some drivers refuse when
/// there is a server too.
std::wstring withoutEmptyDataSource(std::wstring_view parameters);

}  // namespace tlpacscfg::odbc
