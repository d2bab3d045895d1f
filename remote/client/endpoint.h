#pragma once

#include <windows.h>

#include <winhttp.h>

#include <chrono>
#include <memory>
#include <string>

#include "client/settings.h"
#include "support/handle_win.h"

namespace tlpacscfg::client {

struct Answer {
  unsigned status = 0;
  std::string body;
};

/// A service on its host and port. Every failure throws ClientError.
class Endpoint {
 public:
  Endpoint(Settings settings, const std::wstring& host, INTERNET_PORT port,
           std::chrono::seconds timeout);

  /// Sends a JSON text and returns the answer. The time-out covers the whole exchange, from the
  /// connection to the last byte.
  Answer post(const std::wstring& path, const std::string& json) const;

  const std::wstring& token() const;

 private:
  struct Connection;
  class Call;

  /// Shared with calls that timed out and still run.
  std::shared_ptr<const Connection> connection_;
  std::chrono::seconds timeout_;
};

}  // namespace tlpacscfg::client
