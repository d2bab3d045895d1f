#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <poll.h>

#include <stdexcept>

#include "service/peer.h"
#include "service/workers.h"

namespace tlpacscfg::test {
namespace {

using service::Connection;
using service::Descriptor;
using service::TokenCheck;
using service::Workers;

service::Peer peerWith(int family, const char* text) {
  sockaddr_storage storage{};
  storage.ss_family = static_cast<sa_family_t>(family);
  void* const address = family == AF_INET
                            ? static_cast<void*>(&reinterpret_cast<sockaddr_in&>(storage).sin_addr)
                            : &reinterpret_cast<sockaddr_in6&>(storage).sin6_addr;
  EXPECT_EQ(inet_pton(family, text, address), 1) << text;
  return service::peerOf(storage);
}

TEST(PeerTest, ANetworkIsAnIpv4AddressOrTheFirstHalfOfAnIpv6Address) {
  const struct {
    int family;
    const char* text;
    const char* address;
    const char* network;
  } cases[] = {
      {AF_INET, "192.0.2.7", "192.0.2.7", "192.0.2.7"},
      {AF_INET6, "2001:db8:1:2:3:4:5:6", "2001:db8:1:2:3:4:5:6", "2001:db8:1:2::/64"},
      {AF_INET6, "2001:db8:1:2:ffff::", "2001:db8:1:2:ffff::", "2001:db8:1:2::/64"},
      {AF_INET6, "::1", "::1", "::/64"},
      // A socket for both versions gives IPv4 clients such addresses, all in one /64.
      {AF_INET6, "::ffff:192.0.2.7", "192.0.2.7", "192.0.2.7"},
  };
  for (const auto& [family, text, address, network] : cases) {
    const service::Peer peer = peerWith(family, text);
    EXPECT_EQ(peer.address, address);
    EXPECT_EQ(peer.network, network);
  }
}

Connection connectionOf(const std::string& network) {
  return {Descriptor(-1), {network, network}, service::Clock::now()};
}

Workers::Served awaitServed(Workers& workers) {
  for (;;) {
    pollfd signal{workers.signal(), POLLIN, 0};
    EXPECT_EQ(poll(&signal, 1, 30'000), 1);
    if (const auto served = workers.takeServed()) return *served;
  }
}

TEST(WorkersTest, TheyReportWhatTheyHaveServed) {
  Workers workers(2, [](Connection& connection) {
    return connection.peer.network == "a" ? TokenCheck::Right : TokenCheck::Wrong;
  });
  EXPECT_EQ(workers.count(), 2U);
  for (const char* network : {"a", "b"}) {
    workers.give(connectionOf(network));
    const Workers::Served served = awaitServed(workers);
    EXPECT_EQ(served.network, network);
    EXPECT_EQ(served.token, *network == 'a' ? TokenCheck::Right : TokenCheck::Wrong);
  }
}

TEST(WorkersTest, AFailureEndsNeitherItsWorkerNorTheOthers) {
  Workers workers(1, [](Connection&) -> TokenCheck { throw std::runtime_error("failed"); });
  for (int i = 0; i < 3; ++i) {
    workers.give(connectionOf("a"));
    EXPECT_EQ(awaitServed(workers).token, TokenCheck::None);
  }
}

TEST(WorkersTest, WhatHasBeenGivenIsServedBeforeTheyEnd) {
  std::atomic<int> served = 0;
  {
    Workers workers(2, [&](Connection&) {
      ++served;
      return TokenCheck::None;
    });
    workers.give(connectionOf("a"));
    workers.give(connectionOf("b"));
  }
  EXPECT_EQ(served, 2);
}

}  // namespace
}  // namespace tlpacscfg::test
