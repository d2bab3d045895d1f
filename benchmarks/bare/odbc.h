#pragma once

#include <windows.h>
#include <sql.h>
#include <sqlext.h>

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

/// ODBC as a careful programmer uses it by hand, without anything of the component's.
namespace tlpacscfg::bench::bare {

/// Throws std::runtime_error where a call fails.
class Connection {
 public:
  explicit Connection(const std::wstring& connectString);
  ~Connection();
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  /// Reads every row into bound arrays, keeps none, and returns how many there were. The arrays
  /// have the component's size and types.
  std::size_t fetch(const std::wstring& sql);

  /// One or several statements.
  void execute(const std::wstring& sql);

  /// Runs the work in one transaction; it stays open when the work throws.
  void together(const std::function<void()>& work);
  /// The same, and serializable.
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
