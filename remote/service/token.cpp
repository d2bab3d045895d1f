#include "service/token.h"

#include <openssl/crypto.h>
#include <openssl/sha.h>

#include <array>

#include "service/options.h"
#include "shared/token_file.h"

namespace tlpacscfg::service {
namespace {

constexpr std::size_t kMinLength = 16;

using Digest = std::array<unsigned char, SHA256_DIGEST_LENGTH>;

Digest digestOf(std::string_view text) {
  Digest digest{};
  SHA256(reinterpret_cast<const unsigned char*>(text.data()), text.size(), digest.data());
  return digest;
}

}  // namespace

Token Token::fromFile(const std::string& file) {
  std::optional<std::string> secret = remote::readTokenFile(file);
  if (!secret) {
    throw OptionError("the token file '" + file + "' cannot be read or is empty");
  }
  if (secret->size() < kMinLength) {
    throw OptionError("the token has fewer than " + std::to_string(kMinLength) + " characters");
  }
  return Token(*std::move(secret));
}

bool Token::matches(std::string_view shown) const {
  // Digests have one length, so that the time does not depend on the length of the secret.
  const Digest expected = digestOf(secret_);
  const Digest actual = digestOf(shown);
  return CRYPTO_memcmp(expected.data(), actual.data(), expected.size()) == 0;
}

}  // namespace tlpacscfg::service
