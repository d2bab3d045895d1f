#include "benchmarks/bare/odbc.h"

#include <algorithm>
#include <stdexcept>

#include "support/text.h"

namespace tlpacscfg::bench::bare {
namespace {

constexpr SQLULEN kRowsInBlock = 100;
constexpr std::size_t kNarrowestColumn = 32;

SQLWCHAR* mutableText(const std::wstring& text) {
  return const_cast<SQLWCHAR*>(reinterpret_cast<const SQLWCHAR*>(text.c_str()));
}

}  // namespace

Connection::Connection(const std::wstring& connectString) {
  check(SQLAllocHandle(SQL_HANDLE_ENV, SQL_NULL_HANDLE, &environment_));
  check(SQLSetEnvAttr(environment_, SQL_ATTR_ODBC_VERSION,
                      reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC3), 0));
  check(SQLAllocHandle(SQL_HANDLE_DBC, environment_, &connection_));
  check(SQLDriverConnectW(connection_, nullptr, mutableText(connectString), SQL_NTS, nullptr, 0,
                          nullptr, SQL_DRIVER_NOPROMPT));
  check(SQLAllocHandle(SQL_HANDLE_STMT, connection_, &statement_));
}

Connection::~Connection() {
  SQLFreeHandle(SQL_HANDLE_STMT, statement_);
  SQLDisconnect(connection_);
  SQLFreeHandle(SQL_HANDLE_DBC, connection_);
  SQLFreeHandle(SQL_HANDLE_ENV, environment_);
}

void Connection::check(SQLRETURN code) const {
  if (SQL_SUCCEEDED(code) || code == SQL_NO_DATA) return;
  SQLWCHAR state[6] = {};
  SQLWCHAR text[512] = {};
  SQLINTEGER native = 0;
  SQLSMALLINT length = 0;
  const bool ofStatement = statement_ != SQL_NULL_HSTMT;
  SQLGetDiagRecW(ofStatement ? SQL_HANDLE_STMT : SQL_HANDLE_DBC,
                 ofStatement ? statement_ : connection_, 1, state, &native, text, 512, &length);
  throw std::runtime_error("ODBC: " + toUtf8(reinterpret_cast<const wchar_t*>(text)));
}

SQLSMALLINT Connection::open(const std::wstring& sql) {
  execute(sql);
  SQLSMALLINT columns = 0;
  check(SQLNumResultCols(statement_, &columns));
  return columns;
}

void Connection::close() {
  check(SQLFreeStmt(statement_, SQL_CLOSE));
  check(SQLFreeStmt(statement_, SQL_UNBIND));
}

std::size_t Connection::fetchByBlocks(const std::wstring& sql) {
  const SQLSMALLINT columns = open(sql);
  SQLULEN fetched = 0;
  const auto rowsInBlock = reinterpret_cast<SQLPOINTER>(kRowsInBlock);
  check(SQLSetStmtAttrW(statement_, SQL_ATTR_ROW_ARRAY_SIZE, rowsInBlock, 0));
  check(SQLSetStmtAttrW(statement_, SQL_ATTR_ROWS_FETCHED_PTR, &fetched, 0));

  struct Buffer {
    std::vector<SQLWCHAR> texts;
    std::vector<SQLLEN> lengths;
  };
  std::vector<Buffer> buffers(static_cast<std::size_t>(columns));
  for (SQLUSMALLINT i = 0; i < columns; ++i) {
    SQLULEN size = 0;
    SQLSMALLINT nameLength = 0, type = 0, digits = 0, nullable = 0;
    check(SQLDescribeColW(statement_, static_cast<SQLUSMALLINT>(i + 1), nullptr, 0, &nameLength,
                          &type, &size, &digits, &nullable));
    const std::size_t width = std::max<std::size_t>(size, kNarrowestColumn) + 1;
    buffers[i].texts.resize(width * kRowsInBlock);
    buffers[i].lengths.resize(kRowsInBlock);
    check(SQLBindCol(statement_, static_cast<SQLUSMALLINT>(i + 1), SQL_C_WCHAR,
                     buffers[i].texts.data(), static_cast<SQLLEN>(width * sizeof(SQLWCHAR)),
                     buffers[i].lengths.data()));
  }

  std::size_t rows = 0;
  for (;;) {
    const SQLRETURN code = SQLFetch(statement_);
    if (code == SQL_NO_DATA) break;
    check(code);
    rows += fetched;
  }
  close();
  check(SQLSetStmtAttrW(statement_, SQL_ATTR_ROW_ARRAY_SIZE, reinterpret_cast<SQLPOINTER>(1), 0));
  check(SQLSetStmtAttrW(statement_, SQL_ATTR_ROWS_FETCHED_PTR, nullptr, 0));
  return rows;
}

std::size_t Connection::fetchByCells(const std::wstring& sql) {
  const SQLSMALLINT columns = open(sql);
  std::vector<SQLWCHAR> text(4096);
  std::size_t rows = 0;
  for (;;) {
    const SQLRETURN code = SQLFetch(statement_);
    if (code == SQL_NO_DATA) break;
    check(code);
    ++rows;
    for (SQLUSMALLINT i = 1; i <= columns; ++i) {
      SQLLEN length = 0;
      check(SQLGetData(statement_, i, SQL_C_WCHAR, text.data(),
                       static_cast<SQLLEN>(text.size() * sizeof(SQLWCHAR)), &length));
    }
  }
  close();
  return rows;
}

void Connection::execute(const std::wstring& sql) {
  check(SQLExecDirectW(statement_, mutableText(sql), static_cast<SQLINTEGER>(sql.size())));
}

void Connection::setAutocommit(bool on) {
  const std::uintptr_t mode = on ? SQL_AUTOCOMMIT_ON : SQL_AUTOCOMMIT_OFF;
  check(SQLSetConnectAttrW(connection_, SQL_ATTR_AUTOCOMMIT, reinterpret_cast<SQLPOINTER>(mode),
                           SQL_IS_UINTEGER));
}

void Connection::executeTogether(const std::vector<std::wstring>& statements) {
  setAutocommit(false);
  for (const std::wstring& statement : statements) execute(statement);
  check(SQLEndTran(SQL_HANDLE_DBC, connection_, SQL_COMMIT));
  setAutocommit(true);
}

void Connection::insert(const std::wstring& sql, std::vector<std::vector<std::wstring>> rows) {
  setAutocommit(false);
  check(SQLPrepareW(statement_, mutableText(sql), static_cast<SQLINTEGER>(sql.size())));
  SQLLEN terminated = SQL_NTS;
  for (std::vector<std::wstring>& row : rows) {
    for (std::size_t i = 0; i < row.size(); ++i) {
      check(SQLBindParameter(statement_, static_cast<SQLUSMALLINT>(i + 1), SQL_PARAM_INPUT,
                             SQL_C_WCHAR, SQL_WVARCHAR, 4000, 0, row[i].data(), 0, &terminated));
    }
    check(SQLExecute(statement_));
  }
  check(SQLFreeStmt(statement_, SQL_RESET_PARAMS));
  check(SQLEndTran(SQL_HANDLE_DBC, connection_, SQL_COMMIT));
  setAutocommit(true);
}

}  // namespace tlpacscfg::bench::bare
