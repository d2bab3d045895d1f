#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <string_view>

#include "data/dialect.h"
#include "data/odbc/block_fetch.h"
#include "data/odbc/handle.h"
#include "data/table.h"

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
/// Every operation throws Error.
class Connection {
 public:
  /// `dataSource` may be empty; then the parameters name the driver. A cursor library that cannot
  /// be used with the driver is done without.
  Connection(std::shared_ptr<const Environment> environment, std::wstring_view dataSource,
             Prompt prompt, std::wstring_view parameters);
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  /// All rows of the first result that has columns; an error in a later result is an error too.
  Table query(std::wstring_view sql);

  /// Runs one or several statements in one transaction: all of them, or none.
  void execute(std::wstring_view sql);

  /// For the statements from now on.
  void limitStatements(const StatementLimits& limits) { limits_ = limits; }

  Dialect dialect() const { return dialect_; }

  /// The reader of Access files does not tell an empty text from NULL.
  bool emptyTextsComeAsNull() const { return dialect_ == Dialect::AccessReader; }

 private:
  void open(CursorLibrary cursorLibrary, Prompt prompt, std::wstring_view parameters);
  void run(std::wstring_view sql);
  StatementHandle newStatement() const;

  std::shared_ptr<const Environment> environment_;
  ConnectionHandle handle_;
  Dialect dialect_ = Dialect::SqlServer;
  StatementLimits limits_;
};

/// The connect string without a data source pair that names nothing: some drivers refuse to see a
/// server and an empty data source name together.
std::wstring withoutEmptyDataSource(std::wstring_view parameters);

}  // namespace tlpacscfg::odbc
