#include <windows.h>

#include <wincrypt.h>
#include <winhttp.h>

#include <filesystem>
#include <vector>

#include "data/tl_comm_client.h"
#include "harness/redirected_import.h"
#include "harness/scratch.h"
#include "log/log_support.h"
#include "remote/client/client_fixture.h"
#include "support/text.h"

namespace tlpacscfg::test {
namespace {

constexpr DWORD kTls12 = WINHTTP_FLAG_SECURE_PROTOCOL_TLS1_2;
constexpr DWORD kTls13 = WINHTTP_FLAG_SECURE_PROTOCOL_TLS1_3;

/// The versions of TLS that the client asked Windows for.
std::vector<DWORD> offered;
bool refusesTls13 = false;

BOOL WINAPI recordVersions(HINTERNET handle, DWORD option, void* value, DWORD size) {
  if (option == WINHTTP_OPTION_SECURE_PROTOCOLS) {
    offered.push_back(*static_cast<const DWORD*>(value));
    if (refusesTls13 && (offered.back() & kTls13) != 0) {
      SetLastError(ERROR_INVALID_PARAMETER);
      return FALSE;
    }
  }
  return WinHttpSetOption(handle, option, value, size);
}

/// A service with a certificate of its own, whose fingerprint is known.
class TlsClientTest : public ServiceClientTest {
 protected:
  TlsClientTest() {
    fingerprint = makeCertificate("");
    startWith("");
    set(L"Transport", L"https");
    logOn();
  }

  /// Makes a certificate in a folder and returns its fingerprint.
  static std::wstring makeCertificate(const std::string& folder) {
    const std::wstring file = platformPath(scratchUnixPath(folder + "fingerprint"));
    makeDirectory(platformPath(scratchUnixPath(folder)));
    runUnixProgram("bash " + sourceUnixPath("tools/make-certificate") + " " +
                   scratchUnixPath(folder));
    EXPECT_TRUE(eventually([&] { return fileExists(file); }));
    return fromUtf8(readBytes(file).substr(0, 95));
  }

  void startWith(const std::string& folder) {
    service.startWithTls(scratchUnixPath(folder + "certificate.pem"),
                         scratchUnixPath(folder + "key.pem"));
    useService(service.port());
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

TEST_F(TlsClientTest, TheNextCertificateIsTrustedBesideTheOneInUse) {
  const std::wstring next = makeCertificate("next/");
  set(L"Fingerprint", fingerprint + L", " + next);
  EXPECT_TRUE(ConnectTlCommClient(config)) << log();
  service.end();
  startWith("next/");
  EXPECT_TRUE(ConnectTlCommClient(config)) << log();
  set(L"Fingerprint", fingerprint + L"," + fingerprint);
  EXPECT_FALSE(ConnectTlCommClient(config));
}

TEST_F(TlsClientTest, Version13IsOfferedWhereWindowsHasIt) {
  set(L"Fingerprint", fingerprint);
  ASSERT_TRUE(ConnectTlCommClient(config)) << "The client is loaded.";
  const RedirectedImport recorded(GetModuleHandleW(L"TlCommClient.dll"), "WinHttpSetOption",
                                  &recordVersions);
  using Versions = std::vector<DWORD>;
  for (const bool refused : {false, true}) {
    offered.clear();
    refusesTls13 = refused;
    EXPECT_TRUE(ConnectTlCommClient(config)) << log();
    EXPECT_EQ(offered, refused ? Versions({kTls12 | kTls13, kTls12}) : Versions({kTls12 | kTls13}));
  }
}

TEST_F(TlsClientTest, AFingerprintThatIsNoneIsReported) {
  for (const std::wstring& value :
       {std::wstring(L"12:34"), fingerprint + L",", fingerprint + L" " + fingerprint}) {
    std::filesystem::remove(std::filesystem::path(modLogSupport.g_strLogFile));
    set(L"Fingerprint", value);
    EXPECT_FALSE(ConnectTlCommClient(config));
    EXPECT_NE(log().find("could not connect: The fingerprint is not one of a SHA-256 certificate "),
              std::string::npos);
  }
}

}  // namespace
}  // namespace tlpacscfg::test
