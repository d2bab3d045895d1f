#pragma once

#include <cstddef>
#include <list>
#include <map>
#include <optional>
#include <string>

#include "service/connection.h"
#include "service/slowdown.h"

namespace tlpacscfg::service {

/// Decides which connections may wait, and which of them a worker serves next. One network gets at
/// most half of the places and half of the workers, rounded up. Not thread-safe.
class Admission {
 public:
  using Connections = std::list<Connection>;

  struct Limits {
    std::size_t workers;
    std::size_t places;
    Clock::duration silence;  ///< The longest time to a connection's first byte.
  };

  struct Refused {
    Connection connection;
    const char* reason;
  };

  explicit Admission(const Limits& limits) : limits_(limits) {}

  /// The connections without a worker, in the order of their arrival.
  Connections& waiting() { return waiting_; }
  std::size_t places() const { return limits_.places; }
  std::size_t working() const { return working_; }

  /// Gives the connection a place. When there is none, the network with the most places loses one:
  /// that of its oldest silent connection, or else of its newest connection.
  std::optional<Refused> admit(Connection connection);

  /// Frees the place of the connection.
  Connection take(Connections::iterator connection);

  /// Frees the places of the connections that have been silent for too long.
  Connections takeSilent(Clock::time_point now);

  /// The connection that a worker is to serve now: of those that have spoken, the first of the
  /// network with the fewest workers, and among equals the one whose last turn is longest ago. None
  /// while no worker may be given one.
  std::optional<Connection> next(Clock::time_point now);

  /// A worker has served a connection of this network.
  void finish(const std::string& network, TokenCheck token, Clock::time_point now);

  /// When takeSilent() or next() will give more although nothing else happens; or
  /// Clock::time_point::max().
  Clock::time_point nextChange(Clock::time_point now) const;

 private:
  struct Share {
    std::size_t waiting = 0;
    std::size_t working = 0;
    std::size_t lastTurn = 0;
  };

  Clock::time_point changesAt(const Connection& connection, Clock::time_point now) const;
  Connections::iterator victim(bool amongThoseOfTheNewest);
  void release(const std::string& network, std::size_t Share::*part);

  const Limits limits_;
  Connections waiting_;
  std::map<std::string, Share> shares_;
  std::size_t working_ = 0;
  std::size_t turn_ = 0;
  Slowdown slowdown_;
};

}  // namespace tlpacscfg::service
