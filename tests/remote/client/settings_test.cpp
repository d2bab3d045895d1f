#include "remote/client/raw_client_test.h"
#include "remote/harness/scripted_service.h"
#include "support/text.h"

/// A host program names the host; the values of this computer decide whether it gets a token.
namespace tlpacscfg::test {
namespace {

class ClientSettingsTest : public RawClientTest {
 protected:
  ScriptedService scripted{{{Treatment::Answer, R"({"service": "tlcommd", "version": 1})"}}};

  bool connects(const std::wstring& host) {
    return client
        .call(L"ConnectToService", {L"test", host, std::to_wstring(scripted.port()), L"10"})
        .truth();
  }
};

TEST_F(ClientSettingsTest, AnotherHostThanTheTokensIsNotEvenConnectedTo) {
  EXPECT_FALSE(connects(L"localhost"));
  EXPECT_EQ(error(), L"No token is set for the host 'localhost'.");
  EXPECT_EQ(scripted.connections(), 0);
  EXPECT_TRUE(connects(L"127.0.0.1")) << toUtf8(error());
  EXPECT_EQ(scripted.connections(), 1);
}

TEST_F(ClientSettingsTest, ATextThatWouldNameAnotherKeyIsNoHost) {
  for (const wchar_t* host : {L"", L"\\127.0.0.1", L"127.0.0.1\\", L"localhost\\..\\127.0.0.1"}) {
    EXPECT_FALSE(connects(host)) << host;
    EXPECT_EQ(error(), L"The host is neither a name nor an address.");
  }
  EXPECT_EQ(scripted.connections(), 0);
}

/// A token of the machine for localhost, as long as this object lives.
class MachineToken {
 public:
  /// `view` is KEY_WOW64_64KEY or KEY_WOW64_32KEY.
  explicit MachineToken(REGSAM view) : view_(view) {
    HKEY key = nullptr;
    EXPECT_EQ(RegCreateKeyExW(HKEY_LOCAL_MACHINE, kKey, 0, nullptr, 0, KEY_SET_VALUE | view,
                              nullptr, &key, nullptr),
              ERROR_SUCCESS);
    const std::wstring token = WineService::kToken;
    EXPECT_EQ(RegSetValueExW(key, L"Token", 0, REG_SZ, reinterpret_cast<const BYTE*>(token.c_str()),
                             static_cast<DWORD>((token.size() + 1) * sizeof(wchar_t))),
              ERROR_SUCCESS);
    RegCloseKey(key);
  }
  ~MachineToken() {
    RegDeleteKeyExW(HKEY_LOCAL_MACHINE, kKey, view_, 0);
    RegDeleteKeyExW(HKEY_LOCAL_MACHINE, L"SOFTWARE\\TlCommClient", view_, 0);
  }
  MachineToken(const MachineToken&) = delete;
  MachineToken& operator=(const MachineToken&) = delete;

 private:
  static constexpr const wchar_t* kKey = L"SOFTWARE\\TlCommClient\\localhost";

  REGSAM view_;
};

TEST_F(ClientSettingsTest, TheMachinesValuesAreThoseOfTheHostsBitness) {
  set(L"Transport", L"http", L"localhost");
  constexpr bool k64Bit = sizeof(void*) == 8;
  {
    const MachineToken token(k64Bit ? KEY_WOW64_32KEY : KEY_WOW64_64KEY);
    EXPECT_FALSE(connects(L"localhost"));
    EXPECT_EQ(error(), L"No token is set for the host 'localhost'.");
  }
  const MachineToken token(k64Bit ? KEY_WOW64_64KEY : KEY_WOW64_32KEY);
  EXPECT_TRUE(connects(L"localhost")) << toUtf8(error());
}

}  // namespace
}  // namespace tlpacscfg::test
