#include "harness/probe.h"

#ifdef _WIN32
#include <windows.h>
#endif
#include <sql.h>
#include <sqlext.h>

#include <cstdint>
#include <stdexcept>

#include "support/text.h"

namespace tlpacscfg::test {
namespace {

SQLWCHAR* odbcText(std::u16string& text) { return reinterpret_cast<SQLWCHAR*>(text.data()); }

class ProbeHandle {
 public:
  ProbeHandle(SQLSMALLINT type, SQLHANDLE parent) : type_(type) {
    if (!SQL_SUCCEEDED(SQLAllocHandle(type, parent, &handle_))) {
      throw std::runtime_error("SQLAllocHandle failed");
    }
  }
  ~ProbeHandle() { SQLFreeHandle(type_, handle_); }
  ProbeHandle(const ProbeHandle&) = delete;
  ProbeHandle& operator=(const ProbeHandle&) = delete;

  SQLHANDLE get() const { return handle_; }

  /// An environment whose ODBC version is set.
  SQLHANDLE version3() const {
    const auto version = static_cast<std::uintptr_t>(SQL_OV_ODBC3);
    verify(SQLSetEnvAttr(handle_, SQL_ATTR_ODBC_VERSION, reinterpret_cast<SQLPOINTER>(version), 0));
    return handle_;
  }

  void verify(SQLRETURN code) const {
    if (SQL_SUCCEEDED(code) || code == SQL_NO_DATA) return;
    SQLWCHAR state[6] = {};
    SQLWCHAR text[512] = {};
    SQLINTEGER native = 0;
    SQLSMALLINT length = 0;
    SQLGetDiagRecW(type_, handle_, 1, state, &native, text, 512, &length);
    const std::u16string_view message(reinterpret_cast<const char16_t*>(text));
    throw std::runtime_error(toUtf8(fromUtf16(message)));
  }

 private:
  SQLSMALLINT type_;
  SQLHANDLE handle_ = SQL_NULL_HANDLE;
};

class ProbeConnection {
 public:
  explicit ProbeConnection(const std::wstring& connectString)
      : environment_(SQL_HANDLE_ENV, SQL_NULL_HANDLE),
        connection_(SQL_HANDLE_DBC, environment_.version3()) {
    std::u16string text = toUtf16(connectString);
    connection_.verify(SQLDriverConnectW(connection_.get(), nullptr, odbcText(text),
                                         static_cast<SQLSMALLINT>(text.size()), nullptr, 0, nullptr,
                                         SQL_DRIVER_NOPROMPT));
  }
  ~ProbeConnection() { SQLDisconnect(connection_.get()); }
  ProbeConnection(const ProbeConnection&) = delete;
  ProbeConnection& operator=(const ProbeConnection&) = delete;

  void autocommit(bool on) const {
    const auto mode = static_cast<std::uintptr_t>(on ? SQL_AUTOCOMMIT_ON : SQL_AUTOCOMMIT_OFF);
    connection_.verify(SQLSetConnectAttrW(connection_.get(), SQL_ATTR_AUTOCOMMIT,
                                          reinterpret_cast<SQLPOINTER>(mode), SQL_IS_UINTEGER));
  }
  void commit() const {
    connection_.verify(SQLEndTran(SQL_HANDLE_DBC, connection_.get(), SQL_COMMIT));
  }

  ProbeRows execute(const std::wstring& statement) const {
    const ProbeHandle handle(SQL_HANDLE_STMT, connection_.get());
    std::u16string text = toUtf16(statement);
    handle.verify(
        SQLExecDirectW(handle.get(), odbcText(text), static_cast<SQLINTEGER>(text.size())));
    SQLSMALLINT columns = 0;
    handle.verify(SQLNumResultCols(handle.get(), &columns));
    ProbeRows rows;
    if (columns == 0) return rows;
    for (SQLRETURN code = SQLFetch(handle.get()); code != SQL_NO_DATA;
         code = SQLFetch(handle.get())) {
      handle.verify(code);
      ProbeRow row;
      for (SQLUSMALLINT i = 1; i <= columns; ++i) row.push_back(cell(handle, i));
      rows.push_back(std::move(row));
    }
    return rows;
  }

 private:
  static std::optional<std::wstring> cell(const ProbeHandle& handle, SQLUSMALLINT column) {
    // Created once, because filling it is slow.
    static std::u16string text(150'000, u'\0');
    SQLLEN length = 0;
    handle.verify(SQLGetData(handle.get(), column, SQL_C_WCHAR, text.data(),
                             static_cast<SQLLEN>(text.size() * sizeof(char16_t)), &length));
    if (length == SQL_NULL_DATA) return std::nullopt;
    if (length < 0 || static_cast<std::size_t>(length) >= text.size() * sizeof(char16_t)) {
      throw std::runtime_error("The cell is longer than a test expects.");
    }
    return fromUtf16(std::u16string_view(text).substr(0, static_cast<std::size_t>(length) / 2));
  }

  ProbeHandle environment_;
  ProbeHandle connection_;
};

}  // namespace

std::wstring asText(const ProbeRows& rows) {
  std::wstring text;
  for (const ProbeRow& row : rows) {
    for (const std::optional<std::wstring>& cell : row)
      text += cell ? L"[" + *cell + L"]" : L"NULL";
    text += L"\n";
  }
  return text;
}

void Probe::runAll(const std::vector<std::wstring>& statements) const {
  const ProbeConnection connection(connectString_);
  connection.autocommit(false);
  for (const std::wstring& statement : statements) connection.execute(statement);
  connection.commit();
  connection.autocommit(true);
}

ProbeRows Probe::rows(const std::wstring& statement) const {
  return ProbeConnection(connectString_).execute(statement);
}

std::wstring Probe::text(const std::wstring& statement) const { return asText(rows(statement)); }

std::optional<std::wstring> Probe::value(const std::wstring& statement) const {
  const ProbeRows found = rows(statement);
  if (found.empty()) throw std::runtime_error("There is no row: " + toUtf8(statement));
  return found.front().front();
}

}  // namespace tlpacscfg::test
