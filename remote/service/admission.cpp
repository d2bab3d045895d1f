#include "service/admission.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace tlpacscfg::service {
namespace {

std::size_t half(std::size_t count) { return (count + 1) / 2; }

}  // namespace

std::optional<Admission::Refused> Admission::admit(Connection connection) {
  Share& share = shares_[connection.peer.network];
  waiting_.push_back(std::move(connection));
  ++share.waiting;
  if (share.waiting > half(limits_.places)) {
    return Refused{take(victim(true)), "too many connections of one address"};
  }
  if (waiting_.size() > limits_.places) return Refused{take(victim(false)), "too many connections"};
  return std::nullopt;
}

Admission::Connections::iterator Admission::victim(bool amongThoseOfTheNewest) {
  const auto placesOf = [this](const Connection& one) {
    return shares_.at(one.peer.network).waiting;
  };
  const auto newest = std::prev(waiting_.end());
  auto chosen = newest;
  std::size_t most = placesOf(*newest);
  // Backwards, so that the last silent one is the oldest.
  for (auto one = newest; one != waiting_.begin();) {
    --one;
    if (amongThoseOfTheNewest && one->peer.network != newest->peer.network) continue;
    const std::size_t places = placesOf(*one);
    if (places < most || (places == most && one->spoke)) continue;
    chosen = one;
    most = places;
  }
  return chosen;
}

void Admission::release(const std::string& network, std::size_t Share::*part) {
  const auto share = shares_.find(network);
  --(share->second.*part);
  if (share->second.waiting + share->second.working == 0) shares_.erase(share);
}

Connection Admission::take(Connections::iterator connection) {
  release(connection->peer.network, &Share::waiting);
  Connection taken = std::move(*connection);
  waiting_.erase(connection);
  return taken;
}

/// When the connection has been silent for too long, or may be served.
Clock::time_point Admission::changesAt(const Connection& connection, Clock::time_point now) const {
  if (!connection.spoke) return connection.accepted + limits_.silence;
  return *connection.spoke + slowdown_.delay(connection.peer.network, now);
}

Admission::Connections Admission::takeSilent(Clock::time_point now) {
  Connections silent;
  for (auto one = waiting_.begin(); one != waiting_.end();) {
    const auto here = one++;
    if (here->spoke || changesAt(*here, now) > now) continue;
    release(here->peer.network, &Share::waiting);
    silent.splice(silent.end(), waiting_, here);
  }
  return silent;
}

std::optional<Connection> Admission::next(Clock::time_point now) {
  if (working_ == limits_.workers) return std::nullopt;
  const auto order = [this](const Connection& one) {
    const Share& share = shares_.at(one.peer.network);
    return std::pair(share.working, share.lastTurn);
  };
  auto chosen = waiting_.end();
  for (auto one = waiting_.begin(); one != waiting_.end(); ++one) {
    if (!one->spoke || changesAt(*one, now) > now) continue;
    if (order(*one).first >= half(limits_.workers)) continue;
    if (chosen == waiting_.end() || order(*one) < order(*chosen)) chosen = one;
  }
  if (chosen == waiting_.end()) return std::nullopt;
  ++working_;
  Share& share = shares_.at(chosen->peer.network);
  ++share.working;
  share.lastTurn = ++turn_;
  return take(chosen);
}

void Admission::finish(const std::string& network, TokenCheck token, Clock::time_point now) {
  --working_;
  release(network, &Share::working);
  slowdown_.report(network, token, now);
}

Clock::time_point Admission::nextChange(Clock::time_point now) const {
  auto next = Clock::time_point::max();
  for (const Connection& one : waiting_) {
    const Clock::time_point change = changesAt(one, now);
    // What could have changed by now waits for a worker.
    if (change > now) next = std::min(next, change);
  }
  return next;
}

}  // namespace tlpacscfg::service
