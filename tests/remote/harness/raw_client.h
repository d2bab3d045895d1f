#pragma once

#include <string>
#include <string_view>

namespace tlpacscfg::test {

/// A raw connection to a local port, for malformed requests.
class RawClient {
 public:
  /// From this loopback address. Throws std::runtime_error when there is no connection.
  explicit RawClient(int port, const char* source = "127.0.0.1");
  ~RawClient();
  RawClient(const RawClient&) = delete;
  RawClient& operator=(const RawClient&) = delete;

  /// False when the other side is gone.
  bool send(std::string_view bytes) const;

  /// Waits until the other side has sent something; false when it does not within half a minute.
  bool hasInput() const;

  /// Everything until the other side closes; throws after half a minute.
  std::string readToEnd() const;

  /// The same until the text appears.
  std::string readUntil(std::string_view end) const;

  /// Whether the other side has closed.
  bool hasEnded() const;

  /// Closes the connection with a reset.
  void reset();

 private:
  int socket_;
};

/// An HTTP request with these header lines (each ended by CR LF) and this body.
std::string httpRequest(const std::string& firstLine, const std::string& headers,
                        const std::string& body = "");

/// A proper request for an operation.
std::string properRequest(const std::string& path, const std::string& json);

}  // namespace tlpacscfg::test
