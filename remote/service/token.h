#pragma once

#include <string>
#include <string_view>

namespace tlpacscfg::service {

/// The secret that clients must show.
class Token {
 public:
  /// The first line of the file. Throws OptionError when it is missing or easily guessed.
  static Token fromFile(const std::string& file);

  explicit Token(std::string secret) : secret_(std::move(secret)) {}

  /// Takes equally long for every wrong answer.
  bool matches(std::string_view shown) const;

 private:
  std::string secret_;
};

}  // namespace tlpacscfg::service
