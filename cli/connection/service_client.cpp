#include "cli/connection/service_client.h"

#include <utility>

#include "cli/base/failure.h"
#include "support/text.h"

namespace tlpacscfg::cli {

ServiceClient::ServiceClient(const client::Settings& settings, Address address)
    : session_([settings](const std::wstring&) { return settings; }), address_(std::move(address)) {
  if (!answers()) throw Failure(ExitCode::NoConnection, toUtf8(CheckForError()));
}

bool ServiceClient::answers() {
  return session_.ConnectToService(L"tlpacscfg", address_.host, address_.port, address_.timeout);
}

bool ServiceClient::ConnectToService(const std::wstring& application, const std::wstring& host,
                                     const std::wstring& port, const std::wstring& timeout) {
  return session_.ConnectToService(application, host, port, timeout);
}

void ServiceClient::DisconnectFromService(const std::wstring& /*application*/) {
  session_.DisconnectFromService();
}

std::int32_t ServiceClient::SQLQueryTable(const std::wstring& database, const std::wstring& sql) {
  return session_.SQLQueryTable(database, sql);
}

Table ServiceClient::GetTableData(std::int16_t zeroBasedIndex) {
  const Table* const table = session_.GetTableData(zeroBasedIndex);
  return table != nullptr ? *table : Table();
}

bool ServiceClient::SQLExecuteText(const std::wstring& database, const std::wstring& sql) {
  return session_.SQLExecuteText(database, sql);
}

std::vector<std::wstring> ServiceClient::GetNetworkDirectoryFiles(const std::wstring& directory,
                                                                  const std::wstring& pattern) {
  return session_.GetNetworkDirectoryFiles(directory, pattern,
                                           {.recurse = false,
                                            .sorted = true,
                                            .ignoreCase = true,
                                            .directories = false,
                                            .fullPaths = false});
}

}  // namespace tlpacscfg::cli
