#include "com/com_fixture.h"
#include "support/text.h"

namespace tlpacscfg::test {
namespace {

constexpr int kText = 1;
constexpr int kNumber = 4;

/// The registry key of one test, deleted afterwards.
class RegistryObjectTest : public ComTest {
 protected:
  RegistryObjectTest() {
    RegDeleteTreeW(HKEY_LOCAL_MACHINE, key().c_str());
    registry.put(L"AppRegPath", L"SOFTWARE\\TlPacsCfgTest-");
    registry.put(L"AppName", name());
  }
  ~RegistryObjectTest() override { RegDeleteTreeW(HKEY_LOCAL_MACHINE, key().c_str()); }

  static std::wstring name() {
    return fromUtf8(::testing::UnitTest::GetInstance()->current_test_info()->name());
  }
  static std::wstring key() { return L"SOFTWARE\\TlPacsCfgTest-" + name(); }

  static bool keyExists() {
    HKEY found = nullptr;
    const LSTATUS status = RegOpenKeyExW(HKEY_LOCAL_MACHINE, key().c_str(), 0, KEY_READ, &found);
    if (status == ERROR_SUCCESS) RegCloseKey(found);
    return status == ERROR_SUCCESS;
  }

  HostObject registry = HostObject::create(kRegistry);
};

TEST_F(RegistryObjectTest, BothNamesReadAsTheApplicationName) {
  EXPECT_EQ(registry.get(L"AppRegPath").text(), name());
  EXPECT_EQ(registry.get(L"AppName").text(), name());
}

TEST_F(RegistryObjectTest, EntryIsCreatedBelowThePathFollowedByTheName) {
  EXPECT_FALSE(keyExists());
  EXPECT_TRUE(registry.call(L"CreateRegEntry", {kText, L"text", L"value"}).truth());
  EXPECT_TRUE(keyExists());
  EXPECT_EQ(registry.call(L"GetRegValue", {L"text", L""}).text(), L"value");
}

TEST_F(RegistryObjectTest, TextComesBackByReferenceWithWhatTheRegistryCounted) {
  registry.call(L"CreateRegEntry", {kText, L"text", L"value"});
  VARIANT value = emptyValue();
  EXPECT_TRUE(registry.call(L"GetAppRegValue", {L"text", kText, reference(value)}).truth());
  ASSERT_EQ(value.vt, VT_BSTR);
  const std::wstring text(value.bstrVal, SysStringLen(value.bstrVal));
  // Some systems add the terminating zero that was not written.
  EXPECT_EQ(text.substr(0, 5), L"value");
  EXPECT_LE(text.size(), 6U);
  VariantClear(&value);

  BSTR typed = SysAllocString(L"what was there before");
  EXPECT_TRUE(registry.call(L"GetAppRegValue", {L"text", kText, reference(typed)}).truth());
  EXPECT_EQ(std::wstring(typed).substr(0, 5), L"value");
  SysFreeString(typed);
}

TEST_F(RegistryObjectTest, NumberComesBackByReference) {
  EXPECT_TRUE(registry.call(L"CreateRegEntry", {kNumber, L"number", L"-2"}).truth());
  VARIANT value = emptyValue();
  EXPECT_TRUE(registry.call(L"GetAppRegValue", {L"number", kNumber, reference(value)}).truth());
  EXPECT_EQ(value.vt, VT_I4);
  EXPECT_EQ(value.lVal, -2);
  std::int32_t typed = 0;
  EXPECT_TRUE(registry.call(L"GetAppRegValue", {L"number", kNumber, reference(typed)}).truth());
  EXPECT_EQ(typed, -2);
}

TEST_F(RegistryObjectTest, ResultThatDoesNotFitItsReferenceIsRefused) {
  registry.call(L"CreateRegEntry", {kNumber, L"number", 70000});
  std::int16_t small = 5;
  expectRefused(registry.call(L"GetAppRegValue", {L"number", kNumber, reference(small)}),
                DISP_E_OVERFLOW, L"Overflow");
  EXPECT_EQ(small, 5);
}

TEST_F(RegistryObjectTest, MissingValueLeavesTheReferenceAlone) {
  std::int32_t typed = 77;
  EXPECT_FALSE(registry.call(L"GetAppRegValue", {L"none", kNumber, reference(typed)}).truth());
  registry.call(L"CreateRegEntry", {kText, L"text", L"value"});
  EXPECT_FALSE(registry.call(L"GetAppRegValue", {L"none", kNumber, reference(typed)}).truth());
  EXPECT_EQ(typed, 77);
}

TEST_F(RegistryObjectTest, OtherTypesWriteNothingAndSucceed) {
  EXPECT_TRUE(registry.call(L"CreateRegEntry", {3, L"binary", nothing()}).truth());
  EXPECT_TRUE(registry.call(L"SetAppRegValue", {L"binary", 3, nullValue()}).truth());
  EXPECT_EQ(registry.call(L"GetRegValue", {L"binary", L""}).text(), L"");
}

TEST_F(RegistryObjectTest, ValueThatIsNoNumberIsRefusedForANumber) {
  expectRefused(registry.call(L"CreateRegEntry", {kNumber, L"number", L"many"}),
                DISP_E_TYPEMISMATCH, L"Type mismatch");
  EXPECT_FALSE(keyExists());
}

}  // namespace
}  // namespace tlpacscfg::test
