#include "service/peer.h"

#include <arpa/inet.h>
#include <netinet/in.h>

#include <algorithm>
#include <array>
#include <iterator>

namespace tlpacscfg::service {
namespace {

constexpr std::ptrdiff_t kNetworkBytes = 8;
/// Before the IPv4 address of a client of a socket that listens for both versions.
constexpr std::ptrdiff_t kMappedPrefixBytes = 12;

std::string textOf(int family, const void* address) {
  std::array<char, INET6_ADDRSTRLEN> text{};
  inet_ntop(family, address, text.data(), text.size());
  return text.data();
}

}  // namespace

Peer peerOf(const sockaddr_storage& storage) {
  if (storage.ss_family == AF_INET) {
    const std::string address =
        textOf(AF_INET, &reinterpret_cast<const sockaddr_in&>(storage).sin_addr);
    return {address, address};
  }
  if (storage.ss_family != AF_INET6) return {"-", "-"};
  in6_addr address = reinterpret_cast<const sockaddr_in6&>(storage).sin6_addr;
  if (IN6_IS_ADDR_V4MAPPED(&address)) {
    const std::string v4 = textOf(AF_INET, &address.s6_addr[kMappedPrefixBytes]);
    return {v4, v4};
  }
  const std::string whole = textOf(AF_INET6, &address);
  std::fill(std::begin(address.s6_addr) + kNetworkBytes, std::end(address.s6_addr),
            std::uint8_t{0});
  return {whole, textOf(AF_INET6, &address) + "/64"};
}

}  // namespace tlpacscfg::service
