#include "client/session.h"

#include <new>
#include <utility>

#include "client/client_error.h"
#include "client/protocol.h"
#include "support/conversions.h"
#include "support/runtime_error.h"

namespace tlpacscfg::client {
namespace {

constexpr std::wstring_view kOutOfMemory = L"Out of memory.";

std::int32_t numberWithin(const std::wstring& text, std::int32_t max, const wchar_t* complaint) {
  std::int32_t number = 0;
  try {
    number = toInt32(text);
  } catch (const RunTimeError&) {
    throw ClientError(complaint);
  }
  if (number < 1 || number > max) throw ClientError(complaint);
  return number;
}

/// Sends a request and returns the body of a successful answer; throws ClientError with the
/// service's reason otherwise.
std::string ask(Endpoint& endpoint, const wchar_t* operation,
                std::initializer_list<protocol::Member> members) {
  constexpr unsigned kOk = 200;
  Answer answer = endpoint.post(std::wstring(L"/v1/") + operation,
                                protocol::requestOf(endpoint.token(), members));
  if (answer.status != kOk) throw ClientError(protocol::refusalIn(answer.body, answer.status));
  return std::move(answer.body);
}

}  // namespace

Session::Session(SettingsOfHost settingsOf) : settingsOf_(std::move(settingsOf)) {
  // Reporting that memory has run out must not allocate.
  lastError_.reserve(kOutOfMemory.size());
}

void Session::noteFailure() noexcept {
  try {
    try {
      throw;
    } catch (const ClientError& error) {
      lastError_ = error.text();
    } catch (const std::bad_alloc&) {
      lastError_ = kOutOfMemory;
    } catch (...) {
      lastError_ = std::wstring_view(describeCurrent().description());
    }
  } catch (...) {
    lastError_ = kOutOfMemory;
  }
}

template <class Result, class Work>
Result Session::attempt(Result failed, Work work) {
  try {
    lastError_.clear();
    return work();
  } catch (...) {
    noteFailure();
  }
  return failed;
}

Endpoint& Session::endpoint() const {
  if (!endpoint_) throw ClientError(L"The client is not connected.");
  return *endpoint_;
}

bool Session::ConnectToService(const std::wstring& application, const std::wstring& host,
                               const std::wstring& port, const std::wstring& timeout) {
  return attempt(false, [&] {
    DisconnectFromService();
    constexpr std::int32_t kMaxSeconds = 3600;
    const std::int32_t portNumber = numberWithin(port, 65535, L"The port is not a number.");
    const std::chrono::seconds seconds(
        numberWithin(timeout, kMaxSeconds, L"The time-out is not a number of seconds."));
    auto endpoint = std::make_unique<Endpoint>(settingsOf_(host), host,
                                               static_cast<std::uint16_t>(portNumber), seconds);
    ask(*endpoint, L"connect", {{"application", application}});
    endpoint_ = std::move(endpoint);
    return true;
  });
}

void Session::DisconnectFromService() {
  lastError_.clear();
  tables_.clear();
  endpoint_.reset();
}

std::int32_t Session::SQLQueryTable(const std::wstring& database, const std::wstring& sql) {
  return attempt(0, [&] {
    tables_.clear();
    tables_ = protocol::tablesIn(ask(endpoint(), L"query", {{"database", database}, {"sql", sql}}));
    return static_cast<std::int32_t>(tables_.size());
  });
}

const Table* Session::GetTableData(std::int16_t index) {
  return attempt(static_cast<const Table*>(nullptr), [&]() -> const Table* {
    if (index < 0 || static_cast<std::size_t>(index) >= tables_.size()) {
      throw ClientError(L"There is no such table.");
    }
    const Table& table = tables_[static_cast<std::size_t>(index)];
    return table.rows() > 0 ? &table : nullptr;
  });
}

bool Session::SQLExecuteText(const std::wstring& database, const std::wstring& sql) {
  return attempt(false, [&] {
    ask(endpoint(), L"execute", {{"database", database}, {"sql", sql}});
    return true;
  });
}

std::vector<std::wstring> Session::GetNetworkDirectoryFiles(const std::wstring& directory,
                                                            const std::wstring& pattern,
                                                            const FileFlags& flags) {
  return attempt(std::vector<std::wstring>(), [&] {
    return protocol::filesIn(ask(endpoint(), L"files",
                                 {{"directory", directory},
                                  {"pattern", pattern},
                                  {"recurse", flags.recurse},
                                  {"sorted", flags.sorted},
                                  {"ignoreCase", flags.ignoreCase},
                                  {"directories", flags.directories},
                                  {"fullPaths", flags.fullPaths}}));
  });
}

}  // namespace tlpacscfg::client
