#include <httplib.h>
#include <openssl/ssl.h>
#include <openssl/x509.h>
#include <signal.h>

#include <algorithm>
#include <memory>
#include <utility>

#include "client/client_error.h"
#include "client/endpoint.h"
#include "shared/limits.h"
#include "shared/loopback.h"
#include "support/text.h"

namespace tlpacscfg::client {
namespace {

using Clock = std::chrono::steady_clock;

/// Called with the certificate chain before anything is sent. The fingerprint alone decides: a
/// self-signed certificate needs no authority.
int hasFingerprint(X509_STORE_CTX* chain, void* accepted) {
  const auto& fingerprints = *static_cast<const std::vector<Fingerprint>*>(accepted);
  X509* const certificate = X509_STORE_CTX_get0_cert(chain);
  Fingerprint shown{};
  auto size = static_cast<unsigned>(shown.size());
  if (certificate == nullptr || X509_digest(certificate, EVP_sha256(), shown.data(), &size) != 1) {
    return 0;
  }
  return std::ranges::find(fingerprints, shown) != fingerprints.end() ? 1 : 0;
}

/// While it exists, writing to a connection that the service closed is an error and does not end
/// the program.
class BrokenPipesAreErrors {
 public:
  BrokenPipesAreErrors() {
    sigemptyset(&brokenPipe_);
    sigaddset(&brokenPipe_, SIGPIPE);
    pthread_sigmask(SIG_BLOCK, &brokenPipe_, &before_);
  }
  ~BrokenPipesAreErrors() {
    if (sigismember(&before_, SIGPIPE) == 1) return;
    const timespec none{};
    while (sigtimedwait(&brokenPipe_, nullptr, &none) == SIGPIPE) continue;
    pthread_sigmask(SIG_SETMASK, &before_, nullptr);
  }
  BrokenPipesAreErrors(const BrokenPipesAreErrors&) = delete;
  BrokenPipesAreErrors& operator=(const BrokenPipesAreErrors&) = delete;

 private:
  sigset_t brokenPipe_{}, before_{};
};

[[noreturn]] void failWith(httplib::Error error) {
  switch (error) {
    case httplib::Error::Connection:
    case httplib::Error::BindIPAddress:
      throw ClientError(L"There is no connection to the service.");
    case httplib::Error::ConnectionTimeout:
      throw ClientError(L"The service did not answer in time.");
    case httplib::Error::SSLConnection:
    case httplib::Error::SSLLoadingCerts:
    case httplib::Error::SSLServerVerification:
      throw ClientError(L"The service's certificate is not trusted.");
    case httplib::Error::Read:
    case httplib::Error::Write:
    case httplib::Error::Canceled:
      throw ClientError(L"The service broke the connection off, or did not answer in time.");
    default:
      throw ClientError(L"The service cannot be used (error " + decimal(static_cast<int>(error)) +
                        L").");
  }
}

std::unique_ptr<httplib::ClientImpl> clientFor(const Settings& settings, const std::string& host,
                                               std::uint16_t port) {
  if (settings.plainHttp) return std::make_unique<httplib::ClientImpl>(host, port);
  auto client = std::make_unique<httplib::SSLClient>(host, port);
  SSL_CTX* const context = client->ssl_context();
  SSL_CTX_set_min_proto_version(context, TLS1_2_VERSION);
  client->enable_server_certificate_verification(settings.fingerprints.empty());
  if (!settings.fingerprints.empty()) {
    SSL_CTX_set_verify(context, SSL_VERIFY_PEER, nullptr);
    // OpenSSL passes the pointer on as it is; the function only reads.
    SSL_CTX_set_cert_verify_callback(context, &hasFingerprint,
                                     const_cast<std::vector<Fingerprint>*>(&settings.fingerprints));
  }
  return client;
}

}  // namespace

struct Endpoint::Connection {
  Settings settings;
  std::unique_ptr<httplib::ClientImpl> client;
};

Endpoint::Endpoint(Settings settings, const std::wstring& host, std::uint16_t port,
                   std::chrono::seconds timeout)
    : timeout_(timeout) {
  if (settings.plainHttp && !remote::isLoopback(host)) {
    throw ClientError(L"Without TLS only a service on this computer is used.");
  }
  const auto connection = std::make_shared<Connection>();
  connection->settings = std::move(settings);
  connection->client = clientFor(connection->settings, toUtf8(host), port);
  connection->client->set_keep_alive(true);
  connection->client->set_connection_timeout(timeout);
  connection->client->set_read_timeout(timeout);
  connection->client->set_write_timeout(timeout);
  connection_ = connection;
}

const std::wstring& Endpoint::token() const { return connection_->settings.token; }

Answer Endpoint::exchange(const std::wstring& path, const std::string& json) const {
  const Clock::time_point end = Clock::now() + timeout_;
  Answer answer;
  bool tooLarge = false;
  httplib::Request request;
  request.method = "POST";
  request.path = toUtf8(path);
  request.set_header("Content-Type", "application/json");
  request.body = json;
  request.content_receiver = [&](const char* bytes, std::size_t size, std::uint64_t,
                                 std::uint64_t) {
    tooLarge = answer.body.size() + size > remote::kMaxAnswerBytes;
    if (tooLarge || Clock::now() > end) return false;
    answer.body.append(bytes, size);
    return true;
  };
  const BrokenPipesAreErrors brokenPipesAreErrors;
  const httplib::Result result = connection_->client->send(request);
  if (tooLarge) throw ClientError(L"The service's answer is too large.");
  if (!result) failWith(result.error());
  answer.status = static_cast<unsigned>(result->status);
  return answer;
}

Answer Endpoint::post(const std::wstring& path, const std::string& json) {
  return exchange(path, json);
}

}  // namespace tlpacscfg::client
