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

/// For a server with this certificate chain and key, TLS 1.2 or later. Throws OptionError.
TlsContext makeTlsContext(const std::string& certificateFile, const std::string& keyFile);

}  // namespace tlpacscfg::service
