#pragma once

#include <openssl/ssl.h>

#include <memory>
#include <string>

namespace tlpacscfg::service {

struct TlsRelease {
  void operator()(SSL_CTX* context) const { SSL_CTX_free(context); }
  void operator()(SSL* session) const { SSL_free(session); }
};
using TlsContext = std::unique_ptr<SSL_CTX, TlsRelease>;
using TlsSession = std::unique_ptr<SSL, TlsRelease>;

/// Serves with a certificate chain and its key, TLS 1.2 at least. Throws OptionError.
TlsContext makeTlsContext(const std::string& certificateFile, const std::string& keyFile);

}  // namespace tlpacscfg::service
