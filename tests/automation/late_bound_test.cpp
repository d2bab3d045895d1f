#include "automation/late_bound.h"
#include "data/tl_comm_client.h"
#include "remote/client/late_client_test.h"
#include "harness/errors.h"

namespace tlpacscfg::test {
namespace {

using LateBoundTest = LateClientTest;

TEST_F(LateBoundTest, AMethodIsCalledWithOrWithoutAResult) {
  const LateBound object(L"TlCommClient.clsTlCommClient");
  object.call(L"Count", {});
  object.run(L"Forget", {});
  EXPECT_EQ(client.calls(), (Calls{L"Count()", L"do Forget()"}));
}

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

TEST_F(LateBoundTest, AnUnregisteredProgIdIsTheClassicError) {
  EXPECT_RUNTIME_ERROR(LateBound(L"TlCommClient.clsUnregistered"), 429,
                       L"ActiveX component can't create object");
}

TEST_F(LateBoundTest, AnErrorOfAnObjectKeepsItsNumberAndText) {
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
