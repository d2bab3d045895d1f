#include "data/tl_comm_client.h"

#include <utility>

#include "log/log_support.h"
#include "support/conversions.h"
#include "support/runtime_error.h"
#include "support/text.h"

namespace tlpacscfg {

std::unique_ptr<TlCommClientObject> g_objTlCommClient;
std::wstring g_strTlDatabase;
std::optional<std::wstring> g_strTlRefusal;

namespace {

constexpr const wchar_t* kApplication = L"TLPACSCFG.DLL";
constexpr const wchar_t* kNotConnected =
    L"[TLPACSCFG] Cannot process query because TlCommClient is not connected";

/// Runs an operation that answers `failed` when anything in it fails.
template <class Result, class Operation>
Result orElse(Result failed, Operation operation) {
  try {
    return operation();
  } catch (const std::exception&) {
    return failed;
  }
}

void logStatement(const wchar_t* operation, const std::wstring& sql) {
  WriteLog(operation, log_level::kOperation);
  WriteLog(std::wstring(L"[TLPACSCFG] Query:") + kLineBreak + sql, log_level::kStatementText);
}

bool isConnected(const wchar_t* complaint) {
  if (!TlCommClientConnected()) WriteLog(complaint, log_level::kOutcome);
  return TlCommClientConnected();
}

/// Logs the client's error behind the label; false when there is none.
bool logError(const std::wstring& label) {
  const std::wstring error = g_objTlCommClient->CheckForError();
  if (!error.empty()) WriteLog(label + error, log_level::kError);
  return !error.empty();
}

/// Fetches an array and then asks for the client's error, also when the array cannot be read. True
/// when there is an array and no error.
template <class Fetch>
bool fetchArray(Fetch fetch, const wchar_t* label) {
  bool readable = true;
  try {
    fetch();
  } catch (const UnreadableAnswer&) {
    readable = false;
  }
  return !logError(label) && readable;
}

/// Nothing when the statement was executed, else what was said about it, which may be empty.
std::optional<std::wstring> failureOf(const std::wstring& sql) {
  try {
    logStatement(L"[TLPACSCFG] Executing query using TlCommClient", sql);
    if (!isConnected(kNotConnected)) return L"";
    if (g_objTlCommClient->SQLExecuteText(g_strTlDatabase, sql)) return std::nullopt;
    std::wstring error = g_objTlCommClient->CheckForError();
    WriteLog(L"[TLPACSCFG] Query failed to execute: " + error, log_level::kError);
    return error;
  } catch (const std::exception& error) {
    return describe(error).description();
  }
}

}  // namespace

bool ConnectTlCommClient(const HostSettings& config) {
  return orElse(false, [&] {
    WriteLog(L"[TLPACSCFG] Connecting to TlCommClient", log_level::kOperation);
    const std::pair<const std::wstring&, const wchar_t*> required[] = {
        {config.TlCommClientHostIP, L"[TLPACSCFG] No TlCommClient Host IP provided"},
        {config.TlCommClientHostPort, L"[TLPACSCFG] No TlCommClient Host Port provided"},
        {config.TlCommClientTimeout, L"[TLPACSCFG] No TlCommClient Timeout provided"},
    };
    for (const auto& [value, complaint] : required) {
      if (value.empty()) {
        WriteLog(complaint, log_level::kError);
        return false;
      }
    }
    WriteLog(L"[TLPACSCFG] Storing database name:" + config.SqlDbName, log_level::kStatementText);
    g_strTlDatabase = config.SqlDbName;
    DisconnectTlCommClient();

    std::unique_ptr<TlCommClientObject> client = createTlCommClient();
    if (!client->ConnectToService(kApplication, config.TlCommClientHostIP,
                                  config.TlCommClientHostPort, config.TlCommClientTimeout)) {
      WriteLog(L"[TLPACSCFG] TlCommClient could not connect: " + client->CheckForError(),
               log_level::kError);
      return false;
    }
    g_objTlCommClient = std::move(client);
    WriteLog(L"[TLPACSCFG] TlCommClient connected successfully", log_level::kOutcome);
    return true;
  });
}

void DisconnectTlCommClient() {
  if (!TlCommClientConnected()) return;
  const auto ignoringErrors = [](auto step) { orElse(false, [&] { return step(), true; }); };
  ignoringErrors([] { WriteLog(L"[TLPACSCFG] Disconnecting TlCommClient", log_level::kOutcome); });
  ignoringErrors([] { g_objTlCommClient->DisconnectFromService(kApplication); });
  g_objTlCommClient.reset();
}

bool TlCommClientConnected() { return g_objTlCommClient != nullptr; }

std::int16_t TlCommClientQuery(const std::wstring& sql) {
  return orElse(std::int16_t{0}, [&]() -> std::int16_t {
    logStatement(L"[TLPACSCFG] Querying DB using TlCommClient", sql);
    if (!isConnected(kNotConnected)) return 0;
    const std::int32_t count = g_objTlCommClient->SQLQueryTable(g_strTlDatabase, sql);
    if (logError(L"[TLPACSCFG] Query failed: ")) return 0;
    if (count < 1) {
      WriteLog(L"[TLPACSCFG] Invalid table count returned", log_level::kError);
      return 0;
    }
    return toInt16(std::int64_t{count});
  });
}

bool TlCommClientGetDataset(std::int16_t index, Table& data) {
  return orElse(false, [&] {
    WriteLog(L"[TLPACSCFG] Getting dataset from TlCommClient", log_level::kOperation);
    WriteLog(L"[TLPACSCFG] DataIndex:" + decimal(index), log_level::kStatementText);
    data = Table();
    if (!isConnected(kNotConnected)) return false;
    const std::int16_t place = toInt16(std::int64_t{index} - 1);
    // The wording names the workstation list whatever the table.
    return fetchArray([&] { data = g_objTlCommClient->GetTableData(place); },
                      L"[TLPACSCFG] Unable to retrieve workstation list: ");
  });
}

bool TlCommClientExecute(const std::wstring& sql) {
  std::optional<std::wstring> failure = failureOf(sql);
  const bool executed = !failure;
  if (!g_strTlRefusal) g_strTlRefusal = std::move(failure);
  return executed;
}

bool TlCommClientGetFileList(const std::wstring& directory, const std::wstring& pattern,
                             std::vector<std::wstring>& files) {
  return orElse(false, [&] {
    constexpr const wchar_t* kComplaint =
        L"[TLPACSCFG] Cannot retrieve network files because TlCommClient is not connected";
    if (!isConnected(kComplaint)) return false;
    return fetchArray(
        [&] { files = g_objTlCommClient->GetNetworkDirectoryFiles(directory, pattern); },
        L"[TLPACSCFG] Unable to get file list: ");
  });
}

std::int32_t ValOrDefault(std::wstring_view text, std::int32_t defaultValue) {
  return isNumeric(text) ? toInt32(text) : defaultValue;
}

}  // namespace tlpacscfg
