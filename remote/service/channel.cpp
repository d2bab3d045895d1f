#include "service/channel.h"

#include <openssl/err.h>
#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <string_view>

#include "service/options.h"
#include "support/scope_exit.h"

namespace tlpacscfg::service {
namespace {

constexpr std::string_view kHeaderEnd = "\r\n\r\n";
constexpr std::chrono::seconds kLinger{1};
constexpr std::size_t kMaxLingerBytes = 1 << 20;

bool wouldBlock() { return errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR; }

}  // namespace

Channel::Channel(Descriptor socket, SSL_CTX* tls, const ChannelLimits& limits, int stopSignal)
    : socket_(std::move(socket)),
      limits_(limits),
      stopSignal_(stopSignal),
      readDeadline_(Clock::now() + limits.readTime),
      headerDeadline_(Clock::now() + limits.headerTime) {
  if (tls != nullptr) {
    tls_.reset(SSL_new(tls));
    if (tls_) SSL_set_fd(tls_.get(), socket_.get());
  }
}

bool Channel::fail(const char* reason) {
  if (*failure_ == '\0') failure_ = reason;
  return false;
}

bool Channel::await(short events, Clock::time_point deadline, bool untilStopped) {
  bool stopping = false;
  for (;;) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
    if (left.count() <= 0) return fail("too slow");
    pollfd waited[] = {{socket_.get(), events, 0}, {stopSignal_, POLLIN, 0}};
    const int ready = poll(waited, stopping ? 1 : 2, static_cast<int>(left.count()));
    if (ready < 0 && errno != EINTR) return fail("poll failed");
    if (ready > 0 && waited[1].revents != 0) {
      if (untilStopped) return fail("stopping");
      stopping = true;
      writeDeadline_ = std::min(writeDeadline_.value_or(deadline), Clock::now() + kEndingTime);
      deadline = std::min(deadline, *writeDeadline_);
    }
    // An error or a hang-up shows in the call that follows.
    if (ready > 0 && waited[0].revents != 0) return true;
  }
}

bool Channel::headersRead() const { return headerEndMatched_ == kHeaderEnd.size(); }

Clock::time_point Channel::readDeadline() const {
  return headersRead() ? readDeadline_ : headerDeadline_;
}

bool Channel::awaitWrite() {
  if (!writeDeadline_) writeDeadline_ = Clock::now() + limits_.writeTime;
  return await(POLLOUT, *writeDeadline_, false);
}

/// Waits until the TLS session can continue; false when it cannot.
bool Channel::awaitTls(int result, bool reading) {
  const Clock::time_point deadline =
      reading ? readDeadline() : writeDeadline_.value_or(Clock::now() + limits_.writeTime);
  switch (SSL_get_error(tls_.get(), result)) {
    case SSL_ERROR_WANT_READ:
      return await(POLLIN, deadline, reading);
    case SSL_ERROR_WANT_WRITE:
      return await(POLLOUT, deadline, reading);
    case SSL_ERROR_ZERO_RETURN:
      return fail("closed by the client");
    default:
      return fail("TLS failed");
  }
}

bool Channel::handshake() {
  if (!tls_) return fail("TLS is not available");
  for (;;) {
    ERR_clear_error();
    const int result = SSL_accept(tls_.get());
    if (result == 1) return true;
    if (!awaitTls(result, true)) return false;
  }
}

bool Channel::is_readable() const { return *failure_ == '\0'; }

bool Channel::is_writable() const { return *failure_ == '\0'; }

ssize_t Channel::receive(char* target, size_t size) {
  for (;;) {
    if (tls_) {
      ERR_clear_error();
      const int result = SSL_read(tls_.get(), target, static_cast<int>(size));
      if (result > 0) return result;
      if (!awaitTls(result, true)) return -1;
    } else {
      const ssize_t result = recv(socket_.get(), target, size, 0);
      if (result > 0) return result;
      if (result == 0) {
        fail("closed by the client");
        return 0;
      }
      if (!wouldBlock()) {
        fail("broken connection");
        return -1;
      }
      if (!await(POLLIN, readDeadline(), true)) return -1;
    }
  }
}

bool Channel::withinLimits(std::string_view received) {
  for (const char c : received) {
    ++bytesRead_;
    if (headersRead()) continue;
    if (bytesRead_ > limits_.headerBytes) return fail("header too large");
    if (c == kHeaderEnd[headerEndMatched_]) {
      ++headerEndMatched_;
    } else {
      headerEndMatched_ = c == kHeaderEnd[0] ? 1 : 0;
    }
  }
  return bytesRead_ <= limits_.totalBytes || fail("request too large");
}

bool Channel::fill() {
  // Ends a request that never stops arriving, a byte at a time.
  if (Clock::now() >= readDeadline()) return fail("too slow");
  // What has been written was not the response yet.
  writeDeadline_.reset();
  const ssize_t received = receive(buffer_.data(), buffer_.size());
  if (received <= 0) return false;
  bufferStart_ = 0;
  bufferEnd_ = static_cast<std::size_t>(received);
  return withinLimits({buffer_.data(), bufferEnd_});
}

ssize_t Channel::read(char* target, size_t size) {
  if (*failure_ != '\0') return -1;
  if (bufferStart_ == bufferEnd_ && !fill()) return -1;
  const std::size_t count = std::min(size, bufferEnd_ - bufferStart_);
  std::copy_n(buffer_.data() + bufferStart_, count, target);
  bufferStart_ += count;
  return static_cast<ssize_t>(count);
}

ssize_t Channel::write(const char* source, size_t size) {
  if (*failure_ != '\0') return -1;
  // Also starts the time for the response.
  if (!awaitWrite()) return -1;
  std::size_t written = 0;
  while (written < size) {
    if (tls_) {
      ERR_clear_error();
      const int chunk = static_cast<int>(std::min<std::size_t>(size - written, 1 << 20));
      const int result = SSL_write(tls_.get(), source + written, chunk);
      if (result > 0) {
        written += static_cast<std::size_t>(result);
      } else if (!awaitTls(result, false)) {
        return -1;
      }
    } else {
      const ssize_t result = send(socket_.get(), source + written, size - written, MSG_NOSIGNAL);
      if (result > 0) {
        written += static_cast<std::size_t>(result);
      } else if (!wouldBlock()) {
        fail("broken connection");
        return -1;
      } else if (!awaitWrite()) {
        return -1;
      }
    }
  }
  bytesWritten_ += size;
  return static_cast<ssize_t>(size);
}

void Channel::finish() {
  if (*failure_ != '\0') return;
  if (tls_) {
    ERR_clear_error();
    SSL_shutdown(tls_.get());
  }
  // Closing with unread input would reset the connection, and the client might lose the response.
  shutdown(socket_.get(), SHUT_WR);
  const Clock::time_point deadline = Clock::now() + kLinger;
  // The exchange is complete; a failure here is not reported.
  const ScopeExit forget([this] { failure_ = ""; });
  std::size_t left = kMaxLingerBytes;
  while (left > 0) {
    const ssize_t result = recv(socket_.get(), buffer_.data(), buffer_.size(), 0);
    if (result == 0 || (result < 0 && !wouldBlock())) return;
    if (result > 0) {
      left -= std::min(left, static_cast<std::size_t>(result));
    } else if (!await(POLLIN, deadline, true)) {
      return;
    }
  }
}

}  // namespace tlpacscfg::service
