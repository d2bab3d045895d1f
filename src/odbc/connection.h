#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "odbc/dialect.h"
#include "odbc/block_fetch.h"
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

/// What a statement may take.
struct StatementLimits {
  /// For drivers that know a time limit; 0 is none.
  std::chrono::seconds time{0};
  /// Of all cells together, with a few for each cell; beyond it a query throws ResultTooLarge.
  std::size_t resultCharacters = kNoResultLimit;
};

/// An open connection; closed when the last owner lets go of it. Keeps its environment alive.
/// Every operation throws Error. A connection that is lost stays lost: its owner opens another one.
class Connection {
 public:
  /// While it lives, everything that the connection runs is one transaction, serializable where the
  /// driver knows it. Its end takes the transaction back unless it was committed. One that cannot
  /// be taken back closes the connection, so that it never becomes a commit.
  class Transaction {
   public:
    /// Throws Error also while another one is open.
    explicit Transaction(Connection& connection);
    ~Transaction();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

    /// Throws the failure of any statement that ran in it, even where the caller ignored that.
    void commit();

   private:
    void restoreIsolation() noexcept;

    Connection& connection_;
    std::optional<SQLUINTEGER> isolationBefore_;
  };

  /// `dataSource` may be empty; then the parameters name the driver. A cursor library that cannot
  /// be used with the driver is done without.
  Connection(std::shared_ptr<const Environment> environment, std::wstring_view dataSource,
             Prompt prompt, std::wstring_view parameters);
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  /// All rows of the first result that has columns; an error in a later result is an error too.
  Table query(std::wstring_view sql);

  /// Runs one or several statements in one transaction: all of them, or none. In a transaction that
  /// is open they become part of it.
  void execute(std::wstring_view sql);

  /// Known without asking the server: the driver says so, or the last failure did.
  bool isLost() const;

  /// Asks the server a question that changes nothing. False when the connection is lost.
  bool answers();

  /// Takes back what is not committed.
  void close() noexcept;

  /// For the statements from now on.
  void limitStatements(const StatementLimits& limits);
  const StatementLimits& limits() const { return limits_; }

  const std::shared_ptr<const Environment>& environment() const { return environment_; }
  Dialect dialect() const { return dialect_; }

  /// The reader of Access files does not tell an empty text from NULL.
  bool emptyTextsComeAsNull() const { return dialect_ == Dialect::AccessReader; }

 private:
  void open(CursorLibrary cursorLibrary, Prompt prompt, std::wstring_view parameters);
  void run(std::wstring_view sql);
  Table fetch(std::wstring_view sql);
  template <class Work>
  auto noting(Work work);
  void begin();
  void commit();
  void takeBack() noexcept;
  bool rollBack() const noexcept;
  bool rollBackAnew() const noexcept;
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
  /// Of the first statement that failed in the open transaction.
  std::optional<Error> failure_;
};

/// Appends a value of a connect string: as it stands where it is read so, else in braces, closing
/// ones in it doubled. What follows the value must begin with a semicolon.
void appendConnectValue(std::wstring& text, std::wstring_view value);

/// The connect string without a data source pair that names nothing: some drivers refuse to see a
/// server and an empty data source name together.
std::wstring withoutEmptyDataSource(std::wstring_view parameters);

}  // namespace tlpacscfg::odbc
