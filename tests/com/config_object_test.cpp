#include "com/com_fixture.h"
#include "harness/scratch.h"
#include "host/version.h"
#include "support/text.h"

namespace tlpacscfg::test {
namespace {

class ConfigObjectTest : public ComTest {
 protected:
  HostObject config = HostObject::create(kConfig);
};

TEST_F(ConfigObjectTest, TextsOfANewObjectAreEmpty) {
  for (const wchar_t* name :
       {L"TlCommClientHostIP", L"TlCommClientHostPort", L"TlCommClientTimeout", L"LogFile",
        L"SqlServerName", L"Password", L"SqlUserName", L"SqlDbName", L"SQLDSN", L"Talora_INIFile",
        L"LocalTaloraDirectory"}) {
    EXPECT_EQ(config.get(name).text(), L"") << toUtf8(name);
  }
}

TEST_F(ConfigObjectTest, NumbersAndFlagsOfANewObjectAreZero) {
  for (const wchar_t* name : {L"User_ID", L"DebugMode", L"SqlTimeout", L"Dynamic_DataSource"}) {
    EXPECT_EQ(config.get(name).number(), 0) << toUtf8(name);
    EXPECT_EQ(config.get(name).type(), VT_I2) << toUtf8(name);
  }
  for (const wchar_t* name : {L"ConfigLoaded", L"Initialized", L"UseOfflineDB"}) {
    EXPECT_FALSE(config.get(name).truth()) << toUtf8(name);
  }
  EXPECT_EQ(config.get(L"TlCommClientEnabled").text(), L"False");
}

TEST_F(ConfigObjectTest, NewObjectHasNoCollections) {
  for (const wchar_t* name :
       {L"colWS", L"colPACSConfig", L"m_colPACSConfig", L"m_colWorkstation"}) {
    EXPECT_TRUE(config.get(name).object().isNothing()) << toUtf8(name);
  }
}

TEST_F(ConfigObjectTest, TextsReadBackAsTheyWereSet) {
  for (const wchar_t* name :
       {L"TlCommClientHostIP", L"TlCommClientHostPort", L"TlCommClientTimeout", L"LogFile",
        L"SqlServerName", L"Password", L"SqlUserName", L"SqlDbName", L"SQLDSN", L"Talora_INIFile",
        L"LocalTaloraDirectory"}) {
    const std::wstring value = std::wstring(L" Łódź ") + name;
    EXPECT_EQ(config.put(name, value).result, S_OK) << toUtf8(name);
    EXPECT_EQ(config.get(name).text(), value) << toUtf8(name);
  }
}

TEST_F(ConfigObjectTest, NumbersReadBackAsTheyWereSet) {
  for (const wchar_t* name : {L"User_ID", L"DebugMode", L"SqlTimeout", L"Dynamic_DataSource"}) {
    for (const int value : {1, -1, 32767, -32768}) {
      EXPECT_EQ(config.put(name, value).result, S_OK) << toUtf8(name);
      EXPECT_EQ(config.get(name).number(), value) << toUtf8(name);
    }
  }
}

TEST_F(ConfigObjectTest, FlagsReadBackAsTheyWereSet) {
  for (const wchar_t* name : {L"ConfigLoaded", L"Initialized", L"UseOfflineDB"}) {
    EXPECT_EQ(config.put(name, true).result, S_OK) << toUtf8(name);
    EXPECT_TRUE(config.get(name).truth()) << toUtf8(name);
    EXPECT_EQ(config.put(name, L"False").result, S_OK) << toUtf8(name);
    EXPECT_FALSE(config.get(name).truth()) << toUtf8(name);
    EXPECT_EQ(config.put(name, 7).result, S_OK) << toUtf8(name);
    EXPECT_TRUE(config.get(name).truth()) << toUtf8(name);
  }
}

TEST_F(ConfigObjectTest, TlCommClientEnabledTakesTheBooleanWordsAndNumbers) {
  const std::pair<Argument, const wchar_t*> cases[] = {
      {L"True", L"True"},   {L"1", L"True"},  {L"0", L"False"},  {L"true", L"True"},
      {L"FALSE", L"False"}, {L"-1", L"True"}, {L"2.5", L"True"}, {L" 0 ", L"False"},
      {1, L"True"},         {0, L"False"},    {true, L"True"},   {false, L"False"},
      {0.5, L"True"},
  };
  for (const auto& [value, expected] : cases) {
    const wchar_t* const opposite = expected == std::wstring_view(L"True") ? L"False" : L"True";
    ASSERT_EQ(config.put(L"TlCommClientEnabled", opposite).result, S_OK);
    EXPECT_EQ(config.put(L"TlCommClientEnabled", value).result, S_OK);
    EXPECT_EQ(config.get(L"TlCommClientEnabled").text(), expected);
  }
}

TEST_F(ConfigObjectTest, TlCommClientEnabledKeepsItsValueWhenTheTextIsNoTruthValue) {
  config.put(L"TlCommClientEnabled", L"True");
  expectError(config.put(L"TlCommClientEnabled", L"yes"), 13, L"Type mismatch");
  expectError(config.put(L"TlCommClientEnabled", L""), 13, L"Type mismatch");
  EXPECT_EQ(config.get(L"TlCommClientEnabled").text(), L"True");
}

TEST_F(ConfigObjectTest, SettingsOfTheModuleAreSharedAndOthersAreNot) {
  const HostObject other = HostObject::create(kConfig);
  config.put(L"DebugMode", 9);
  config.put(L"LogFile", L"");
  config.put(L"UseOfflineDB", true);
  config.put(L"TlCommClientEnabled", L"True");
  config.put(L"LocalTaloraDirectory", L"C:\\Prog");
  config.put(L"User_ID", 7);
  config.put(L"SQLDSN", L"one");
  EXPECT_EQ(other.get(L"DebugMode").number(), 9);
  EXPECT_TRUE(other.get(L"UseOfflineDB").truth());
  EXPECT_EQ(other.get(L"TlCommClientEnabled").text(), L"True");
  EXPECT_EQ(other.get(L"LocalTaloraDirectory").text(), L"C:\\Prog");
  EXPECT_EQ(other.get(L"User_ID").number(), 0);
  EXPECT_EQ(other.get(L"SQLDSN").text(), L"");
}

TEST_F(ConfigObjectTest, VersionIsThatOfTheVersionResource) {
  DWORD ignored = 0;
  const std::wstring path = componentPath();
  std::vector<char> resource(GetFileVersionInfoSizeW(path.c_str(), &ignored));
  ASSERT_FALSE(resource.empty());
  ASSERT_TRUE(
      GetFileVersionInfoW(path.c_str(), 0, static_cast<DWORD>(resource.size()), resource.data()));
  void* block = nullptr;
  UINT length = 0;
  ASSERT_TRUE(VerQueryValueW(resource.data(), L"\\", &block, &length));
  const auto& fixed = *static_cast<const VS_FIXEDFILEINFO*>(block);
  const std::wstring expected = decimal(HIWORD(fixed.dwFileVersionMS)) + L"." +
                                decimal(LOWORD(fixed.dwFileVersionMS)) + L"." +
                                decimal(HIWORD(fixed.dwFileVersionLS));
  EXPECT_EQ(config.call(L"Version").text(), expected);
  EXPECT_EQ(expected, decimal(kVersionMajor) + L"." + decimal(kVersionMinor) + L"." +
                          decimal(kVersionRevision));
}

TEST_F(ConfigObjectTest, VersionMayBeReadLikeAProperty) {
  EXPECT_EQ(config.get(L"Version").text(), config.call(L"Version").text());
}

TEST_F(ConfigObjectTest, ShowFormWithoutAConnectionAnswersOneAsAByteAndShowsNothing) {
  const Outcome code = config.call(L"ShowForm");
  EXPECT_EQ(code.type(), VT_UI1);
  EXPECT_EQ(code.number(), 1);
  EXPECT_FALSE(config.get(L"ConfigLoaded").truth());
}

TEST_F(ConfigObjectTest, CollectionsAreSetAsReferences) {
  expectRefused(config.putRef(L"colPACSConfig", config), DISP_E_TYPEMISMATCH, L"Type mismatch");
  expectRefused(config.putRef(L"colPACSConfig", L"text"), DISP_E_TYPEMISMATCH, L"Type mismatch");
  EXPECT_EQ(config.putRef(L"colPACSConfig", nothing()).result, S_OK);
}

}  // namespace
}  // namespace tlpacscfg::test
