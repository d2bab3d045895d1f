#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "odbc/platform.h"

/// Efficient direct use of ODBC, whose statements are in UTF-16. Of the component it uses only
/// conversions of texts.
namespace tlpacscfg::bench::bare {

/// Throws std::runtime_error when a call fails.
class Connection {
 public:
  explicit Connection(const std::wstring& connectString);
  ~Connection();
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  /// Reads all rows into bound arrays of the component's size and types and returns their number.
  std::size_t fetch(const std::u16string& sql);

  /// One or several statements.
  void execute(const std::u16string& sql);

  /// Runs the work in one transaction, which stays open if the work throws.
  void together(const std::function<void()>& work);
  /// The same with the isolation level serializable.
  void serializably(const std::function<void()>& work);

  /// Runs the statement with parameters once for each row, in one transaction.
  void insert(const std::wstring& sql, const std::vector<std::vector<std::wstring>>& rows);

 private:
  void setAutocommit(bool on);
  void setIsolation(SQLUINTEGER level);
  void check(SQLRETURN code) const;

  SQLHENV environment_ = SQL_NULL_HENV;
  SQLHDBC connection_ = SQL_NULL_HDBC;
  SQLHSTMT statement_ = SQL_NULL_HSTMT;
};

}  // namespace tlpacscfg::bench::bare
