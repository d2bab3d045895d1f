#include "data/tl_comm_client.h"
#include "remote/client/late_client_test.h"

#include <utility>

namespace tlpacscfg::test {

OwnedVariant properAnswer(const std::wstring& method) {
  if (method == L"ConnectToService" || method == L"SQLExecuteText") return OwnedVariant(true);
  if (method == L"SQLQueryTable") return number(1);
  if (method == L"CheckForError") return OwnedVariant(std::wstring_view());
  if (method == L"GetNetworkDirectoryFiles") return arrayOfTexts({{1}}, {L"a.xml"});
  return OwnedVariant();
}

LateClientTest::LateClientTest() {
  config.TlCommClientHostIP = L"host";
  config.TlCommClientHostPort = L"8443";
  config.TlCommClientTimeout = L"30";
}

LateClientTest::~LateClientTest() { modTlCommClient.g_objTlCommClient.reset(); }

void LateClientTest::connectWith(const std::wstring& method, std::function<OwnedVariant()> answer) {
  different_ = {};
  answer_ = {};
  modTlCommClient.g_objTlCommClient.reset();
  ASSERT_TRUE(ConnectTlCommClient(config));
  different_ = method;
  answer_ = std::move(answer);
}

OwnedVariant LateClientTest::answer(const std::wstring& method) const {
  if (method == different_) return answer_();
  if (method == L"CheckForError") return OwnedVariant(std::wstring_view(error_));
  return properAnswer(method);
}

namespace {

TEST_F(LateClientTest, EveryMethodGetsExactlyItsArguments) {
  ASSERT_TRUE(ConnectTlCommClient(config));
  EXPECT_EQ(TlCommClientQuery(L"select 1"), 1);
  Table data;
  EXPECT_TRUE(TlCommClientGetDataset(1, data));
  EXPECT_TRUE(TlCommClientExecute(L"delete"));
  std::vector<std::wstring> files;
  EXPECT_TRUE(TlCommClientGetFileList(L"C:\\dir", L"*.XML", files));
  DisconnectTlCommClient();
  EXPECT_EQ(client.calls(),
            (Calls{L"ConnectToService(text TLPACSCFG.DLL, text host, text 8443, text 30)",
                   L"SQLQueryTable(text& Talora, text& select 1)", L"GetTableData(I2 0)",
                   L"SQLExecuteText(text& Talora, text& delete)",
                   L"GetNetworkDirectoryFiles(text& C:\\dir, truth False, text& *.XML, truth True, "
                   L"truth True, truth False, truth False)",
                   L"do DisconnectFromService(text TLPACSCFG.DLL)"}));
  EXPECT_EQ(files, Calls{L"a.xml"});
}

TEST_F(LateClientTest, TheObjectIsReleasedWhenItIsDisconnected) {
  ASSERT_TRUE(ConnectTlCommClient(config));
  EXPECT_EQ(client.objects(), 1);
  DisconnectTlCommClient();
  EXPECT_EQ(client.objects(), 0);
}

TEST_F(LateClientTest, AClientThatDoesNotConnectIsReleased) {
  client.answerWith([](const std::wstring& method, const DISPPARAMS&) {
    return method == L"CheckForError" ? OwnedVariant(std::wstring_view(L"no way"))
                                      : OwnedVariant(false);
  });
  EXPECT_FALSE(ConnectTlCommClient(config));
  EXPECT_EQ(client.objects(), 0);
  EXPECT_FALSE(TlCommClientConnected());
}

TEST_F(LateClientTest, AClientMayReplaceTheTextsItGets) {
  client.answerWith([](const std::wstring& method, const DISPPARAMS& passed) {
    if (method == L"SQLQueryTable") {
      for (UINT i = 0; i < passed.cArgs; ++i) {
        SysReAllocString(passed.rgvarg[i].pbstrVal, L"something else and much longer than before");
      }
    }
    return properAnswer(method);
  });
  ASSERT_TRUE(ConnectTlCommClient(config));
  EXPECT_EQ(TlCommClientQuery(L"select 1"), 1);
  EXPECT_EQ(TlCommClientQuery(L"select 2"), 1);
  const Calls calls = client.calls();
  ASSERT_FALSE(calls.empty());
  EXPECT_EQ(calls.back(), L"SQLQueryTable(text& Talora, text& select 2)");
}

TEST_F(LateClientTest, TableCountsOfEveryKindOfNumberAreUnderstood) {
  const std::pair<std::function<OwnedVariant()>, int> cases[] = {
      {[] { return number(3); }, 3},
      {[] { return real(2.0); }, 2},
      {[] { return OwnedVariant(std::int16_t{7}); }, 7},
      {[] { return OwnedVariant(std::wstring_view(L"1")); }, 1},
      {[] { return number(32767); }, 32767},
      {[] { return number(0); }, 0},
      {[] { return number(-5); }, 0},
      {[] { return OwnedVariant(); }, 0},
      {[] { return OwnedVariant(true); }, 0},
      {[] { return number(32768); }, 0},
      {[] { return null(); }, 0},
      {[] { return errorCode(); }, 0},
      {[] { return OwnedVariant(std::wstring_view(L"many")); }, 0},
      {[] { return real(1e300); }, 0},
      {[] { return arrayOfNumbers({{1}}, {1}); }, 0},
  };
  int number = 0;
  for (const auto& [answer, expected] : cases) {
    connectWith(L"SQLQueryTable", answer);
    EXPECT_EQ(TlCommClientQuery(L"select"), expected) << number;
    ++number;
  }
}

TEST_F(LateClientTest, TruthsOfEveryKindAreUnderstood) {
  const std::pair<std::function<OwnedVariant()>, bool> cases[] = {
      {[] { return OwnedVariant(true); }, true},
      {[] { return number(-1); }, true},
      {[] { return OwnedVariant(std::wstring_view(L"True")); }, true},
      {[] { return OwnedVariant(false); }, false},
      {[] { return number(0); }, false},
      {[] { return OwnedVariant(); }, false},
      {[] { return null(); }, false},
      {[] { return errorCode(); }, false},
      {[] { return OwnedVariant(std::wstring_view(L"perhaps")); }, false},
      {[] { return arrayOfNumbers({{1}}, {1}); }, false},
  };
  int number = 0;
  for (const auto& [answer, expected] : cases) {
    connectWith(L"SQLExecuteText", answer);
    EXPECT_EQ(TlCommClientExecute(L"delete"), expected) << number;
    ++number;
  }
}

TEST_F(LateClientTest, CallsThatFailEndWithFalseOrZero) {
  const CallFails failures[] = {
      {DISP_E_EXCEPTION, static_cast<SCODE>(0x800A0005), L"raised"},
      {DISP_E_EXCEPTION, E_FAIL, L""},
      {DISP_E_MEMBERNOTFOUND},
      {DISP_E_TYPEMISMATCH},
      {DISP_E_BADPARAMCOUNT},
      {E_OUTOFMEMORY},
      {static_cast<HRESULT>(0x800706BA)},  // The server is gone.
      {static_cast<HRESULT>(0x80010108)},  // The object has left its clients.
  };
  for (const CallFails& failure : failures) {
    const auto fails = [&]() -> OwnedVariant { throw failure; };
    connectWith(L"SQLQueryTable", fails);
    EXPECT_EQ(TlCommClientQuery(L"select"), 0);
    connectWith(L"GetTableData", fails);
    Table data;
    EXPECT_FALSE(TlCommClientGetDataset(1, data));
    connectWith(L"SQLExecuteText", fails);
    EXPECT_FALSE(TlCommClientExecute(L"delete"));
    connectWith(L"GetNetworkDirectoryFiles", fails);
    std::vector<std::wstring> files;
    EXPECT_FALSE(TlCommClientGetFileList(L"d", L"*", files));
    connectWith(L"CheckForError", fails);
    EXPECT_EQ(TlCommClientQuery(L"select"), 0);
    EXPECT_FALSE(TlCommClientGetDataset(1, data));
    EXPECT_FALSE(TlCommClientGetFileList(L"d", L"*", files));
    EXPECT_TRUE(TlCommClientConnected()) << "A failed call does not end the connection.";
    connectWith(L"DisconnectFromService", fails);
    DisconnectTlCommClient();
    EXPECT_FALSE(TlCommClientConnected());
    EXPECT_EQ(client.objects(), 0);
  }
}

TEST_F(LateClientTest, AnErrorTextThatIsNoTextIsUnderstoodAsFarAsItCanBe) {
  logOn();
  const std::function<OwnedVariant()> none[] = {[] { return OwnedVariant(); }};
  for (const auto& answer : none) {
    connectWith(L"CheckForError", answer);
    EXPECT_EQ(TlCommClientQuery(L"select"), 1);
  }
  for (const auto& answer : std::initializer_list<std::function<OwnedVariant()>>{
           [] { return number(5); }, [] { return null(); },
           [] { return arrayOfNumbers({{1}}, {1}); }}) {
    connectWith(L"CheckForError", answer);
    EXPECT_EQ(TlCommClientQuery(L"select"), 0);
  }
  EXPECT_NE(log().find(errorBlock(L"[TLPACSCFG] Query failed: 5")), std::string::npos);
}

}  // namespace
}  // namespace tlpacscfg::test
