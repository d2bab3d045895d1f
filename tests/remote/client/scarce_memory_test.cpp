#include <atomic>
#include <cstdlib>
#include <iostream>

#include "harness/redirected_import.h"
#include "remote/client/raw_client_test.h"
#include "remote/harness/scripted_service.h"

/// Allocations of the client fail: its methods answer as for any other failure, and raise nothing.
namespace tlpacscfg::test {
namespace {

/// How many more allocations succeed before one fails.
std::atomic<int> untilFailure = 0;
std::atomic<bool> failed = false;

bool failsNow() {
  if (--untilFailure != 0) return false;
  failed = true;
  return true;
}

void* scarceMalloc(std::size_t size) { return failsNow() ? nullptr : std::malloc(size); }

BSTR WINAPI scarceText(const OLECHAR* text, UINT length) {
  return failsNow() ? nullptr : SysAllocStringLen(text, length);
}

SAFEARRAY* WINAPI scarceArray(VARTYPE type, UINT dimensions, SAFEARRAYBOUND* bounds) {
  return failsNow() ? nullptr : SafeArrayCreate(type, dimensions, bounds);
}

class ScarceMemoryTest : public RawClientTest {
 protected:
  HMODULE library = GetModuleHandleW(L"TlCommClient.dll");

  /// Makes the first allocation of a call fail, in the next call the second, and so on until a
  /// call needs no more.
  void expectAnswers(const wchar_t* method, std::vector<VARIANT> reversed, VARTYPE answered,
                     VARTYPE otherwise) {
    const DISPID id = client.idOf(method);
    int calls = 0;
    for (bool complete = false; !complete && calls < 1000; ++calls) {
      failed = false;
      untilFailure = calls + 1;
      const Outcome outcome = callScarcely(id, reversed);
      complete = !failed;
      EXPECT_EQ(nameOf(outcome.result), "S_OK") << method << ", allocation " << calls;
      EXPECT_TRUE(outcome.type() == answered || outcome.type() == otherwise) << outcome.type();
    }
    EXPECT_GT(calls, 1) << method;
    EXPECT_LT(calls, 1000) << method;
    std::wcout << method << L": " << calls - 1 << L" allocations failed" << std::endl;
  }

 private:
  Outcome callScarcely(DISPID id, const std::vector<VARIANT>& reversed) const {
    const RedirectedImport memory(library, "malloc", &scarceMalloc);
    const RedirectedImport texts(library, "SysAllocStringLen", &scarceText);
    const RedirectedImport arrays(library, "SafeArrayCreate", &scarceArray);
    return client.invoke(id, DISPATCH_METHOD, reversed);
  }
};

TEST_F(ScarceMemoryTest, EveryMethodAnswersWhicheverAllocationFails) {
  const ScriptedService scripted(
      {kConnects, {Treatment::Answer, R"({"tables": [{"columns": 1, "rows": [["a"]]}]})"}});
  ASSERT_TRUE(connectTo(scripted.port(), 10).truth());
  const OwnedVariant text(std::wstring_view(L"a text that is longer than a short one"));
  const OwnedVariant first(std::int16_t{0}), no(false);
  const VARIANT t = text.get(), n = no.get();
  expectAnswers(L"SQLExecuteText", {t, t}, VT_BOOL, VT_BOOL);
  expectAnswers(L"GetNetworkDirectoryFiles", {n, n, n, n, t, n, t}, VT_ARRAY | VT_VARIANT,
                VT_EMPTY);
  expectAnswers(L"SQLQueryTable", {t, t}, VT_I4, VT_I4);
  expectAnswers(L"GetTableData", {first.get()}, VT_ARRAY | VT_VARIANT, VT_EMPTY);
  client.call(L"GetTableData", {77});
  expectAnswers(L"CheckForError", {}, VT_BSTR, VT_BSTR);
  expectAnswers(L"ConnectToService", {t, t, t, t}, VT_BOOL, VT_BOOL);
  expectAnswers(L"DisconnectFromService", {t}, VT_EMPTY, VT_EMPTY);
  EXPECT_TRUE(connectTo(scripted.port(), 10).truth());
}

}  // namespace
}  // namespace tlpacscfg::test
