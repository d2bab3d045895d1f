#include "client/endpoint.h"

#include <bcrypt.h>
#include <wincrypt.h>

#include <algorithm>
#include <utility>

#include "client/client_error.h"
#include "support/text.h"

namespace tlpacscfg::client {
namespace {

using Clock = std::chrono::steady_clock;
using Certificate = UniqueHandle<PCCERT_CONTEXT, CertFreeCertificateContext>;

constexpr std::size_t kMostAnswerBytes = 80 << 20;

[[noreturn]] void failWith(DWORD code) {
  switch (code) {
    case ERROR_WINHTTP_TIMEOUT:
      throw ClientError(L"The service did not answer in time.");
    case ERROR_WINHTTP_CANNOT_CONNECT:
      throw ClientError(L"There is no connection to the service.");
    case ERROR_WINHTTP_NAME_NOT_RESOLVED:
      throw ClientError(L"The service's host is not known.");
    case ERROR_WINHTTP_CONNECTION_ERROR:
    case ERROR_WINHTTP_INVALID_SERVER_RESPONSE:
      throw ClientError(L"The service broke the connection off.");
    case ERROR_WINHTTP_SECURE_FAILURE:
    case ERROR_WINHTTP_SECURE_CHANNEL_ERROR:
    case ERROR_WINHTTP_SECURE_INVALID_CA:
    case ERROR_WINHTTP_SECURE_INVALID_CERT:
    case ERROR_WINHTTP_SECURE_CERT_CN_INVALID:
    case ERROR_WINHTTP_SECURE_CERT_DATE_INVALID:
      throw ClientError(L"The service's certificate is not trusted.");
    default:
      throw ClientError(L"The service cannot be used (error " + decimal(code) + L").");
  }
}

void check(BOOL done) {
  if (!done) failWith(GetLastError());
}

void setOption(HINTERNET handle, DWORD option, DWORD value) {
  check(WinHttpSetOption(handle, option, &value, sizeof(value)));
}

/// The token is not sent in the clear to other machines.
bool isLoopback(const std::wstring& host) {
  return host == L"127.0.0.1" || host == L"::1" || host == L"[::1]" ||
         equalIgnoringCase(host, L"localhost");
}

Fingerprint sha256(const std::uint8_t* data, std::size_t size) {
  BCRYPT_ALG_HANDLE algorithm = nullptr;
  Fingerprint digest{};
  NTSTATUS status = BCryptOpenAlgorithmProvider(&algorithm, BCRYPT_SHA256_ALGORITHM, nullptr, 0);
  if (status == 0) {
    // The data is only read; the declaration is older than const.
    status = BCryptHash(algorithm, nullptr, 0, const_cast<PUCHAR>(data), static_cast<ULONG>(size),
                        digest.data(), static_cast<ULONG>(digest.size()));
    BCryptCloseAlgorithmProvider(algorithm, 0);
  }
  if (status != 0) throw ClientError(L"The service's certificate cannot be checked.");
  return digest;
}

/// What is left of the time for one call.
class Deadline {
 public:
  explicit Deadline(std::chrono::seconds time) : end_(Clock::now() + time) {}

  void applyTo(HINTERNET request) const {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(end_ - Clock::now());
    if (left.count() <= 0) failWith(ERROR_WINHTTP_TIMEOUT);
    const auto milliseconds = static_cast<int>(left.count());
    check(WinHttpSetTimeouts(request, milliseconds, milliseconds, milliseconds, milliseconds));
    // The wait for the response has a limit of its own.
    setOption(request, WINHTTP_OPTION_RECEIVE_RESPONSE_TIMEOUT, static_cast<DWORD>(milliseconds));
  }

 private:
  Clock::time_point end_;
};

unsigned statusOf(HINTERNET request) {
  DWORD status = 0;
  DWORD size = sizeof(status);
  check(WinHttpQueryHeaders(request, WINHTTP_QUERY_STATUS_CODE | WINHTTP_QUERY_FLAG_NUMBER,
                            WINHTTP_HEADER_NAME_BY_INDEX, &status, &size, WINHTTP_NO_HEADER_INDEX));
  return status;
}

std::string readBody(HINTERNET request, const Deadline& deadline) {
  std::string body;
  std::string piece(1 << 16, '\0');
  for (;;) {
    deadline.applyTo(request);
    DWORD read = 0;
    check(WinHttpReadData(request, piece.data(), static_cast<DWORD>(piece.size()), &read));
    if (read == 0) return body;
    if (body.size() + read > kMostAnswerBytes) {
      throw ClientError(L"The service's answer is too large.");
    }
    body.append(piece, 0, read);
  }
}

}  // namespace

Endpoint::Endpoint(Settings settings, const std::wstring& host, INTERNET_PORT port,
                   std::chrono::seconds timeout)
    : settings_(std::move(settings)), timeout_(timeout) {
  if (settings_.plainHttp && !isLoopback(host)) {
    throw ClientError(L"Without TLS only a service on this computer is used.");
  }
  session_.reset(WinHttpOpen(L"TlCommClient", WINHTTP_ACCESS_TYPE_NO_PROXY, WINHTTP_NO_PROXY_NAME,
                             WINHTTP_NO_PROXY_BYPASS, 0));
  check(static_cast<bool>(session_));
  if (!settings_.plainHttp) {
    setOption(session_.get(), WINHTTP_OPTION_SECURE_PROTOCOLS, WINHTTP_FLAG_SECURE_PROTOCOL_TLS1_2);
  }
  connection_.reset(WinHttpConnect(session_.get(), host.c_str(), port, 0));
  check(static_cast<bool>(connection_));
}

Endpoint::Handle Endpoint::openRequest(const std::wstring& path) const {
  Handle request(WinHttpOpenRequest(connection_.get(), L"POST", path.c_str(), nullptr,
                                    WINHTTP_NO_REFERER, WINHTTP_DEFAULT_ACCEPT_TYPES,
                                    settings_.plainHttp ? 0 : WINHTTP_FLAG_SECURE));
  check(static_cast<bool>(request));
  setOption(request.get(), WINHTTP_OPTION_DISABLE_FEATURE,
            WINHTTP_DISABLE_COOKIES | WINHTTP_DISABLE_REDIRECTS | WINHTTP_DISABLE_AUTHENTICATION);
  if (settings_.fingerprint && !settings_.plainHttp) {
    // The fingerprint decides alone, so that a certificate of one's own needs no authority.
    setOption(request.get(), WINHTTP_OPTION_SECURITY_FLAGS,
              SECURITY_FLAG_IGNORE_UNKNOWN_CA | SECURITY_FLAG_IGNORE_CERT_CN_INVALID |
                  SECURITY_FLAG_IGNORE_CERT_DATE_INVALID | SECURITY_FLAG_IGNORE_CERT_WRONG_USAGE);
  }
  return request;
}

void Endpoint::verifyCertificate(HINTERNET request) const {
  PCCERT_CONTEXT context = nullptr;
  DWORD size = sizeof(context);
  check(WinHttpQueryOption(request, WINHTTP_OPTION_SERVER_CERT_CONTEXT, &context, &size));
  const Certificate certificate(context);
  if (!certificate ||
      sha256(context->pbCertEncoded, context->cbCertEncoded) != *settings_.fingerprint) {
    failWith(ERROR_WINHTTP_SECURE_INVALID_CERT);
  }
}

Answer Endpoint::post(const std::wstring& path, const std::string& json) const {
  const Deadline deadline(timeout_);
  const Handle request = openRequest(path);
  deadline.applyTo(request.get());
  const std::wstring headers = L"Content-Type: application/json\r\n";
  const auto length = static_cast<DWORD>(json.size());
  // The headers hold no secret. The body does, and follows when the certificate is known.
  check(WinHttpSendRequest(request.get(), headers.c_str(), static_cast<DWORD>(headers.size()),
                           WINHTTP_NO_REQUEST_DATA, 0, length, 0));
  if (settings_.fingerprint && !settings_.plainHttp) verifyCertificate(request.get());
  for (DWORD sent = 0; sent < length;) {
    deadline.applyTo(request.get());
    DWORD written = 0;
    check(WinHttpWriteData(request.get(), json.data() + sent, length - sent, &written));
    if (written == 0) failWith(ERROR_WINHTTP_CONNECTION_ERROR);
    sent += written;
  }
  deadline.applyTo(request.get());
  check(WinHttpReceiveResponse(request.get(), nullptr));
  return {statusOf(request.get()), readBody(request.get(), deadline)};
}

}  // namespace tlpacscfg::client
