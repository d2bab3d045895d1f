#include "harness/fake_client.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "data/tl_comm_client.h"
#include "odbc/connection.h"
#include "support/runtime_error.h"
#include "support/text.h"

namespace tlpacscfg::test {
namespace {

class FakeClient : public TlCommClientObject {
 public:
  explicit FakeClient(std::shared_ptr<ClientScript> script) : script_(std::move(script)) {
    ++script_->created;
  }
  ~FakeClient() override { ++script_->destroyed; }
  FakeClient(const FakeClient&) = delete;
  FakeClient& operator=(const FakeClient&) = delete;

  bool ConnectToService(const std::wstring& application, const std::wstring& host,
                        const std::wstring& port, const std::wstring& timeout) override {
    note(L"ConnectToService", {application, host, port, timeout});
    return script_->connects;
  }
  void DisconnectFromService(const std::wstring& application) override {
    note(L"DisconnectFromService", {application});
  }
  std::int32_t SQLQueryTable(const std::wstring& database, const std::wstring& sql) override {
    note(L"SQLQueryTable", {database, sql});
    answered_ = script_->answer ? script_->answer(sql) : std::nullopt;
    return script_->tableCount;
  }
  Table GetTableData(std::int16_t zeroBasedIndex) override {
    note(L"GetTableData", {decimal(zeroBasedIndex)});
    return answered_ ? *answered_ : script_->table;
  }
  bool SQLExecuteText(const std::wstring& database, const std::wstring& sql) override {
    note(L"SQLExecuteText", {database, sql});
    const std::wstring& refused = script_->refused;
    if (!script_->executes || (!refused.empty() && sql.find(refused) != sql.npos)) {
      if (!script_->reason.empty()) script_->errors.push_back(script_->reason);
      return false;
    }
    if (script_->execute) script_->execute(sql);
    return true;
  }
  std::vector<std::wstring> GetNetworkDirectoryFiles(const std::wstring& directory,
                                                     const std::wstring& pattern) override {
    note(L"GetNetworkDirectoryFiles", {directory, pattern});
    return script_->files;
  }
  std::wstring CheckForError() override {
    note(L"CheckForError", {});
    if (script_->errors.empty()) return {};
    std::wstring error = script_->errors.front();
    script_->errors.pop_front();
    return error;
  }

 private:
  void note(const std::wstring& method, const std::vector<std::wstring>& arguments) {
    std::wstring call = method + L"(";
    for (std::size_t i = 0; i < arguments.size(); ++i) call += (i ? L", " : L"") + arguments[i];
    script_->calls.push_back(call + L")");
    const auto& failing = script_->failing;
    if (std::find(failing.begin(), failing.end(), method) != failing.end()) {
      throw RunTimeError(-2147417848, L"The object invoked has disconnected from its clients.");
    }
    if (script_->listener) script_->listener(method);
  }

  std::shared_ptr<ClientScript> script_;
  std::optional<Table> answered_;
};

}  // namespace

Table tableOf(const std::vector<Cells>& rows) {
  Table table(rows.empty() ? 0 : rows.front().size());
  for (const Cells& row : rows) {
    for (const std::optional<std::wstring>& cell : row) {
      table.append(cell ? Cell(*cell) : std::nullopt);
    }
  }
  return table;
}

std::shared_ptr<ClientScript> installFakeClient() {
  auto script = std::make_shared<ClientScript>();
  createTlCommClient = [script] { return std::make_unique<FakeClient>(script); };
  return script;
}

std::shared_ptr<ClientScript> connectFakeClient(const std::wstring& database) {
  auto script = installFakeClient();
  modTlCommClient.g_objTlCommClient = createTlCommClient();
  modTlCommClient.g_strTlDatabase = database;
  return script;
}

std::shared_ptr<ClientScript> connectSiteClient() {
  auto script = connectFakeClient();
  const auto site = std::make_shared<odbc::Connection>(
      std::make_shared<odbc::Environment>(odbc::CursorLibrary::NotUsed, std::chrono::seconds(5)),
      L"TlTestSite", odbc::Prompt::Never, L"");
  script->answer = [site](const std::wstring& sql) { return site->query(sql); };
  script->execute = [site](const std::wstring& sql) { site->execute(sql); };
  return script;
}

}  // namespace tlpacscfg::test
