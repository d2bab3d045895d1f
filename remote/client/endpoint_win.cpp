#include <windows.h>

#include <bcrypt.h>
#include <wincrypt.h>
#include <winhttp.h>

#include <algorithm>
#include <exception>
#include <utility>

#include "client/client_error.h"
#include "client/endpoint.h"
#include "client/own_thread_win.h"
#include "shared/limits.h"
#include "shared/loopback.h"
#include "support/handle_win.h"
#include "support/text.h"

namespace tlpacscfg::client {
namespace {

using Clock = std::chrono::steady_clock;
using Handle = UniqueHandle<HINTERNET, WinHttpCloseHandle>;
using Certificate = UniqueHandle<PCCERT_CONTEXT, CertFreeCertificateContext>;

/// A call without an answer that took at least this long is followed by a pause.
constexpr std::chrono::milliseconds kMinLoss{500};
constexpr std::chrono::seconds kMaxPause{5};

/// Nothing came from the service.
class NoAnswer : public ClientError {
 public:
  using ClientError::ClientError;
};

[[noreturn]] void failWith(DWORD code) {
  switch (code) {
    case ERROR_WINHTTP_TIMEOUT:
    case WSAETIMEDOUT:
      throw NoAnswer(L"The service did not answer in time.");
    case ERROR_WINHTTP_CANNOT_CONNECT:
      throw NoAnswer(L"There is no connection to the service.");
    case ERROR_WINHTTP_NAME_NOT_RESOLVED:
      throw NoAnswer(L"The service's host is not known.");
    case ERROR_WINHTTP_CONNECTION_ERROR:
    case ERROR_WINHTTP_INVALID_SERVER_RESPONSE:
    case WSAECONNABORTED:
    case WSAECONNRESET:
      throw NoAnswer(L"The service broke the connection off.");
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

/// The end of the time for one call.
class Deadline {
 public:
  explicit Deadline(std::chrono::seconds time) : end_(Clock::now() + time) {}

  std::chrono::milliseconds left() const {
    const auto time = std::chrono::ceil<std::chrono::milliseconds>(end_ - Clock::now());
    if (time.count() <= 0) failWith(ERROR_WINHTTP_TIMEOUT);
    return time;
  }

  bool isOver() const { return Clock::now() >= end_; }

  /// Limits each step of the request, not their sum.
  void applyTo(HINTERNET request) const {
    const auto milliseconds = static_cast<int>(left().count());
    check(WinHttpSetTimeouts(request, milliseconds, milliseconds, milliseconds, milliseconds));
    // Waiting for the response has a separate limit.
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
    DWORD available = 0;
    check(WinHttpQueryDataAvailable(request, &available));
    if (available == 0) return body;
    // Asking for more would wait until that much has arrived.
    DWORD read = 0;
    check(WinHttpReadData(request, piece.data(),
                          std::min(available, static_cast<DWORD>(piece.size())), &read));
    if (read == 0) return body;
    if (body.size() + read > remote::kMaxAnswerBytes) {
      throw ClientError(L"The service's answer is too large.");
    }
    body.append(piece, 0, read);
  }
}

/// The library's threads may outlive a call, so it must not be unloaded with this module.
void keepLibraryLoaded() {
  HMODULE library = nullptr;
  check(GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_PIN, L"winhttp.dll", &library));
}

}  // namespace

/// The handles and settings of one service.
struct Endpoint::Connection {
  Connection(Settings used, const std::wstring& host, std::uint16_t port)
      : settings(std::move(used)) {
    if (settings.plainHttp && !remote::isLoopback(host)) {
      throw ClientError(L"Without TLS only a service on this computer is used.");
    }
    keepLibraryLoaded();
    session.reset(WinHttpOpen(L"TlCommClient", WINHTTP_ACCESS_TYPE_NO_PROXY, WINHTTP_NO_PROXY_NAME,
                              WINHTTP_NO_PROXY_BYPASS, 0));
    check(static_cast<bool>(session));
    if (!settings.plainHttp) setTlsVersions();
    connection.reset(WinHttpConnect(session.get(), host.c_str(), port, 0));
    check(static_cast<bool>(connection));
  }

  bool certificateIsPinned() const { return !settings.fingerprints.empty() && !settings.plainHttp; }

  Settings settings;
  Handle session;
  Handle connection;

 private:
  void setTlsVersions() const {
    DWORD versions = WINHTTP_FLAG_SECURE_PROTOCOL_TLS1_2 | WINHTTP_FLAG_SECURE_PROTOCOL_TLS1_3;
    if (WinHttpSetOption(session.get(), WINHTTP_OPTION_SECURE_PROTOCOLS, &versions,
                         sizeof(versions))) {
      return;
    }
    // Windows before 11 and Server 2022 does not know TLS 1.3.
    setOption(session.get(), WINHTTP_OPTION_SECURE_PROTOCOLS, WINHTTP_FLAG_SECURE_PROTOCOL_TLS1_2);
  }
};

/// One request and its answer, on a thread of its own.
class Endpoint::Call {
 public:
  Call(std::shared_ptr<const Connection> connection, std::wstring path, std::string json,
       const Deadline& deadline)
      : connection_(std::move(connection)),
        path_(std::move(path)),
        json_(std::move(json)),
        deadline_(deadline) {}

  void run() noexcept {
    try {
      const Handle request = open();
      send(request.get());
      deadline_.applyTo(request.get());
      check(WinHttpReceiveResponse(request.get(), nullptr));
      answer_ = {statusOf(request.get()), readBody(request.get(), deadline_)};
    } catch (...) {
      timedOut_ = deadline_.isOver();
      failure_ = std::current_exception();
    }
  }

  /// After run() has returned.
  Answer take() {
    // A step that ran out of time may report something else, a TLS handshake its certificate.
    if (failure_ && timedOut_) failWith(ERROR_WINHTTP_TIMEOUT);
    if (failure_) std::rethrow_exception(failure_);
    return std::move(answer_);
  }

 private:
  Handle open() const {
    const Settings& settings = connection_->settings;
    Handle request(WinHttpOpenRequest(connection_->connection.get(), L"POST", path_.c_str(),
                                      nullptr, WINHTTP_NO_REFERER, WINHTTP_DEFAULT_ACCEPT_TYPES,
                                      settings.plainHttp ? 0 : WINHTTP_FLAG_SECURE));
    check(static_cast<bool>(request));
    setOption(request.get(), WINHTTP_OPTION_DISABLE_FEATURE,
              WINHTTP_DISABLE_COOKIES | WINHTTP_DISABLE_REDIRECTS | WINHTTP_DISABLE_AUTHENTICATION);
    if (connection_->certificateIsPinned()) {
      // The fingerprint alone decides: a self-signed certificate needs no authority.
      setOption(request.get(), WINHTTP_OPTION_SECURITY_FLAGS,
                SECURITY_FLAG_IGNORE_UNKNOWN_CA | SECURITY_FLAG_IGNORE_CERT_CN_INVALID |
                    SECURITY_FLAG_IGNORE_CERT_DATE_INVALID | SECURITY_FLAG_IGNORE_CERT_WRONG_USAGE);
    }
    return request;
  }

  void send(HINTERNET request) const {
    const std::wstring headers = L"Content-Type: application/json\r\n";
    const auto length = static_cast<DWORD>(json_.size());
    deadline_.applyTo(request);
    // The headers hold no secret. The body does, and follows when the certificate is known.
    check(WinHttpSendRequest(request, headers.c_str(), static_cast<DWORD>(headers.size()),
                             WINHTTP_NO_REQUEST_DATA, 0, length, 0));
    if (connection_->certificateIsPinned()) verifyCertificate(request);
    for (DWORD sent = 0; sent < length;) {
      deadline_.applyTo(request);
      DWORD written = 0;
      check(WinHttpWriteData(request, json_.data() + sent, length - sent, &written));
      if (written == 0) failWith(ERROR_WINHTTP_CONNECTION_ERROR);
      sent += written;
    }
  }

  void verifyCertificate(HINTERNET request) const {
    PCCERT_CONTEXT context = nullptr;
    DWORD size = sizeof(PCCERT_CONTEXT);
    check(WinHttpQueryOption(request, WINHTTP_OPTION_SERVER_CERT_CONTEXT, &context, &size));
    const Certificate certificate(context);
    if (!certificate) failWith(ERROR_WINHTTP_SECURE_INVALID_CERT);
    const Fingerprint shown = sha256(context->pbCertEncoded, context->cbCertEncoded);
    if (std::ranges::find(connection_->settings.fingerprints, shown) ==
        connection_->settings.fingerprints.end()) {
      failWith(ERROR_WINHTTP_SECURE_INVALID_CERT);
    }
  }

  const std::shared_ptr<const Connection> connection_;
  const std::wstring path_;
  const std::string json_;
  const Deadline deadline_;
  Answer answer_;
  bool timedOut_ = false;
  std::exception_ptr failure_;
};

Endpoint::Endpoint(Settings settings, const std::wstring& host, std::uint16_t port,
                   std::chrono::seconds timeout)
    : connection_(std::make_shared<Connection>(std::move(settings), host, port)),
      timeout_(timeout) {}

const std::wstring& Endpoint::token() const { return connection_->settings.token; }

Answer Endpoint::exchange(const std::wstring& path, const std::string& json) const {
  const Deadline deadline(timeout_);
  // WinHTTP has no limit of its own for a stalled handshake or an answer that trickles in.
  const auto call = std::make_shared<Call>(connection_, path, json, deadline);
  if (!doneInTime([call] { call->run(); }, deadline.left())) failWith(ERROR_WINHTTP_TIMEOUT);
  return call->take();
}

Answer Endpoint::post(const std::wstring& path, const std::string& json) {
  const Clock::time_point start = Clock::now();
  if (start < pauseEnd_) throw ClientError(pauseReason_);
  try {
    return exchange(path, json);
  } catch (const NoAnswer& failure) {
    const Clock::time_point end = Clock::now();
    // A refusal that came at once costs nothing when it is repeated.
    if (end - start >= kMinLoss) {
      pauseReason_ = failure.text();
      pauseEnd_ = end + std::min<Clock::duration>(end - start, kMaxPause);
    }
    throw;
  }
}

}  // namespace tlpacscfg::client
