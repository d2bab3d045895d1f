#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tlpacscfg::service {

/// The text as a JSON string; invalid UTF-8 is replaced.
std::string quoted(std::string text);

/// A JSON text of limited length. Throws Refusal when it grows longer.
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
