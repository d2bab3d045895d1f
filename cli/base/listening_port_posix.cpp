#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>

#include "cli/base/listening_port.h"
#include "cli/base/system_reason.h"
#include "support/scope_exit.h"

namespace tlpacscfg::cli {

std::optional<std::string> whyNobodyCanListenOn(int port) {
  const auto reason = [] { return systemReason({errno, std::generic_category()}); };
  const int socket = ::socket(AF_INET, SOCK_STREAM, 0);
  if (socket < 0) return reason();
  const ScopeExit closed([&] { ::close(socket); });
  // Connections that ended a moment ago do not count.
  const int on = 1;
  setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &on, sizeof(on));
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  address.sin_addr.s_addr = htonl(INADDR_ANY);
  if (bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0) return {};
  return reason();
}

}  // namespace tlpacscfg::cli
