#include "service/listening_socket.h"

#include <netdb.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <memory>

namespace tlpacscfg::service {
namespace {

using Addresses = std::unique_ptr<addrinfo, decltype([](addrinfo* all) { freeaddrinfo(all); })>;

Addresses addressesOf(const std::string& host, int port) {
  addrinfo wanted{};
  wanted.ai_socktype = SOCK_STREAM;
  wanted.ai_flags = AI_PASSIVE | AI_NUMERICSERV;
  addrinfo* found = nullptr;
  const int error = getaddrinfo(host.c_str(), std::to_string(port).c_str(), &wanted, &found);
  return Addresses(error == 0 ? found : nullptr);
}

void set(const Descriptor& socket, int level, int option, int value) {
  setsockopt(socket.get(), level, option, &value, sizeof(value));
}

}  // namespace

std::optional<Descriptor> listenOn(const std::string& host, int port) {
  const Addresses addresses = addressesOf(host, port);
  for (const addrinfo* one = addresses.get(); one != nullptr; one = one->ai_next) {
    Descriptor made(socket(one->ai_family, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
    // A restarted service can bind its port at once. Without SO_REUSEPORT no other process shares
    // it.
    set(made, SOL_SOCKET, SO_REUSEADDR, 1);
    if (one->ai_family == AF_INET6) set(made, IPPROTO_IPV6, IPV6_V6ONLY, 0);
    if (bind(made.get(), one->ai_addr, one->ai_addrlen) == 0 &&
        listen(made.get(), SOMAXCONN) == 0) {
      return made;
    }
  }
  return std::nullopt;
}

int portOf(const Descriptor& socket) {
  sockaddr_storage address{};
  socklen_t length = sizeof(address);
  getsockname(socket.get(), reinterpret_cast<sockaddr*>(&address), &length);
  const in_port_t port = address.ss_family == AF_INET6
                             ? reinterpret_cast<const sockaddr_in6&>(address).sin6_port
                             : reinterpret_cast<const sockaddr_in&>(address).sin_port;
  return ntohs(port);
}

}  // namespace tlpacscfg::service
