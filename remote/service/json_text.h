#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tlpacscfg::service {

/// The text as JSON writes it; what is no UTF-8 is replaced.
std::string quoted(std::string text);

/// A JSON text that may grow up to a limit, and throws Refusal beyond it.
class BoundedText {
 public:
  explicit BoundedText(std::size_t limit) : limit_(limit) {}

  BoundedText& operator+=(std::string_view piece);

  std::string take() { return std::move(text_); }

 private:
  std::size_t limit_;
  std::string text_;
};

}  // namespace tlpacscfg::service
