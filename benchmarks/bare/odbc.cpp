#include "benchmarks/bare/odbc.h"

#include <algorithm>
#include <stdexcept>

#include "support/text.h"

namespace tlpacscfg::bench::bare {
namespace {

// The component's choices (see odbc/fetch.cpp).
constexpr std::size_t kBlockBytes = 1 << 20;
constexpr std::size_t kMaxRows = 2000;
constexpr std::size_t kMinWidth = 32;
constexpr std::size_t kMaxWidth = 4000;

struct Buffer {
  SQLSMALLINT type = SQL_C_WCHAR;
  std::size_t cellBytes = 0;
  std::vector<char> texts;
  std::vector<SQLLEN> lengths;
};

bool isWholeNumber(SQLSMALLINT type) {
  return type == SQL_TINYINT || type == SQL_SMALLINT || type == SQL_INTEGER || type == SQL_BIGINT;
}

SQLPOINTER attribute(std::uintptr_t value) { return reinterpret_cast<SQLPOINTER>(value); }

SQLWCHAR* mutableText(const std::u16string& text) {
  return const_cast<SQLWCHAR*>(reinterpret_cast<const SQLWCHAR*>(text.c_str()));
}

}  // namespace

Connection::Connection(const std::wstring& connectString) {
  check(SQLAllocHandle(SQL_HANDLE_ENV, SQL_NULL_HANDLE, &environment_));
  check(SQLSetEnvAttr(environment_, SQL_ATTR_ODBC_VERSION,
                      reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC3), 0));
  check(SQLAllocHandle(SQL_HANDLE_DBC, environment_, &connection_));
  check(SQLDriverConnectW(connection_, nullptr, mutableText(toUtf16(connectString)), SQL_NTS,
                          nullptr, 0, nullptr, SQL_DRIVER_NOPROMPT));
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
  throw std::runtime_error(
      "ODBC: " + toUtf8(fromUtf16(odbc::odbcView(text, static_cast<std::size_t>(length)))));
}

std::size_t Connection::fetch(const std::u16string& sql) {
  check(SQLExecDirectW(statement_, mutableText(sql), static_cast<SQLINTEGER>(sql.size())));
  SQLSMALLINT columns = 0;
  check(SQLNumResultCols(statement_, &columns));
  std::vector<Buffer> buffers(static_cast<std::size_t>(columns));
  std::size_t rowBytes = sizeof(SQLUSMALLINT);
  for (SQLUSMALLINT i = 0; i < columns; ++i) {
    SQLULEN size = 0;
    SQLSMALLINT nameLength = 0, type = 0, digits = 0, nullable = 0;
    check(SQLDescribeColW(statement_, static_cast<SQLUSMALLINT>(i + 1), nullptr, 0, &nameLength,
                          &type, &size, &digits, &nullable));
    const std::size_t width = std::clamp<std::size_t>(size, kMinWidth, kMaxWidth) + 1;
    buffers[i].type = isWholeNumber(type) ? SQL_C_CHAR : SQL_C_WCHAR;
    buffers[i].cellBytes = width * (isWholeNumber(type) ? 1 : sizeof(SQLWCHAR));
    rowBytes += buffers[i].cellBytes + sizeof(SQLLEN);
  }
  const std::size_t rowsInBlock = std::clamp<std::size_t>(kBlockBytes / rowBytes, 1, kMaxRows);
  std::vector<SQLUSMALLINT> status(rowsInBlock);
  SQLULEN fetched = 0;
  check(SQLSetStmtAttrW(statement_, SQL_ATTR_ROW_ARRAY_SIZE, attribute(rowsInBlock), 0));
  check(SQLSetStmtAttrW(statement_, SQL_ATTR_ROW_STATUS_PTR, status.data(), 0));
  check(SQLSetStmtAttrW(statement_, SQL_ATTR_ROWS_FETCHED_PTR, &fetched, 0));
  for (SQLUSMALLINT i = 0; i < columns; ++i) {
    Buffer& buffer = buffers[i];
    buffer.texts.resize(buffer.cellBytes * rowsInBlock);
    buffer.lengths.resize(rowsInBlock);
    check(SQLBindCol(statement_, static_cast<SQLUSMALLINT>(i + 1), buffer.type, buffer.texts.data(),
                     static_cast<SQLLEN>(buffer.cellBytes), buffer.lengths.data()));
  }

  std::size_t rows = 0;
  for (;;) {
    const SQLRETURN code = SQLFetch(statement_);
    if (code == SQL_NO_DATA) break;
    check(code);
    rows += fetched;
  }
  // The buffers end here, and Wine 10 cannot make the arrays of a statement smaller.
  check(SQLFreeHandle(SQL_HANDLE_STMT, statement_));
  check(SQLAllocHandle(SQL_HANDLE_STMT, connection_, &statement_));
  return rows;
}

void Connection::execute(const std::u16string& sql) {
  SQLRETURN code =
      SQLExecDirectW(statement_, mutableText(sql), static_cast<SQLINTEGER>(sql.size()));
  check(code);
  // An error of a later statement is reported only when its result is requested.
  do {
    code = SQLMoreResults(statement_);
    check(code);
  } while (code != SQL_NO_DATA);
}

void Connection::setAutocommit(bool on) {
  check(SQLSetConnectAttrW(connection_, SQL_ATTR_AUTOCOMMIT,
                           attribute(on ? SQL_AUTOCOMMIT_ON : SQL_AUTOCOMMIT_OFF),
                           SQL_IS_UINTEGER));
}

void Connection::setIsolation(SQLUINTEGER level) {
  check(SQLSetConnectAttrW(connection_, SQL_ATTR_TXN_ISOLATION, attribute(level), SQL_IS_UINTEGER));
}

void Connection::together(const std::function<void()>& work) {
  setAutocommit(false);
  work();
  check(SQLEndTran(SQL_HANDLE_DBC, connection_, SQL_COMMIT));
  setAutocommit(true);
}

void Connection::serializably(const std::function<void()>& work) {
  SQLUINTEGER before = 0;
  check(SQLGetConnectAttrW(connection_, SQL_ATTR_TXN_ISOLATION, &before, sizeof(before), nullptr));
  if (before != SQL_TXN_SERIALIZABLE) setIsolation(SQL_TXN_SERIALIZABLE);
  together(work);
  if (before != SQL_TXN_SERIALIZABLE) setIsolation(before);
}

void Connection::insert(const std::wstring& sql,
                        const std::vector<std::vector<std::wstring>>& rows) {
  together([&] {
    check(SQLPrepareW(statement_, mutableText(toUtf16(sql)), SQL_NTS));
    SQLLEN terminated = SQL_NTS;
    for (const std::vector<std::wstring>& row : rows) {
      std::vector<std::u16string> values;
      for (const std::wstring& value : row) values.push_back(toUtf16(value));
      for (std::size_t i = 0; i < values.size(); ++i) {
        check(SQLBindParameter(statement_, static_cast<SQLUSMALLINT>(i + 1), SQL_PARAM_INPUT,
                               SQL_C_WCHAR, SQL_WVARCHAR, 4000, 0, values[i].data(), 0,
                               &terminated));
      }
      check(SQLExecute(statement_));
    }
    check(SQLFreeStmt(statement_, SQL_RESET_PARAMS));
  });
}

}  // namespace tlpacscfg::bench::bare
