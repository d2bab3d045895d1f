#include "service/tls.h"

#include "service/options.h"

namespace tlpacscfg::service {

TlsContext makeTlsContext(const std::string& certificateFile, const std::string& keyFile) {
  TlsContext context(SSL_CTX_new(TLS_server_method()));
  if (!context) throw OptionError("TLS is not available");
  SSL_CTX_set_min_proto_version(context.get(), TLS1_2_VERSION);
  SSL_CTX_set_options(context.get(), SSL_OP_NO_RENEGOTIATION | SSL_OP_NO_COMPRESSION);
  // A write that was interrupted continues with the rest of the text at another address.
  SSL_CTX_set_mode(context.get(),
                   SSL_MODE_ENABLE_PARTIAL_WRITE | SSL_MODE_ACCEPT_MOVING_WRITE_BUFFER);
  if (SSL_CTX_use_certificate_chain_file(context.get(), certificateFile.c_str()) != 1) {
    throw OptionError("the certificate '" + certificateFile + "' cannot be used");
  }
  if (SSL_CTX_use_PrivateKey_file(context.get(), keyFile.c_str(), SSL_FILETYPE_PEM) != 1 ||
      SSL_CTX_check_private_key(context.get()) != 1) {
    throw OptionError("the key '" + keyFile + "' cannot be used with the certificate");
  }
  return context;
}

}  // namespace tlpacscfg::service
