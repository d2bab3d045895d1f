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

  /// Sends a JSON text. The answer has arrived within the time-out, or the call fails: whatever it
  /// is that takes so long.
  Answer post(const std::wstring& path, const std::string& json) const;

  const std::wstring& token() const;

 private:
  struct Connection;
  class Call;

  /// Shared with calls that nobody waits for any longer.
  std::shared_ptr<const Connection> connection_;
  std::chrono::seconds timeout_;
};

}  // namespace tlpacscfg::client
