#include "data/tl_comm_client.h"

#include "automation/call_results.h"
#include "automation/late_bound.h"
#include "data/client_arrays_win.h"

namespace tlpacscfg {
namespace {

/// What the answer holds, as `read` understands it.
template <class Read>
auto arrayIn(const OwnedVariant& answer, Read read) {
  try {
    return read(answer.get());
  } catch (const RunTimeError& error) {
    throw UnreadableAnswer(error);
  }
}

class LateBoundClient : public TlCommClientObject {
 public:
  bool ConnectToService(const std::wstring& application, const std::wstring& host,
                        const std::wstring& port, const std::wstring& timeout) override {
    const OwnedVariant texts[] = {OwnedVariant(application), OwnedVariant(host), OwnedVariant(port),
                                  OwnedVariant(timeout)};
    return truthOf(client_
                       .call(L"ConnectToService",
                             {texts[0].get(), texts[1].get(), texts[2].get(), texts[3].get()})
                       .get());
  }

  void DisconnectFromService(const std::wstring& application) override {
    client_.run(L"DisconnectFromService", {OwnedVariant(application).get()});
  }

  std::int32_t SQLQueryTable(const std::wstring& database, const std::wstring& sql) override {
    return numberOf(callWithTexts(L"SQLQueryTable", database, sql).get());
  }

  Table GetTableData(std::int16_t zeroBasedIndex) override {
    return arrayIn(client_.call(L"GetTableData", {OwnedVariant(zeroBasedIndex).get()}), tableOf);
  }

  bool SQLExecuteText(const std::wstring& database, const std::wstring& sql) override {
    return truthOf(callWithTexts(L"SQLExecuteText", database, sql).get());
  }

  std::vector<std::wstring> GetNetworkDirectoryFiles(const std::wstring& directory,
                                                     const std::wstring& pattern) override {
    OwnedVariant where(directory), which(pattern);
    const OwnedVariant yes(true), no(false);
    return arrayIn(client_.call(L"GetNetworkDirectoryFiles",
                                {where.byReference(), no.get(), which.byReference(), yes.get(),
                                 yes.get(), no.get(), no.get()}),
                   textsOf);
  }

  std::wstring CheckForError() override { return textOf(client_.call(L"CheckForError", {}).get()); }

 private:
  /// Both texts by reference.
  OwnedVariant callWithTexts(const wchar_t* method, const std::wstring& database,
                             const std::wstring& sql) const {
    OwnedVariant first(database), second(sql);
    return client_.call(method, {first.byReference(), second.byReference()});
  }

  LateBound client_{L"TlCommClient.clsTlCommClient"};
};

}  // namespace

std::function<std::unique_ptr<TlCommClientObject>()> createTlCommClient =
    []() -> std::unique_ptr<TlCommClientObject> { return std::make_unique<LateBoundClient>(); };

}  // namespace tlpacscfg
