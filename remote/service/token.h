#pragma once

#include <openssl/sha.h>

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "service/options.h"

namespace tlpacscfg::service {

/// A secret that clients show, and what it permits.
struct Token {
  std::string name;  ///< For the journal; the secret is not.
  Rights rights = Rights::Read;
  /// SHA-256 of the secret. Digests have one length, so that comparing them does not tell how long
  /// the secret is.
  std::array<unsigned char, SHA256_DIGEST_LENGTH> digest{};
};

class Tokens {
 public:
  /// Reads the first line of each file. Throws OptionError for a file that is missing or not
  /// private, a secret that is too short, and one that two files hold.
  explicit Tokens(const std::vector<TokenFile>& files);

  /// Null when there is no such token. Compares with all of them, in the same time for every text
  /// of the same length.
  const Token* find(std::string_view shown) const;

 private:
  std::vector<Token> tokens_;
};

}  // namespace tlpacscfg::service
