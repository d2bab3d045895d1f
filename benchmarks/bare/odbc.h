#pragma once

#include <windows.h>
#include <sql.h>
#include <sqlext.h>

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

/// Efficient direct use of ODBC, without code of the component.
namespace tlpacscfg::bench::bare {

/// Throws std::runtime_error when a call fails.
class Connection {
 public:
  explicit Connection(const std::wstring& connectString);
  ~Connection();
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  /// Reads all rows into bound arrays of the component's size and types and returns their number.
  std::size_t fetch(const std::wstring& sql);

  /// One or several statements.
  void execute(const std::wstring& sql);

  /// Runs the work in one transaction, which stays open if the work throws.
  void together(const std::function<void()>& work);
  /// The same with the isolation level serializable.
  void serializably(const std::function<void()>& work);

  /// Runs the statement with parameters once for each row, in one transaction.
  void insert(const std::wstring& sql, std::vector<std::vector<std::wstring>> rows);

 private:
  void setAutocommit(bool on);
  void setIsolation(SQLUINTEGER level);
  void check(SQLRETURN code) const;

  SQLHENV environment_ = SQL_NULL_HENV;
  SQLHDBC connection_ = SQL_NULL_HDBC;
  SQLHSTMT statement_ = SQL_NULL_HSTMT;
};

}  // namespace tlpacscfg::bench::bare
