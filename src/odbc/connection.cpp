#include "odbc/connection.h"

#include <algorithm>
#include <array>
#include <utility>

#include "odbc/access_reader.h"
#include "odbc/only_reads.h"
#include "support/scope_exit.h"
#include "support/secret.h"

namespace tlpacscfg::odbc {
namespace {

SQLPOINTER attribute(std::uintptr_t value) { return reinterpret_cast<SQLPOINTER>(value); }

void executeDirect(const StatementHandle& statement, std::wstring_view sql) {
  std::u16string text = toOdbc(sql);
  const SQLRETURN code =
      SQLExecDirectW(statement.get(), odbcText(text), static_cast<SQLINTEGER>(text.size()));
  // SQL_NO_DATA is the success of an UPDATE or DELETE that affects no row.
  if (code != SQL_NO_DATA) statement.verify(code);
}

/// Goes to the next result of the statement; false after the last one.
bool nextResult(const StatementHandle& statement) {
  const SQLRETURN code = SQLMoreResults(statement.get());
  if (code == SQL_NO_DATA) return false;
  statement.verify(code);
  return true;
}

/// Executes the text as far as its first result that has columns; false when there is none.
bool executeToColumns(const StatementHandle& statement, std::wstring_view sql) {
  executeDirect(statement, sql);
  while (columnCount(statement) == 0) {
    if (!nextResult(statement)) return false;
  }
  return true;
}

void drain(const StatementHandle& statement) {
  while (nextResult(statement)) {
  }
}

/// What the driver says of itself or of the database.
std::wstring infoText(const ConnectionHandle& connection, SQLUSMALLINT what) {
  std::array<SQLWCHAR, 256> text{};
  SQLSMALLINT bytes = 0;
  connection.verify(SQLGetInfoW(connection.get(), what, text.data(),
                                static_cast<SQLSMALLINT>(sizeof(text)), &bytes));
  const std::u16string_view view = odbcView(text.data(), text.size());
  return fromUtf16(view.substr(0, view.find(u'\0')));
}

/// The position of the semicolon after the first pair of a connect string, or the string's end. A
/// value in braces may hold semicolons; a doubled closing brace is part of the value.
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
  // Both may hold a password.
  std::wstring kept = withoutEmptyDataSource(parameters);
  std::wstring text;
  const ScopeExit wiped([&] {
    wipe(kept);
    wipe(text);
  });
  text.reserve(2 * dataSource.size() + kept.size() + 10);
  if (!dataSource.empty()) {
    text += L"DSN=";
    appendConnectValue(text, dataSource);
    text += L';';
  }
  text += kept;
  const auto openWith = [&](CursorLibrary cursorLibrary) {
    open(cursorLibrary, prompt, text);
    dialect_ = dialectOf(infoText(handle_, SQL_DBMS_NAME));
  };
  try {
    openWith(environment_->cursorLibrary());
  } catch (const Error&) {
    // The cursor library may be missing, and unixODBC's has no UTF-16 functions. It is not needed.
    if (environment_->cursorLibrary() == CursorLibrary::NotUsed) throw;
    openWith(CursorLibrary::NotUsed);
  }
}

void Connection::open(CursorLibrary cursorLibrary, Prompt prompt, std::wstring_view parameters) {
  handle_ = ConnectionHandle(environment_->handle());
  const std::uintptr_t cursors =
      cursorLibrary == CursorLibrary::Used ? SQL_CUR_USE_ODBC : SQL_CUR_USE_DRIVER;
  // A driver manager without a cursor library refuses this. Every driver can read rows forward.
  SQLSetConnectAttrW(handle_.get(), SQL_ATTR_ODBC_CURSORS, attribute(cursors), 0);
  const auto seconds = static_cast<std::uintptr_t>(environment_->loginTimeout().count());
  handle_.verify(SQLSetConnectAttrW(handle_.get(), SQL_ATTR_LOGIN_TIMEOUT, attribute(seconds), 0));

  std::u16string text = toOdbc(parameters);
  const ScopeExit wiped([&text] { wipeMemory(text.data(), text.size() * sizeof(char16_t)); });
  const bool mayPrompt = prompt == Prompt::ForMissingInformation;
  handle_.verify(SQLDriverConnectW(handle_.get(), mayPrompt ? promptParent() : nullptr,
                                   odbcText(text), static_cast<SQLSMALLINT>(text.size()), nullptr,
                                   0, nullptr,
                                   mayPrompt ? SQL_DRIVER_COMPLETE : SQL_DRIVER_NOPROMPT));
}

/// Runs the work. A failure may mean that the connection is lost, and an open transaction must not
/// be committed after one.
template <class Work>
auto Connection::recordingFailure(Work work) {
  if (failure_) throw *failure_;
  if (handle_.get() == SQL_NULL_HANDLE) {
    throw Error(kOdbcFailed, L"08003: The connection is closed.", L"08003", 0);
  }
  try {
    return work();
  } catch (const Error& error) {
    if (error.connectionIsLost() || isLost()) lost_ = true;
    if (inTransaction_ && !failure_) failure_ = error;
    throw;
  }
}

Table Connection::query(std::wstring_view sql) {
  return recordingFailure(
      [&] { return fetch(sql, onlyReads(sql) ? Fetch::Blocks : Fetch::Cells); });
}

Table Connection::queryOnce(std::wstring_view sql) {
  Table table;
  const auto read = [&] { table = fetch(sql, Fetch::Cells); };
  if (inTransaction_ || onlyReads(sql)) {
    recordingFailure(read);
  } else {
    asTransaction(read);
  }
  return table;
}

Table Connection::fetch(std::wstring_view sql, Fetch way) {
  if (dialect_ == Dialect::AccessReader) {
    const AccessReaderQuery plan = accessReaderQueryFor(sql);
    const StatementHandle statement = newStatement();
    const auto execute = [&] { executeDirect(statement, plan.statement); };
    execute();
    return plan.apply(
        fetchBlocks(statement, RowArrays::Unsupported, execute, limits_.resultCharacters));
  }
  Table table;
  for (const std::wstring& text : statementsFor(dialect_, sql)) {
    const StatementHandle statement = newStatement();
    const auto execute = [&] { return executeToColumns(statement, text); };
    if (!execute()) continue;
    if (table.columns() == 0) {
      table = way == Fetch::Cells
                  ? fetchCells(statement, limits_.resultCharacters)
                  : fetchBlocks(statement, RowArrays::Supported, execute, limits_.resultCharacters);
    }
    drain(statement);
  }
  return table;
}

void Connection::execute(std::wstring_view sql) {
  if (inTransaction_) return recordingFailure([&] { run(sql); });
  asTransaction([&] { run(sql); });
}

template <class Work>
void Connection::asTransaction(Work work) {
  begin();
  try {
    recordingFailure(work);
    commit();
  } catch (...) {
    rollBack();
    throw;
  }
}

void Connection::run(std::wstring_view sql) {
  const StatementHandle statement = newStatement();
  for (const std::wstring& text : statementsFor(dialect_, sql)) {
    executeDirect(statement, text);
    drain(statement);
  }
}

Connection::Description Connection::description() const {
  return {.driver = infoText(handle_, SQL_DRIVER_NAME),
          .driverVersion = infoText(handle_, SQL_DRIVER_VER),
          .system = infoText(handle_, SQL_DBMS_NAME),
          .systemVersion = infoText(handle_, SQL_DBMS_VER)};
}

bool Connection::isLost() const {
  if (lost_ || handle_.get() == SQL_NULL_HANDLE) return true;
  SQLUINTEGER dead = SQL_CD_FALSE;
  const SQLRETURN code =
      SQLGetConnectAttrW(handle_.get(), SQL_ATTR_CONNECTION_DEAD, &dead, sizeof(dead), nullptr);
  return SQL_SUCCEEDED(code) && dead == SQL_CD_TRUE;
}

bool Connection::answers() {
  try {
    query(L"SELECT 1");
  } catch (const RunTimeError&) {
    // An error of the server is an answer too.
  }
  return !isLost();
}

void Connection::close() noexcept {
  // A driver may refuse to disconnect while a transaction is open, which would leave it open.
  if (std::exchange(inTransaction_, false) && !isLost() && !endInRollback())
    resynchronizeAndRollBack();
  lost_ = true;
  handle_ = ConnectionHandle();
}

SQLRETURN Connection::setAutocommit(std::uintptr_t mode) const {
  return SQLSetConnectAttrW(handle_.get(), SQL_ATTR_AUTOCOMMIT, attribute(mode), SQL_IS_UINTEGER);
}

void Connection::begin() {
  recordingFailure([&] { handle_.verify(setAutocommit(SQL_AUTOCOMMIT_OFF)); });
  inTransaction_ = true;
}

void Connection::commit() {
  recordingFailure([&] {
    handle_.verify(SQLEndTran(SQL_HANDLE_DBC, handle_.get(), SQL_COMMIT));
    inTransaction_ = false;
    if (!SQL_SUCCEEDED(setAutocommit(SQL_AUTOCOMMIT_ON))) close();
  });
}

void Connection::rollBack() noexcept {
  failure_.reset();
  if (!std::exchange(inTransaction_, false)) return;
  const bool undone = endInRollback() || resynchronizeAndRollBack();
  if (!undone || !SQL_SUCCEEDED(setAutocommit(SQL_AUTOCOMMIT_ON))) close();
}

bool Connection::endInRollback() const noexcept {
  return SQL_SUCCEEDED(SQLEndTran(SQL_HANDLE_DBC, handle_.get(), SQL_ROLLBACK));
}

/// SQLite rolls a transaction back by itself when the disk is full, SQL Server after a deadlock.
/// The driver does not know, and would run the next transaction without one. Beginning a
/// transaction in SQL and rolling it back through the driver brings both to the same state.
bool Connection::resynchronizeAndRollBack() const noexcept {
  if (isLost()) return false;
  if (dialect_ == Dialect::Sqlite) {
    tryToExecute(L"ROLLBACK");
    tryToExecute(L"BEGIN");
  } else {
    tryToExecute(L"IF @@TRANCOUNT = 0 BEGIN TRANSACTION");
  }
  return endInRollback();
}

void Connection::tryToExecute(std::wstring_view sql) const noexcept {
  try {
    executeDirect(StatementHandle(handle_), sql);
  } catch (...) {
    // The rollback that follows shows whether it helped.
  }
}

Connection::Transaction::Transaction(Connection& connection) : connection_(connection) {
  if (connection_.inTransaction_) {
    throw Error(kOdbcFailed, L"25000: Another command is not over yet.", L"25000", 0);
  }
  const ConnectionHandle& handle = connection_.handle_;
  SQLUINTEGER isolation = 0;
  const bool known = SQL_SUCCEEDED(SQLGetConnectAttrW(handle.get(), SQL_ATTR_TXN_ISOLATION,
                                                      &isolation, sizeof(isolation), nullptr));
  // A driver without isolation levels keeps its own. Where setting the level fails, the transaction
  // must not begin: rows that it reads could change before its commit.
  if (known && isolation != SQL_TXN_SERIALIZABLE) {
    connection_.recordingFailure(
        [&] { handle.verify(connection_.setIsolation(SQL_TXN_SERIALIZABLE)); });
    isolationBefore_ = isolation;
  }
  try {
    connection_.begin();
  } catch (...) {
    restoreIsolation();
    throw;
  }
}

Connection::Transaction::~Transaction() {
  connection_.rollBack();
  restoreIsolation();
}

void Connection::Transaction::commit() { connection_.commit(); }

void Connection::Transaction::restoreIsolation() noexcept {
  if (!isolationBefore_ || connection_.isLost()) return;
  // A connection that stays serializable would block other users with every query.
  if (!SQL_SUCCEEDED(connection_.setIsolation(*isolationBefore_))) connection_.close();
}

SQLRETURN Connection::setIsolation(SQLUINTEGER level) const noexcept {
  return SQLSetConnectAttrW(handle_.get(), SQL_ATTR_TXN_ISOLATION, attribute(level),
                            SQL_IS_UINTEGER);
}

void Connection::limitStatements(const StatementLimits& limits) {
  limits_ = limits;
  // Limits what is not a statement, such as a commit, where the driver supports it.
  SQLSetConnectAttrW(handle_.get(), SQL_ATTR_CONNECTION_TIMEOUT,
                     attribute(static_cast<std::uintptr_t>(limits.time.count())), SQL_IS_UINTEGER);
}

StatementHandle Connection::newStatement() const {
  StatementHandle statement(handle_);
  if (limits_.time.count() > 0) {
    // A driver without such a limit refuses it and runs the statement all the same.
    SQLSetStmtAttrW(statement.get(), SQL_ATTR_QUERY_TIMEOUT,
                    attribute(static_cast<std::uintptr_t>(limits_.time.count())), SQL_IS_UINTEGER);
  }
  return statement;
}

void appendConnectValue(std::wstring& text, std::wstring_view value) {
  const bool braced = value.find(L';') != value.npos || value.starts_with(L'{') ||
                      value.starts_with(L' ') || value.ends_with(L' ');
  if (!braced) {
    text += value;
    return;
  }
  text += L'{';
  for (const wchar_t letter : value) {
    text += letter;
    if (letter == L'}') text += letter;
  }
  text += L'}';
}

std::wstring withoutEmptyDataSource(std::wstring_view parameters) {
  std::wstring kept;
  // Growing would leave copies of a password in freed memory.
  kept.reserve(parameters.size());
  while (!parameters.empty()) {
    const std::size_t end = endOfPair(parameters);
    const std::wstring_view pair = parameters.substr(0, end);
    const bool empty = pair.size() <= std::wstring_view(L"DSN=''").size() &&
                       (equalIgnoringCase(pair, L"DSN=") || equalIgnoringCase(pair, L"DSN=''"));
    const bool separated = end < parameters.size();
    if (!empty) kept += parameters.substr(0, separated ? end + 1 : end);
    parameters.remove_prefix(separated ? end + 1 : end);
  }
  return kept;
}

}  // namespace tlpacscfg::odbc
