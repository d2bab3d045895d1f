#include "data/tl_comm_client.h"

#include <utility>

#include "log/log_support.h"
#include "odbc/error.h"
#include "support/conversions.h"
#include "support/runtime_error.h"
#include "support/text.h"

namespace tlpacscfg {

ModTlCommClient modTlCommClient;

namespace {

constexpr const wchar_t* kApplication = L"TLPACSCFG.DLL";
constexpr const wchar_t* kNotConnected =
    L"[TLPACSCFG] Cannot process query because TlCommClient is not connected";

/// Runs an operation that answers `failed` when anything in it fails.
template <class Result, class Operation>
Result orElse(Result failed, Operation operation) {
  try {
    return operation();
  } catch (...) {
    return failed;
  }
}

using Client = std::shared_ptr<TlCommClientObject>;

[[noreturn]] void refuse(const std::wstring& reason) {
  constexpr const wchar_t* kNoReason = L"The remote data client could not execute a statement.";
  throw RunTimeError(odbc::kOdbcFailed, reason.empty() ? kNoReason : reason);
}

void logStatement(const wchar_t* operation, const std::wstring& sql) {
  WriteLog(operation, log_level::kOperation);
  WriteLog(std::wstring(L"[TLPACSCFG] Query:") + kLineBreak + sql, log_level::kStatementText);
}

/// The client that is connected; throws when there is none.
Client connectedClient(const wchar_t* complaint = kNotConnected) {
  if (!TlCommClientConnected()) {
    WriteLog(complaint, log_level::kOutcome);
    refuse(complaint + std::wstring_view(L"[TLPACSCFG] ").size());
  }
  return modTlCommClient.g_objTlCommClient;
}

/// Throws the client's error, which is logged after the label.
void checkError(TlCommClientObject& client, const std::wstring& label) {
  const std::wstring error = client.CheckForError();
  if (error.empty()) return;
  WriteLog(label + error, log_level::kError);
  refuse(error);
}

/// Fetches an array and then asks for the client's error, which comes first, also when the array
/// cannot be read.
template <class Fetch>
void fetchArray(TlCommClientObject& client, Fetch fetch, const wchar_t* label) {
  try {
    fetch();
  } catch (const UnreadableAnswer&) {
    checkError(client, label);
    throw;
  }
  checkError(client, label);
}

std::int16_t queryTables(const std::wstring& sql) {
  logStatement(L"[TLPACSCFG] Querying DB using TlCommClient", sql);
  const Client client = connectedClient();
  const std::int32_t count = client->SQLQueryTable(modTlCommClient.g_strTlDatabase, sql);
  checkError(*client, L"[TLPACSCFG] Query failed: ");
  if (count < 1) {
    WriteLog(L"[TLPACSCFG] Invalid table count returned", log_level::kError);
    refuse(L"Invalid table count returned");
  }
  return toInt16(std::int64_t{count});
}

void fetchTable(std::int16_t index, Table& data) {
  WriteLog(L"[TLPACSCFG] Getting dataset from TlCommClient", log_level::kOperation);
  WriteLog(L"[TLPACSCFG] DataIndex:" + decimal(index), log_level::kStatementText);
  data = Table();
  const Client client = connectedClient();
  const std::int16_t place = toInt16(std::int64_t{index} - 1);
  // The text says "workstation list" for every table.
  fetchArray(
      *client, [&] { data = client->GetTableData(place); },
      L"[TLPACSCFG] Unable to retrieve workstation list: ");
}

void executeText(const std::wstring& sql) {
  logStatement(L"[TLPACSCFG] Executing query using TlCommClient", sql);
  const Client client = connectedClient();
  if (client->SQLExecuteText(modTlCommClient.g_strTlDatabase, sql)) return;
  const std::wstring error = client->CheckForError();
  WriteLog(L"[TLPACSCFG] Query failed to execute: " + error, log_level::kError);
  refuse(error);
}

/// Turns every error into one with the number of a failed database call.
template <class Operation>
auto inOneError(Operation operation) {
  try {
    return operation();
  } catch (const std::exception& error) {
    refuse(describe(error).description());
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
    modTlCommClient.g_strTlDatabase = config.SqlDbName;
    DisconnectTlCommClient();

    std::unique_ptr<TlCommClientObject> client = createTlCommClient();
    if (!client->ConnectToService(kApplication, config.TlCommClientHostIP,
                                  config.TlCommClientHostPort, config.TlCommClientTimeout)) {
      WriteLog(L"[TLPACSCFG] TlCommClient could not connect: " + client->CheckForError(),
               log_level::kError);
      return false;
    }
    modTlCommClient.g_objTlCommClient = std::move(client);
    WriteLog(L"[TLPACSCFG] TlCommClient connected successfully", log_level::kOutcome);
    return true;
  });
}

void DisconnectTlCommClient() {
  const Client client = modTlCommClient.g_objTlCommClient;
  if (!client) return;
  const auto ignoringErrors = [](auto step) { orElse(false, [&] { return step(), true; }); };
  ignoringErrors([] { WriteLog(L"[TLPACSCFG] Disconnecting TlCommClient", log_level::kOutcome); });
  ignoringErrors([&] { client->DisconnectFromService(kApplication); });
  client->disconnected = true;
  modTlCommClient.g_objTlCommClient.reset();
}

bool TlCommClientConnected() { return modTlCommClient.g_objTlCommClient != nullptr; }

std::int16_t TlCommClientQuery(const std::wstring& sql) {
  return orElse(std::int16_t{0}, [&] { return queryTables(sql); });
}

bool TlCommClientGetDataset(std::int16_t index, Table& data) {
  return orElse(false, [&] { return fetchTable(index, data), true; });
}

bool TlCommClientExecute(const std::wstring& sql) {
  return orElse(false, [&] { return executeText(sql), true; });
}

Table requireTlCommClientTable(const std::wstring& sql) {
  return inOneError([&] {
    if (queryTables(sql) != 1) refuse(L"Invalid table count returned");
    Table data;
    fetchTable(1, data);
    return data;
  });
}

void requireTlCommClientExecution(const std::wstring& sql) {
  inOneError([&] { executeText(sql); });
}

bool TlCommClientGetFileList(const std::wstring& directory, const std::wstring& pattern,
                             std::vector<std::wstring>& files) {
  return orElse(false, [&] {
    const Client client = connectedClient(
        L"[TLPACSCFG] Cannot retrieve network files because TlCommClient is not connected");
    fetchArray(
        *client, [&] { files = client->GetNetworkDirectoryFiles(directory, pattern); },
        L"[TLPACSCFG] Unable to get file list: ");
    return true;
  });
}

std::int32_t ValOrDefault(std::wstring_view text, std::int32_t defaultValue) {
  return isNumeric(text) ? toInt32(text) : defaultValue;
}

}  // namespace tlpacscfg
