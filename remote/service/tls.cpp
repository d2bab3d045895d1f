#include "service/tls.h"

#include <openssl/pem.h>

#include "service/options.h"
#include "service/private_file.h"

namespace tlpacscfg::service {
namespace {

using Bio = std::unique_ptr<BIO, decltype([](BIO* bio) { BIO_free(bio); })>;
using Key = std::unique_ptr<EVP_PKEY, decltype([](EVP_PKEY* key) { EVP_PKEY_free(key); })>;

/// Null when the text is not a key, or one that needs a passphrase.
Key keyIn(const std::string& pem) {
  const Bio bio(BIO_new_mem_buf(pem.data(), static_cast<int>(pem.size())));
  // Without this function the library would ask the terminal.
  const auto noPassphrase = [](char*, int, int, void*) { return -1; };
  return Key(PEM_read_bio_PrivateKey(bio.get(), nullptr, noPassphrase, nullptr));
}

}  // namespace

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
  const Key key = keyIn(readPrivateFile("the key", keyFile));
  if (SSL_CTX_use_PrivateKey(context.get(), key.get()) != 1 ||
      SSL_CTX_check_private_key(context.get()) != 1) {
    throw OptionError("the key '" + keyFile + "' cannot be used with the certificate");
  }
  return context;
}

}  // namespace tlpacscfg::service
