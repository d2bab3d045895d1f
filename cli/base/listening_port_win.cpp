#include <winsock2.h>

#include "cli/base/listening_port.h"
#include "cli/base/system_reason.h"
#include "support/scope_exit.h"

namespace tlpacscfg::cli {

std::optional<std::string> whyNobodyCanListenOn(int port) {
  const auto reason = [] {
    const int error = WSAGetLastError();
    if (error == WSAEADDRINUSE) return std::string("Address already in use");
    return systemReason({error, std::system_category()});
  };
  WSADATA started;
  if (const int error = WSAStartup(MAKEWORD(2, 2), &started); error != 0) {
    return systemReason({error, std::system_category()});
  }
  const ScopeExit ended([] { WSACleanup(); });
  const SOCKET socket = ::socket(AF_INET, SOCK_STREAM, 0);
  if (socket == INVALID_SOCKET) return reason();
  const ScopeExit closed([&] { closesocket(socket); });
  // Otherwise it could share the port with another listener.
  const BOOL on = TRUE;
  setsockopt(socket, SOL_SOCKET, SO_EXCLUSIVEADDRUSE, reinterpret_cast<const char*>(&on),
             sizeof(on));
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<u_short>(port));
  address.sin_addr.s_addr = htonl(INADDR_ANY);
  if (bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0) return {};
  return reason();
}

}  // namespace tlpacscfg::cli
