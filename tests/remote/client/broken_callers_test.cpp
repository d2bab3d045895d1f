#include <limits>

#include "remote/client/raw_client_test.h"

/// Arguments that violate the rules of COM: the client refuses the call, which has no other effect.
namespace tlpacscfg::test {
namespace {

struct Method {
  const wchar_t* name;
  UINT parameters;
};
constexpr Method kMethods[] = {
    {L"ConnectToService", 4},
    {L"DisconnectFromService", 1},
    {L"SQLQueryTable", 2},
    {L"GetTableData", 1},
    {L"SQLExecuteText", 2},
    {L"CheckForError", 0},
    {L"GetNetworkDirectoryFiles", 7},
};

using BrokenClientCallersTest = RawClientTest;

TEST_F(BrokenClientCallersTest, NullNamesAreRefusedInEveryPlace) {
  std::wstring member = L"CheckForError";
  LPOLESTR lists[][2] = {{nullptr, member.data()}, {member.data(), nullptr}, {nullptr, nullptr}};
  IDispatch& object = *client.get();
  for (auto& names : lists) {
    DISPID ids[] = {77, 77};
    EXPECT_EQ(nameOf(object.GetIDsOfNames(IID_NULL, names, 2, 0, ids)), "E_INVALIDARG");
    EXPECT_EQ(ids[0], DISPID_UNKNOWN);
    EXPECT_EQ(ids[1], DISPID_UNKNOWN);
  }
  LPOLESTR name = member.data();
  DISPID id = 77;
  EXPECT_EQ(nameOf(object.GetIDsOfNames(IID_NULL, nullptr, 1, 0, &id)), "E_INVALIDARG");
  EXPECT_EQ(nameOf(object.GetIDsOfNames(IID_NULL, &name, 1, 0, nullptr)), "E_INVALIDARG");
  EXPECT_EQ(nameOf(object.GetIDsOfNames(IID_NULL, &name, 0, 0, &id)), "E_INVALIDARG");
}

TEST_F(BrokenClientCallersTest, MissingArgumentsAreRefusedByEveryMethod) {
  constexpr UINT kHuge = std::numeric_limits<UINT>::max();
  for (const Method& method : kMethods) {
    const DISPID id = client.idOf(method.name);
    const auto resultOf = [&](DISPPARAMS parameters) {
      const Outcome outcome = client.invokeWith(id, DISPATCH_METHOD, parameters);
      EXPECT_EQ(outcome.type(), VT_EMPTY);
      return nameOf(outcome.result);
    };
    if (method.parameters > 0) {
      EXPECT_EQ(resultOf({nullptr, nullptr, method.parameters, 0}), "E_INVALIDARG") << method.name;
    }
    EXPECT_EQ(resultOf({nullptr, nullptr, method.parameters + 1, 0}), "DISP_E_BADPARAMCOUNT");
    EXPECT_EQ(resultOf({nullptr, nullptr, kHuge, 0}), "DISP_E_BADPARAMCOUNT");
    EXPECT_EQ(resultOf({nullptr, nullptr, method.parameters, kHuge}), nameOf(DISP_E_NONAMEDARGS));
    EXPECT_EQ(nameOf(client.get()->Invoke(id, IID_NULL, 0, DISPATCH_METHOD, nullptr, nullptr,
                                          nullptr, nullptr)),
              "E_INVALIDARG");
  }
}

TEST_F(BrokenClientCallersTest, BrokenValuesAreRefusedByEveryMethodInEveryPlace) {
  VARIANT number = ofType(VT_I2);
  VARIANT toNumber = reference(number);
  VARIANT toNoText = ofType(VT_BYREF | VT_BSTR);
  VARIANT noArray = ofType(VT_ARRAY | VT_UI1);
  SAFEARRAY* none = nullptr;
  VARIANT toNoArray = ofType(VT_BYREF | VT_ARRAY | VT_UI1);
  toNoArray.pparray = &none;
  IDispatch* noObject = nullptr;
  VARIANT toNoObject = ofType(VT_BYREF | VT_DISPATCH);
  toNoObject.ppdispVal = &noObject;
  const std::pair<VARIANT, HRESULT> broken[] = {
      {ofType(VT_BYREF | VT_VARIANT), E_POINTER},
      {toNoText, E_POINTER},
      {reference(toNoText), E_POINTER},
      {reference(toNumber), E_INVALIDARG},
      {noArray, DISP_E_TYPEMISMATCH},
      {toNoArray, DISP_E_TYPEMISMATCH},
      {reference(noArray), DISP_E_TYPEMISMATCH},
      {toNoObject, DISP_E_TYPEMISMATCH},
      {ofType(VT_RECORD), DISP_E_TYPEMISMATCH},
      {ofType(0x0FFF), DISP_E_TYPEMISMATCH},
      {ofType(VT_RESERVED | VT_I2), DISP_E_TYPEMISMATCH},
      {nullValue(), DISP_E_TYPEMISMATCH},
  };
  for (const Method& method : kMethods) {
    for (UINT place = 0; place < method.parameters; ++place) {
      for (const auto& [value, expected] : broken) {
        std::vector<VARIANT> values(method.parameters, number);
        values[place] = value;
        const Outcome outcome =
            client.invoke(client.idOf(method.name), DISPATCH_METHOD, std::move(values));
        EXPECT_EQ(nameOf(outcome.result), nameOf(expected))
            << method.name << ", place " << place << ", type " << value.vt;
        EXPECT_EQ(outcome.badArgument, place);
        EXPECT_EQ(outcome.type(), VT_EMPTY);
      }
    }
  }
}

TEST_F(BrokenClientCallersTest, EveryMethodAnswersWhenItCannotDoItsWork) {
  EXPECT_FALSE(client.call(L"ConnectToService", {L"", L"", L"x", L""}).truth());
  EXPECT_EQ(error(), L"The port is not a number.");
  EXPECT_EQ(client.call(L"SQLQueryTable", {L"", L""}).number(), 0);
  EXPECT_EQ(error(), L"The client is not connected.");
  EXPECT_FALSE(client.call(L"SQLExecuteText", {L"", L""}).truth());
  EXPECT_EQ(error(), L"The client is not connected.");
  const Outcome table = client.call(L"GetTableData", {-1});
  EXPECT_EQ(nameOf(table.result), "S_OK");
  EXPECT_EQ(table.type(), VT_EMPTY);
  EXPECT_EQ(error(), L"There is no such table.");
  const Outcome files =
      client.call(L"GetNetworkDirectoryFiles", {L"", false, L"", false, false, false, false});
  EXPECT_EQ(nameOf(files.result), "S_OK");
  EXPECT_EQ(files.type(), VT_ARRAY | VT_VARIANT);
  EXPECT_EQ(error(), L"The client is not connected.");
  EXPECT_EQ(nameOf(client.call(L"DisconnectFromService", {L""}).result), "S_OK");
  EXPECT_EQ(error(), L"");
}

TEST_F(BrokenClientCallersTest, NullOutputPointersAreRefusedOrIgnored) {
  IDispatch& object = *client.get();
  EXPECT_EQ(nameOf(object.QueryInterface(IID_IUnknown, nullptr)), "E_POINTER");
  EXPECT_EQ(nameOf(object.GetTypeInfoCount(nullptr)), "E_POINTER");
  EXPECT_EQ(nameOf(object.GetTypeInfo(0, 0, nullptr)), "DISP_E_BADINDEX");
  VARIANT broken = ofType(VT_RECORD);
  DISPPARAMS one{&broken, nullptr, 1, 0};
  EXPECT_EQ(nameOf(object.Invoke(client.idOf(L"GetTableData"), IID_NULL, 0, DISPATCH_METHOD, &one,
                                 nullptr, nullptr, nullptr)),
            "DISP_E_TYPEMISMATCH");
  DISPPARAMS none{};
  EXPECT_EQ(nameOf(object.Invoke(client.idOf(L"CheckForError"), IID_NULL, 0, DISPATCH_METHOD, &none,
                                 nullptr, nullptr, nullptr)),
            "S_OK");
}

}  // namespace
}  // namespace tlpacscfg::test
