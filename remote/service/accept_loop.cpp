#include "service/accept_loop.h"

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <optional>
#include <thread>
#include <utility>

#include "service/descriptor_limit.h"

namespace tlpacscfg::service {
namespace {

constexpr std::chrono::milliseconds kPause{100};
/// So many are accepted before those that wait are looked at again.
constexpr int kAcceptedAtOnce = 64;

/// What is polled before the waiting connections.
enum Polled { kStop, kServed, kListening, kFirstConnection };

}  // namespace

AcceptLoop::AcceptLoop(Descriptor listening, const ServiceOptions& options, HttpServer& server)
    : metrics_(server.metrics()),
      listening_(std::move(listening)),
      workers_(options.workers,
               [&server](Connection& connection) { return server.serve(connection); }),
      admission_({.workers = workers_.count(),
                  .places = reserveDescriptors(options.waiting, workers_.count()),
                  .silence = options.headerSeconds}) {
  polled_.reserve(kFirstConnection + options.waiting);
}

void AcceptLoop::run(int stopSignal) {
  for (;;) {
    try {
      if (!turn(stopSignal)) break;
    } catch (const std::exception&) {
      // Out of memory. What was left undone is done in the next turn.
      std::this_thread::sleep_for(kPause);
    }
  }
  listening_.close();
  while (!admission_.waiting().empty()) {
    drop(admission_.take(admission_.waiting().begin()), "stopping");
  }
  dropped_.write();
}

/// False when the service is to end.
bool AcceptLoop::turn(int stopSignal) {
  awaitEvents(stopSignal);
  if (polled_[kStop].revents != 0) return false;
  readConnections();
  if (polled_[kListening].revents != 0) acceptConnections();
  serveConnections();
  metrics_.setLoad({.workers = workers_.count(),
                    .working = admission_.working(),
                    .places = admission_.places(),
                    .waiting = admission_.waiting().size()});
  if (dropped_.due() <= Clock::now()) dropped_.write();
  return true;
}

void AcceptLoop::awaitEvents(int stopSignal) {
  const auto now = Clock::now();
  // A negative number is not polled.
  const int listening = now < acceptAgain_ ? -1 : listening_.get();
  polled_.assign({{stopSignal, POLLIN, 0}, {workers_.signal(), POLLIN, 0}, {listening, POLLIN, 0}});
  for (const Connection& one : admission_.waiting()) {
    const short first = one.spoke ? 0 : POLLIN;
    polled_.push_back({one.socket.get(), static_cast<short>(first | POLLRDHUP), 0});
  }
  poll(polled_.data(), polled_.size(), millisecondsToNextChange(now));
}

int AcceptLoop::millisecondsToNextChange(Clock::time_point now) const {
  auto next = std::min(admission_.nextChange(now), dropped_.due());
  if (acceptAgain_ > now) next = std::min(next, acceptAgain_);
  if (next == Clock::time_point::max()) return -1;
  return std::max(
      0, static_cast<int>(std::chrono::ceil<std::chrono::milliseconds>(next - now).count()));
}

void AcceptLoop::readConnections() {
  auto events = polled_.cbegin() + kFirstConnection;
  for (auto next = admission_.waiting().begin(); next != admission_.waiting().end(); ++events) {
    const auto one = next++;
    if ((events->revents & (POLLRDHUP | POLLHUP | POLLERR)) != 0) {
      drop(admission_.take(one), "closed by the client");
    } else if (events->revents != 0 && !one->spoke) {
      one->spoke = Clock::now();
    }
  }
}

void AcceptLoop::acceptConnections() {
  for (int i = 0; i < kAcceptedAtOnce; ++i) {
    sockaddr_storage address{};
    socklen_t length = sizeof(address);
    Descriptor socket(accept4(listening_.get(), reinterpret_cast<sockaddr*>(&address), &length,
                              SOCK_NONBLOCK | SOCK_CLOEXEC));
    const auto now = Clock::now();
    if (socket.get() < 0) {
      if (errno == EINTR || errno == ECONNABORTED) continue;
      if (errno == EAGAIN) return;
      // The connection stays in the queue of the system.
      dropped_.add("-", "no descriptor or memory is free", now);
      acceptAgain_ = now + kPause;
      return;
    }
    const int yes = 1;
    setsockopt(socket.get(), IPPROTO_TCP, TCP_NODELAY, &yes, sizeof(yes));
    const auto refused = admission_.admit({std::move(socket), peerOf(address), now});
    if (refused) drop(refused->connection, refused->reason);
  }
}

void AcceptLoop::serveConnections() {
  while (const auto served = workers_.takeServed()) {
    admission_.finish(served->network, served->token, Clock::now());
  }
  for (const Connection& silent : admission_.takeSilent(Clock::now())) drop(silent, "silent");
  while (std::optional<Connection> next = admission_.next(Clock::now())) {
    workers_.give(*std::move(next));
  }
}

void AcceptLoop::drop(const Connection& connection, const char* reason) {
  dropped_.add(connection.peer.network, reason, Clock::now());
  metrics_.refused(reason);
}

}  // namespace tlpacscfg::service
