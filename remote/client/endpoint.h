#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>

#include "client/settings.h"

namespace tlpacscfg::client {

struct Answer {
  unsigned status = 0;
  std::string body;
};

/// A service on its host and port. Every failure throws ClientError.
class Endpoint {
 public:
  Endpoint(Settings settings, const std::wstring& host, std::uint16_t port,
           std::chrono::seconds timeout);

  /// Sends a JSON text and returns the answer. The time-out covers the whole exchange, from the
  /// connection to the last byte. After a call to which the service did not answer, further calls
  /// fail at once for the same reason, for as long as that call took, but not more than five
  /// seconds: a caller that goes on with all it has to send loses the time-out once.
  Answer post(const std::wstring& path, const std::string& json);

  const std::wstring& token() const;

 private:
  struct Connection;
  class Call;

  Answer exchange(const std::wstring& path, const std::string& json) const;

  /// Shared with calls that timed out and still run.
  std::shared_ptr<const Connection> connection_;
  std::chrono::seconds timeout_;
  std::chrono::steady_clock::time_point pauseEnd_{};
  std::wstring pauseReason_;
};

}  // namespace tlpacscfg::client
