#include <utility>

#include "data/late_bound.h"
#include "data/tl_comm_client.h"
#include "remote/client/client_test.h"
#include "remote/tools/scripted_client.h"
#include "tools/errors.h"

namespace tlpacscfg::test {
namespace {

using Calls = std::vector<std::wstring>;

/// What a proper client answers.
OwnedVariant properAnswer(const std::wstring& method) {
  if (method == L"ConnectToService" || method == L"SQLExecuteText") return OwnedVariant(true);
  if (method == L"SQLQueryTable") return number(1);
  if (method == L"CheckForError") return OwnedVariant(std::wstring_view());
  if (method == L"GetNetworkDirectoryFiles") return arrayOfTexts({{1}}, {L"a.xml"});
  return OwnedVariant();
}

class LateClientTest : public ClientTest {
 protected:
  LateClientTest() {
    config.TlCommClientHostIP = L"host";
    config.TlCommClientHostPort = L"8443";
    config.TlCommClientTimeout = L"30";
  }
  ~LateClientTest() override { g_objTlCommClient.reset(); }

  /// Connects, and lets one method answer differently from then on.
  void connectWith(const std::wstring& method, std::function<OwnedVariant()> answer) {
    different_ = {};
    answer_ = {};
    g_objTlCommClient.reset();
    ASSERT_TRUE(ConnectTlCommClient(config));
    different_ = method;
    answer_ = std::move(answer);
  }

 private:
  std::wstring different_;
  std::function<OwnedVariant()> answer_;

 protected:
  ScriptedClient client{[this](const std::wstring& method, const DISPPARAMS&) {
    return method == different_ ? answer_() : properAnswer(method);
  }};
};

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
                   L"DisconnectFromService(text TLPACSCFG.DLL)"}));
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

TEST_F(LateClientTest, ATableIsReadByColumnAndRowWhateverItsBounds) {
  connectWith(L"GetTableData", [] {
    return arrayOfTexts({{2, -7}, {3, 40}}, {L"a0", L"b0", L"a1", L"b1", L"a2", L"b2"});
  });
  Table data;
  ASSERT_TRUE(TlCommClientGetDataset(1, data));
  ASSERT_EQ(data.columns(), 2U);
  ASSERT_EQ(data.rows(), 3U);
  EXPECT_EQ(data.at(0, 0), L"a0");
  EXPECT_EQ(data.at(1, 0), L"b0");
  EXPECT_EQ(data.at(0, 2), L"a2");
  EXPECT_EQ(data.at(1, 2), L"b2");
}

TEST_F(LateClientTest, CellsOfEveryKindBecomeTexts) {
  connectWith(L"GetTableData", [] {
    std::vector<OwnedVariant> cells;
    cells.emplace_back(std::wstring_view(L"\u65e5\u672c"));
    cells.push_back(null());
    cells.emplace_back();
    cells.push_back(number(-70000));
    cells.push_back(real(1.5));
    cells.emplace_back(true);
    cells.emplace_back(false);
    cells.push_back(date(41206.58690972222));
    cells.emplace_back(std::wstring_view(std::wstring(10'000, L'x')));
    return arrayOfVariants({{9}, {1}}, std::move(cells));
  });
  Table data;
  ASSERT_TRUE(TlCommClientGetDataset(1, data));
  ASSERT_EQ(data.columns(), 9U);
  const std::wstring expected[] = {
      L"\u65e5\u672c",           L"", L"", L"-70000", L"1.5", L"-1", L"0", L"2012-10-24 14:05:09",
      std::wstring(10'000, L'x')};
  for (std::size_t i = 0; i < std::size(expected); ++i) {
    EXPECT_EQ(data.at(i, 0).value_or(L""), expected[i]) << i;
  }
  EXPECT_FALSE(data.at(1, 0)) << "Null stays Null.";
  EXPECT_TRUE(data.at(2, 0)) << "Empty is an empty text.";
}

TEST_F(LateClientTest, ATableOfNumbersIsATable) {
  connectWith(L"GetTableData", [] { return arrayOfNumbers({{1}, {2}}, {7, -8}); });
  Table data;
  ASSERT_TRUE(TlCommClientGetDataset(1, data));
  EXPECT_EQ(data.at(0, 0), L"7");
  EXPECT_EQ(data.at(0, 1), L"-8");
}

TEST_F(LateClientTest, NothingAndArraysWithoutElementsAreEmptyTables) {
  const std::function<OwnedVariant()> cases[] = {
      [] { return OwnedVariant(); },
      [] { return null(); },
      [] {
        return arrayOfNumbers({{0}, {0}}, {});
      },
      [] {
        return arrayOfNumbers({{4}, {0}}, {});
      },
      [] {
        return arrayOfNumbers({{0}, {4}}, {});
      },
  };
  for (const auto& answer : cases) {
    connectWith(L"GetTableData", answer);
    Table data(1);
    data.append(L"old");
    EXPECT_TRUE(TlCommClientGetDataset(1, data));
    EXPECT_EQ(data.rows(), 0U);
  }
}

TEST_F(LateClientTest, WhatIsNoTableIsRefused) {
  const std::function<OwnedVariant()> cases[] = {
      [] { return number(1); },
      [] { return OwnedVariant(std::wstring_view(L"table")); },
      [] { return errorCode(); },
      [] {
        return arrayOfNumbers({{3}}, {1, 2, 3});
      },
      [] {
        return arrayOfNumbers({{1}, {1}, {1}}, {1});
      },
      [] {
        std::vector<OwnedVariant> ragged;
        ragged.push_back(arrayOfNumbers({{1}}, {1}));
        ragged.push_back(arrayOfNumbers({{2}}, {1, 2}));
        return arrayOfVariants({{2}}, std::move(ragged));
      },
      [] {
        std::vector<OwnedVariant> nested;
        nested.push_back(arrayOfNumbers({{1}}, {1}));
        return arrayOfVariants({{1}, {1}}, std::move(nested));
      },
      [] {
        std::vector<OwnedVariant> cells;
        cells.push_back(errorCode());
        return arrayOfVariants({{1}, {1}}, std::move(cells));
      },
      [] {
        OwnedVariant none;
        none.out()->vt = VT_ARRAY | VT_VARIANT;
        return none;
      },
      [] {
        OwnedVariant none;
        none.out()->vt = VT_BYREF | VT_ARRAY | VT_VARIANT;
        return none;
      },
      [] {
        OwnedVariant none;
        none.out()->vt = VT_DISPATCH;
        return none;
      },
  };
  int number = 0;
  for (const auto& answer : cases) {
    connectWith(L"GetTableData", answer);
    Table data;
    EXPECT_FALSE(TlCommClientGetDataset(1, data)) << number;
    EXPECT_EQ(data.rows(), 0U);
    ++number;
  }
}

/// An array of numbers that claims more elements than it has.
class BoastfulArray {
 public:
  explicit BoastfulArray(const std::vector<Bound>& bounds) {
    EXPECT_TRUE(
        SUCCEEDED(SafeArrayAllocDescriptorEx(VT_I4, static_cast<UINT>(bounds.size()), &array_)));
    for (std::size_t i = 0; i < bounds.size(); ++i) {
      array_->rgsabound[bounds.size() - 1 - i] = {bounds[i].elements, bounds[i].lower};
    }
    array_->pvData = &element_;
  }
  ~BoastfulArray() {
    array_->pvData = nullptr;
    SafeArrayDestroyDescriptor(array_);
  }
  BoastfulArray(const BoastfulArray&) = delete;
  BoastfulArray& operator=(const BoastfulArray&) = delete;

  OwnedVariant reference() {
    OwnedVariant result;
    VARIANT* const place = result.out();
    place->vt = VT_BYREF | VT_ARRAY | VT_I4;
    place->pparray = &array_;
    return result;
  }
  SAFEARRAY& descriptor() { return *array_; }

 private:
  SAFEARRAY* array_ = nullptr;
  LONG element_ = 7;
};

TEST_F(LateClientTest, ArraysThatClaimTooMuchAreRefused) {
  const std::vector<Bound> claims[] = {
      {{0xFFFFFFFF}, {0xFFFFFFFF}},
      {{1}, {0x7FFFFFFF, -2147483647}},
      {{0x10000}, {0x10000}},
      {{0x80000000}, {2}},
  };
  for (const std::vector<Bound>& claim : claims) {
    BoastfulArray array(claim);
    connectWith(L"GetTableData", [&] { return array.reference(); });
    Table data;
    EXPECT_FALSE(TlCommClientGetDataset(1, data));
    EXPECT_EQ(data.rows(), 0U);
  }
}

TEST_F(LateClientTest, AnArrayWithoutMemoryOrOfAnotherKindThanItSaysIsRefused) {
  BoastfulArray array({{1}, {1}});
  Table data;
  connectWith(L"GetTableData", [&] { return array.reference(); });
  EXPECT_TRUE(TlCommClientGetDataset(1, data));
  EXPECT_EQ(data.at(0, 0), L"7");
  array.descriptor().cbElements = 8;
  EXPECT_FALSE(TlCommClientGetDataset(1, data));
  array.descriptor().cbElements = 4;
  array.descriptor().pvData = nullptr;
  EXPECT_FALSE(TlCommClientGetDataset(1, data));
  array.descriptor().cDims = 0;
  EXPECT_FALSE(TlCommClientGetDataset(1, data));
  array.descriptor().cDims = 2;
}

TEST_F(LateClientTest, AnArrayBehindAReferenceIsReadToo) {
  OwnedVariant table = arrayOfTexts({{1}, {1}}, {L"cell"});
  connectWith(L"GetTableData", [&] {
    OwnedVariant reference;
    VARIANT* const place = reference.out();
    place->vt = VT_BYREF | VT_VARIANT;
    place->pvarVal = const_cast<VARIANT*>(&table.get());
    return reference;
  });
  Table data;
  EXPECT_TRUE(TlCommClientGetDataset(1, data));
  EXPECT_EQ(data.at(0, 0), L"cell");
}

TEST_F(LateClientTest, FileListsOfEveryKindAreUnderstood) {
  const std::pair<std::function<OwnedVariant()>, std::vector<std::wstring>> cases[] = {
      {[] {
         return arrayOfTexts({{2, 1}}, {L"b.xml", L"a.xml"});
       },
       {L"b.xml", L"a.xml"}},
      {[] {
         std::vector<OwnedVariant> names;
         names.emplace_back(std::wstring_view(L"caf\u00e9.xml"));
         names.push_back(number(5));
         return arrayOfVariants({{2}}, std::move(names));
       },
       {L"caf\u00e9.xml", L"5"}},
      {[] { return OwnedVariant(); }, {}},
      {[] { return arrayOfTexts({{0}}, {}); }, {}},
  };
  for (const auto& [answer, expected] : cases) {
    connectWith(L"GetNetworkDirectoryFiles", answer);
    std::vector<std::wstring> files = {L"old"};
    EXPECT_TRUE(TlCommClientGetFileList(L"d", L"*", files));
    EXPECT_EQ(files, expected);
  }
}

TEST_F(LateClientTest, WhatIsNoFileListIsRefused) {
  const std::function<OwnedVariant()> cases[] = {
      [] { return number(1); },
      [] { return OwnedVariant(std::wstring_view(L"a.xml")); },
      [] {
        return arrayOfTexts({{1}, {1}}, {L"a.xml"});
      },
      [] {
        std::vector<OwnedVariant> names;
        names.push_back(null());
        return arrayOfVariants({{1}}, std::move(names));
      },
  };
  for (const auto& answer : cases) {
    connectWith(L"GetNetworkDirectoryFiles", answer);
    std::vector<std::wstring> files;
    EXPECT_FALSE(TlCommClientGetFileList(L"d", L"*", files));
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

using LateBoundTest = LateClientTest;

TEST_F(LateBoundTest, PropertiesAreReadAndWritten) {
  const LateBound object(L"TlCommClient.clsTlCommClient");
  object.get(L"Caption");
  object.put(L"Caption", OwnedVariant(std::wstring_view(L"new")).get());
  EXPECT_EQ(client.calls(), (Calls{L"get Caption()", L"put Caption(text new)"}));
}

TEST_F(LateBoundTest, AnUnknownMemberIsTheClassicError) {
  const LateBound object(L"TlCommClient.clsTlCommClient");
  EXPECT_RUNTIME_ERROR(object.call(L"NoSuchMethod", {}), 438,
                       L"Object doesn't support this property or method");
}

TEST_F(LateBoundTest, AProgIdThatNobodyRegisteredIsTheClassicError) {
  EXPECT_RUNTIME_ERROR(LateBound(L"TlCommClient.clsNobody"), 429,
                       L"ActiveX component can't create object");
}

TEST_F(LateBoundTest, WhatAnObjectRaisesKeepsItsNumberAndText) {
  client.answerWith([](const std::wstring& method, const DISPPARAMS&) -> OwnedVariant {
    if (method == L"Classic") {
      throw CallFails{DISP_E_EXCEPTION, static_cast<SCODE>(0x800A0009), L"out of range"};
    }
    if (method == L"Own") {
      throw CallFails{DISP_E_EXCEPTION, static_cast<SCODE>(0x80040201), L"own error"};
    }
    throw CallFails{E_ACCESSDENIED};
  });
  const LateBound object(L"TlCommClient.clsTlCommClient");
  EXPECT_RUNTIME_ERROR(object.call(L"Classic", {}), 9, L"out of range");
  EXPECT_RUNTIME_ERROR(object.call(L"Own", {}), static_cast<std::int32_t>(0x80040201),
                       L"own error");
  EXPECT_RUNTIME_ERROR(object.call(L"Denied", {}), static_cast<std::int32_t>(0x80070005),
                       L"Automation error");
}

TEST_F(LateBoundTest, WithoutComThereIsNoObject) {
  CoUninitialize();
  EXPECT_RUNTIME_ERROR(LateBound(L"TlCommClient.clsTlCommClient"), 429,
                       L"ActiveX component can't create object");
  EXPECT_FALSE(ConnectTlCommClient(config));
  EXPECT_TRUE(SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)));
}

}  // namespace
}  // namespace tlpacscfg::test
