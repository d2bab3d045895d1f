#include "data/odbc/connection.h"

#include <algorithm>
#include <array>
#include <utility>

namespace tlpacscfg::odbc {
namespace {

SQLPOINTER attribute(std::uintptr_t value) { return reinterpret_cast<SQLPOINTER>(value); }

void executeDirect(const StatementHandle& statement, std::wstring_view sql) {
  std::u16string text = toOdbc(sql);
  const SQLRETURN code =
      SQLExecDirectW(statement.get(), odbcText(text), static_cast<SQLINTEGER>(text.size()));
  // An UPDATE or DELETE that touches no row answers "no data".
  if (code != SQL_NO_DATA) statement.verify(code);
}

void drain(const StatementHandle& statement) {
  for (;;) {
    const SQLRETURN code = SQLMoreResults(statement.get());
    if (code == SQL_NO_DATA) return;
    statement.verify(code);
  }
}

SQLSMALLINT columnCount(const StatementHandle& statement) {
  SQLSMALLINT count = 0;
  statement.verify(SQLNumResultCols(statement.get(), &count));
  return count;
}

/// Rolls back unless it was committed; either way, each statement commits itself again afterwards.
class Transaction {
 public:
  Transaction(const ConnectionHandle& connection, Dialect dialect)
      : connection_(connection), dialect_(dialect) {
    connection_.verify(setAutocommit(SQL_AUTOCOMMIT_OFF));
  }
  ~Transaction() {
    if (!committed_ && !rollBack() && dialect_ == Dialect::Sqlite) rollBackAnew();
    setAutocommit(SQL_AUTOCOMMIT_ON);
  }
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;

  void commit() {
    connection_.verify(SQLEndTran(SQL_HANDLE_DBC, connection_.get(), SQL_COMMIT));
    committed_ = true;
  }

 private:
  SQLRETURN setAutocommit(std::uintptr_t mode) const {
    return SQLSetConnectAttrW(connection_.get(), SQL_ATTR_AUTOCOMMIT, attribute(mode),
                              SQL_IS_UINTEGER);
  }

  bool rollBack() const {
    return SQL_SUCCEEDED(SQLEndTran(SQL_HANDLE_DBC, connection_.get(), SQL_ROLLBACK));
  }

  /// SQLite undoes a transaction by itself when the disk is full. Its driver then goes on as if the
  /// transaction still ran, and would run the next one without any: a transaction begun behind its
  /// back and undone brings both together again.
  void rollBackAnew() const {
    try {
      executeDirect(StatementHandle(connection_), L"BEGIN");
      rollBack();
    } catch (const Error&) {
      // The connection is of no more use, which the next statement reports.
    }
  }

  const ConnectionHandle& connection_;
  Dialect dialect_;
  bool committed_ = false;
};

std::wstring dbmsName(const ConnectionHandle& connection) {
  std::array<SQLWCHAR, 128> name{};
  SQLSMALLINT bytes = 0;
  connection.verify(SQLGetInfoW(connection.get(), SQL_DBMS_NAME, name.data(),
                                static_cast<SQLSMALLINT>(sizeof(name)), &bytes));
  const std::u16string_view text = odbcView(name.data(), name.size());
  return fromUtf16(text.substr(0, text.find(u'\0')));
}

/// Where the separator behind the first pair of a connect string stands. A value that begins with a
/// brace holds whatever comes before its closing brace; a doubled one belongs to the value.
std::size_t endOfPair(std::wstring_view parameters) {
  const std::size_t equals = parameters.find_first_of(L"=;");
  if (equals == parameters.npos || parameters[equals] == L';') {
    return std::min(equals, parameters.size());
  }
  std::size_t position = parameters.find_first_not_of(L' ', equals + 1);
  if (position < parameters.size() && parameters[position] == L'{') {
    position = parameters.find(L'}', position);
    while (position < parameters.size() && parameters.substr(position).starts_with(L"}}")) {
      position = parameters.find(L'}', position + 2);
    }
  }
  return std::min(parameters.find(L';', position), parameters.size());
}

}  // namespace

Environment::Environment(CursorLibrary cursorLibrary, std::chrono::seconds loginTimeout)
    : handle_(EnvironmentHandle::root()),
      cursorLibrary_(cursorLibrary),
      loginTimeout_(loginTimeout) {
  handle_.verify(SQLSetEnvAttr(handle_.get(), SQL_ATTR_ODBC_VERSION, attribute(SQL_OV_ODBC3), 0));
}

Connection::Connection(std::shared_ptr<const Environment> environment, std::wstring_view dataSource,
                       Prompt prompt, std::wstring_view parameters)
    : environment_(std::move(environment)) {
  std::wstring text = withoutEmptyDataSource(parameters);
  if (!dataSource.empty()) text = L"DSN=" + std::wstring(dataSource) + L";" + text;
  open(environment_->cursorLibrary(), prompt, text);
  try {
    dialect_ = dialectOf(dbmsName(handle_));
  } catch (const Error& error) {
    // unixODBC's cursor library offers no function that takes UTF-16. Rows are only read forward
    // here, which every driver does on its own.
    const bool refused = error.sqlState() == L"IM001";
    if (!refused || environment_->cursorLibrary() == CursorLibrary::NotUsed) throw;
    open(CursorLibrary::NotUsed, prompt, text);
    dialect_ = dialectOf(dbmsName(handle_));
  }
}

void Connection::open(CursorLibrary cursorLibrary, Prompt prompt, std::wstring_view parameters) {
  handle_ = ConnectionHandle(environment_->handle());
  const std::uintptr_t cursors =
      cursorLibrary == CursorLibrary::Used ? SQL_CUR_USE_ODBC : SQL_CUR_USE_DRIVER;
  handle_.verify(SQLSetConnectAttrW(handle_.get(), SQL_ATTR_ODBC_CURSORS, attribute(cursors), 0));
  const auto seconds = static_cast<std::uintptr_t>(environment_->loginTimeout().count());
  handle_.verify(SQLSetConnectAttrW(handle_.get(), SQL_ATTR_LOGIN_TIMEOUT, attribute(seconds), 0));

  std::u16string text = toOdbc(parameters);
  const bool mayPrompt = prompt == Prompt::ForMissingInformation;
  handle_.verify(SQLDriverConnectW(handle_.get(), mayPrompt ? promptParent() : nullptr,
                                   odbcText(text), static_cast<SQLSMALLINT>(text.size()), nullptr,
                                   0, nullptr,
                                   mayPrompt ? SQL_DRIVER_COMPLETE : SQL_DRIVER_NOPROMPT));
}

Table Connection::query(std::wstring_view sql) {
  if (dialect_ == Dialect::AccessReader) {
    const ClientQuery plan = clientQueryFor(sql);
    const StatementHandle statement = newStatement();
    const auto execute = [&] { executeDirect(statement, plan.statement); };
    execute();
    return plan.apply(
        fetchAll(statement, RowArrays::Unsupported, execute, limits_.resultCharacters));
  }
  Table table;
  for (const std::wstring& text : statementsFor(dialect_, sql)) {
    const StatementHandle statement = newStatement();
    const auto execute = [&] { executeDirect(statement, text); };
    execute();
    if (columnCount(statement) > 0) {
      table = fetchAll(statement, RowArrays::Supported, execute, limits_.resultCharacters);
    }
    drain(statement);
  }
  return table;
}

void Connection::execute(std::wstring_view sql) {
  Transaction transaction(handle_, dialect_);
  run(sql);
  transaction.commit();
}

void Connection::run(std::wstring_view sql) {
  const StatementHandle statement = newStatement();
  for (const std::wstring& text : statementsFor(dialect_, sql)) {
    executeDirect(statement, text);
    drain(statement);
  }
}

StatementHandle Connection::newStatement() const {
  StatementHandle statement(handle_);
  if (limits_.time.count() > 0) {
    // A driver that knows no such limit refuses it and runs the statement all the same.
    SQLSetStmtAttrW(statement.get(), SQL_ATTR_QUERY_TIMEOUT,
                    attribute(static_cast<std::uintptr_t>(limits_.time.count())), SQL_IS_UINTEGER);
  }
  return statement;
}

std::wstring withoutEmptyDataSource(std::wstring_view parameters) {
  std::wstring kept;
  while (!parameters.empty()) {
    const std::size_t end = endOfPair(parameters);
    const std::wstring_view pair = parameters.substr(0, end);
    const bool empty = equalIgnoringCase(pair, L"DSN=") || equalIgnoringCase(pair, L"DSN=''");
    const bool separated = end < parameters.size();
    if (!empty) kept += parameters.substr(0, separated ? end + 1 : end);
    parameters.remove_prefix(separated ? end + 1 : end);
  }
  return kept;
}

}  // namespace tlpacscfg::odbc
