#pragma once

#include <sys/socket.h>

#include <string>

namespace tlpacscfg::service {

/// The other side of a connection.
struct Peer {
  std::string address;
  /// What counts as one neighbour: an IPv4 address, or the /64 of an IPv6 address, all of which one
  /// computer may use.
  std::string network;
};

Peer peerOf(const sockaddr_storage& address);

}  // namespace tlpacscfg::service
