#pragma once

#include <string>
#include <string_view>

namespace tlpacscfg::service {

/// The secret that clients must show.
class Token {
 public:
  /// The first line of the file. Throws OptionError when it is missing or too short.
  static Token fromFile(const std::string& file);

  explicit Token(std::string secret) : secret_(std::move(secret)) {}

  /// Takes the same time for every text of the same length.
  bool matches(std::string_view shown) const;

 private:
  std::string secret_;
};

}  // namespace tlpacscfg::service
