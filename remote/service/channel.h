#pragma once

#include <httplib.h>

#include <array>
#include <chrono>
#include <cstddef>
#include <optional>
#include <string>

#include "service/connection.h"
#include "service/tls.h"

namespace tlpacscfg::service {

struct ChannelLimits {
  std::size_t headerBytes;
  std::size_t totalBytes;
  Clock::duration headerTime;  ///< For the TLS handshake and the headers.
  Clock::duration readTime;    ///< For the whole request.
  Clock::duration writeTime;   ///< For the response, from its first byte on.
};

/// One accepted connection, with or without TLS. It fails unless the request arrives and the
/// response is accepted within the given times and sizes.
class Channel : public httplib::Stream {
 public:
  /// For a socket that does not block. The time for the request begins now. When `stopSignal`
  /// becomes readable, a request that has not arrived fails.
  Channel(Descriptor socket, SSL_CTX* tls, const ChannelLimits& limits, int stopSignal);

  /// False when no TLS session could be agreed.
  bool handshake();

  bool is_readable() const override;
  bool is_writable() const override;
  ssize_t read(char* target, size_t size) override;
  ssize_t write(const char* source, size_t size) override;
  // The library asks for them; no handler does.
  void get_remote_ip_and_port(std::string&, int&) const override {}
  void get_local_ip_and_port(std::string&, int&) const override {}
  socket_t socket() const override { return socket_.get(); }

  /// Ends the connection so that the client receives the whole response even while it still sends.
  void finish();

  /// Why the channel failed; empty when it did not.
  const char* failure() const { return failure_; }
  std::size_t bytesRead() const { return bytesRead_; }
  std::size_t bytesWritten() const { return bytesWritten_; }

 private:
  bool await(short events, Clock::time_point deadline, bool untilStopped);
  bool awaitWrite();
  bool headersRead() const;
  Clock::time_point readDeadline() const;
  bool awaitTls(int result, bool reading);
  ssize_t receive(char* target, size_t size);
  bool fill();
  bool withinLimits(std::string_view received);
  bool fail(const char* reason);

  Descriptor socket_;
  TlsSession tls_;
  ChannelLimits limits_;
  int stopSignal_;
  Clock::time_point readDeadline_;
  Clock::time_point headerDeadline_;
  std::optional<Clock::time_point> writeDeadline_;
  std::array<char, 8192> buffer_{};
  std::size_t bufferStart_ = 0;
  std::size_t bufferEnd_ = 0;
  std::size_t bytesRead_ = 0;
  std::size_t bytesWritten_ = 0;
  std::size_t headerEndMatched_ = 0;
  const char* failure_ = "";
};

}  // namespace tlpacscfg::service
