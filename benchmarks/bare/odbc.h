#pragma once

#include <windows.h>
#include <sql.h>
#include <sqlext.h>

#include <cstddef>
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

  /// Both read every row of the statement and return how many there were. Cells arrive as text: in
  /// bound arrays of rows, or asked for one by one.
  std::size_t fetchByBlocks(const std::wstring& sql);
  std::size_t fetchByCells(const std::wstring& sql);

  void execute(const std::wstring& sql);
  /// The statements in one transaction.
  void executeTogether(const std::vector<std::wstring>& statements);

  /// Runs the statement with parameters once for each row, in one transaction.
  void insert(const std::wstring& sql, std::vector<std::vector<std::wstring>> rows);

 private:
  SQLSMALLINT open(const std::wstring& sql);
  void close();
  void setAutocommit(bool on);
  void check(SQLRETURN code) const;

  SQLHENV environment_ = SQL_NULL_HENV;
  SQLHDBC connection_ = SQL_NULL_HDBC;
  SQLHSTMT statement_ = SQL_NULL_HSTMT;
};

}  // namespace tlpacscfg::bench::bare
