#include <windows.h>

#include <wincrypt.h>

#include "data/tl_comm_client.h"
#include "harness/scratch.h"
#include "remote/client/client_fixture.h"
#include "support/text.h"

namespace tlpacscfg::test {
namespace {

/// A service with a certificate of its own, whose fingerprint is known.
class TlsClientTest : public ServiceClientTest {
 protected:
  TlsClientTest() {
    runUnixProgram("bash " TL_MAKE_CERTIFICATE " " + scratchUnixPath(""));
    EXPECT_TRUE(eventually([] { return fileExists(scratchPath(L"fingerprint")); }));
    fingerprint = fromUtf8(readBytes(scratchPath(L"fingerprint")).substr(0, 95));
    service.startWithTls(scratchUnixPath("certificate.pem"), scratchUnixPath("key.pem"));
    useService(service.port());
    set(L"Transport", L"https");
    logOn();
  }

  std::wstring fingerprint;
};

TEST_F(TlsClientTest, ACertificateWithoutATrustedIssuerIsRefused) {
  EXPECT_FALSE(ConnectTlCommClient(config));
  EXPECT_NE(log().find("could not connect: The service's certificate is not trusted."),
            std::string::npos);
  EXPECT_EQ(service.log().find("/v1/connect"), std::string::npos);
}

TEST_F(TlsClientTest, ACertificateOfTheKnownFingerprintIsTrusted) {
  set(L"Fingerprint", fingerprint);
  ASSERT_TRUE(ConnectTlCommClient(config)) << log();
  EXPECT_EQ(TlCommClientQuery(L"select 1"), 1);
  Table data;
  ASSERT_TRUE(TlCommClientGetDataset(1, data));
  EXPECT_EQ(data.at(0, 0), L"1");
}

TEST_F(TlsClientTest, ACertificateOfAnotherFingerprintGetsNoToken) {
  fingerprint[0] = fingerprint[0] == L'0' ? L'1' : L'0';
  set(L"Fingerprint", fingerprint);
  EXPECT_FALSE(ConnectTlCommClient(config));
  EXPECT_NE(log().find("could not connect: The service's certificate is not trusted."),
            std::string::npos);
  EXPECT_EQ(service.log().find("/v1/connect"), std::string::npos)
      << "The service saw headers and no body: " << service.log();
}

TEST_F(TlsClientTest, AFingerprintThatIsNoneIsReported) {
  set(L"Fingerprint", L"12:34");
  EXPECT_FALSE(ConnectTlCommClient(config));
  EXPECT_NE(log().find("could not connect: The fingerprint is not one of a SHA-256 certificate "),
            std::string::npos);
}

}  // namespace
}  // namespace tlpacscfg::test
