#include "service/token.h"

#include <openssl/crypto.h>

#include "service/private_file.h"
#include "shared/token_file.h"

namespace tlpacscfg::service {
namespace {

constexpr std::size_t kMinLength = 16;

using Digest = decltype(Token::digest);

Digest digestOf(std::string_view text) {
  Digest digest{};
  SHA256(reinterpret_cast<const unsigned char*>(text.data()), text.size(), digest.data());
  return digest;
}

Token readToken(const TokenFile& file) {
  const std::string secret = remote::tokenIn(readPrivateFile("the token file", file.path));
  if (secret.empty()) throw OptionError("the token file '" + file.path + "' is empty");
  if (secret.size() < kMinLength) {
    throw OptionError("the token in '" + file.path + "' has fewer than " +
                      std::to_string(kMinLength) + " characters");
  }
  return {file.name, file.rights, digestOf(secret)};
}

}  // namespace

Tokens::Tokens(const std::vector<TokenFile>& files) {
  for (const TokenFile& file : files) {
    Token token = readToken(file);
    for (const Token& other : tokens_) {
      if (other.digest != token.digest) continue;
      throw OptionError("the tokens '" + other.name + "' and '" + token.name + "' are the same");
    }
    tokens_.push_back(std::move(token));
  }
}

const Token* Tokens::find(std::string_view shown) const {
  const Digest digest = digestOf(shown);
  const Token* found = nullptr;
  for (const Token& token : tokens_) {
    if (CRYPTO_memcmp(token.digest.data(), digest.data(), digest.size()) == 0) found = &token;
  }
  return found;
}

}  // namespace tlpacscfg::service
