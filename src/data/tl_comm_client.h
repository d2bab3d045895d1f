#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "data/host_settings.h"
#include "odbc/table.h"
#include "support/runtime_error.h"

/// Module modTlCommClient: statements and file lists through a remote data client.
namespace tlpacscfg {

/// The call succeeded, but its result is not a table, or not a list of texts.
class UnreadableAnswer : public RunTimeError {
 public:
  explicit UnreadableAnswer(const RunTimeError& reason) : RunTimeError(reason) {}
};

/// The seven methods of the client object. Every call may throw RunTimeError; those that answer an
/// array throw UnreadableAnswer for anything else.
class TlCommClientObject {
 public:
  virtual ~TlCommClientObject() = default;

  virtual bool ConnectToService(const std::wstring& application, const std::wstring& host,
                                const std::wstring& port, const std::wstring& timeout) = 0;
  virtual void DisconnectFromService(const std::wstring& application) = 0;
  virtual std::int32_t SQLQueryTable(const std::wstring& database, const std::wstring& sql) = 0;
  /// A table without columns means "empty".
  virtual Table GetTableData(std::int16_t zeroBasedIndex) = 0;
  virtual bool SQLExecuteText(const std::wstring& database, const std::wstring& sql) = 0;
  virtual std::vector<std::wstring> GetNetworkDirectoryFiles(const std::wstring& directory,
                                                             const std::wstring& pattern) = 0;
  virtual std::wstring CheckForError() = 0;

  /// Set when the client was disconnected; others may still hold it.
  bool disconnected = false;
};

/// Creates the registered client object; throws CannotCreateObject. Tests replace it.
extern std::function<std::unique_ptr<TlCommClientObject>()> createTlCommClient;

/// The variables of the module; see ModMain for the thread that may touch them.
struct ModTlCommClient {
  /// Null when not connected. A call in progress keeps its client alive.
  std::shared_ptr<TlCommClientObject> g_objTlCommClient;
  /// The database named with every statement.
  std::wstring g_strTlDatabase;
};

extern ModTlCommClient modTlCommClient;

/// None of these throws: what fails answers False or 0 and leaves its lines in the log.
[[nodiscard]] bool ConnectTlCommClient(const HostSettings& config);
void DisconnectTlCommClient();
[[nodiscard]] bool TlCommClientConnected();

/// The number of tables that the query gave.
[[nodiscard]] std::int16_t TlCommClientQuery(const std::wstring& sql);
/// `index` counts from 1.
[[nodiscard]] bool TlCommClientGetDataset(std::int16_t index, Table& data);
[[nodiscard]] bool TlCommClientExecute(const std::wstring& sql);

/// The same requests and log lines for callers that must not miss a failure: instead of answering
/// 0 or False, these throw a RunTimeError with the client's error text.
Table requireTlCommClientTable(const std::wstring& sql);
void requireTlCommClientExecution(const std::wstring& sql);

[[nodiscard]] bool TlCommClientGetFileList(const std::wstring& directory,
                                           const std::wstring& pattern,
                                           std::vector<std::wstring>& files);

/// The number in the text when it is numeric, else the default. Throws Overflow.
std::int32_t ValOrDefault(std::wstring_view text, std::int32_t defaultValue);

}  // namespace tlpacscfg
