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

}  // namespace
}  // namespace tlpacscfg::test
