#pragma once

#include <stdexcept>
#include <string>

#include "support/text.h"

namespace tlpacscfg::client {

/// The reason of a failed call, as CheckForError answers it.
class ClientError : public std::runtime_error {
 public:
  explicit ClientError(const std::wstring& text) : std::runtime_error(toUtf8(text)), text_(text) {}

  const std::wstring& text() const { return text_; }

 private:
  std::wstring text_;
};

}  // namespace tlpacscfg::client
