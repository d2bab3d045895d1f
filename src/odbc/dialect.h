#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "odbc/table.h"

/// The component speaks the SQL of SQL Server. Other databases get the same statements in their own
/// words; SQL Server gets every text untouched.
namespace tlpacscfg {

enum class Dialect {
  SqlServer,
  Sqlite,
  /// A reader of Access files that knows only plain comparisons and fetches one row at a time.
  AccessReader,
};

/// Chooses by the name that the database management system gives itself.
Dialect dialectOf(std::wstring_view dbmsName);

/// The statements of a text as the driver takes them, one call for each.
std::vector<std::wstring> statementsFor(Dialect dialect, std::wstring_view sql);

/// "a,b" for "select a, b from t where c = 'x' order by a" and the rest of the work: what is left
/// to do on the client when the reader of Access files has delivered the table's rows.
struct ClientQuery {
  struct Condition {
    std::size_t column;
    std::wstring value;
  };

  std::wstring statement;  ///< Fetches the wanted columns, then those only compared or sorted by.
  std::size_t wantedColumns = 0;
  std::vector<Condition> conditions;  ///< All must hold, without regard to case.
  std::vector<std::size_t> orderBy;

  /// The wanted columns of the rows that match, in order: numbers by value, other texts as texts.
  Table apply(const Table& fetched) const;
};

/// Throws TypeMismatch for a statement that is not a plain SELECT of one table.
ClientQuery clientQueryFor(std::wstring_view sql);

}  // namespace tlpacscfg
