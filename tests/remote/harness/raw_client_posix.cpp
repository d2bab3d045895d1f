#include "remote/harness/raw_client.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <stdexcept>

namespace tlpacscfg::test {

RawClient::RawClient(int port, const char* source)
    : socket_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
  sockaddr_in own{};
  own.sin_family = AF_INET;
  inet_pton(AF_INET, source, &own.sin_addr);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  // The port is chosen when the connection is made: more connections than one have it.
  const int later = 1;
  setsockopt(socket_, IPPROTO_IP, IP_BIND_ADDRESS_NO_PORT, &later, sizeof(later));
  if (bind(socket_, reinterpret_cast<sockaddr*>(&own), sizeof(own)) != 0 ||
      connect(socket_, reinterpret_cast<sockaddr*>(&address), sizeof(address)) != 0) {
    close(socket_);
    throw std::runtime_error("There is no connection.");
  }
}

RawClient::~RawClient() {
  if (socket_ >= 0) close(socket_);
}

bool RawClient::send(std::string_view bytes) const {
  while (!bytes.empty()) {
    const ssize_t sent = ::send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (sent <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(sent));
  }
  return true;
}

bool RawClient::hasInput() const {
  pollfd waited{socket_, POLLIN, 0};
  return poll(&waited, 1, 30'000) > 0;
}

std::string RawClient::readToEnd() const { return readUntil({}); }

std::string RawClient::readUntil(std::string_view end) const {
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
  std::string text;
  std::array<char, 4096> piece{};
  for (;;) {
    pollfd waited{socket_, POLLIN, 0};
    if (poll(&waited, 1, 1000) > 0) {
      const ssize_t count = recv(socket_, piece.data(), piece.size(), 0);
      if (count <= 0) return text;
      text.append(piece.data(), static_cast<std::size_t>(count));
      if (!end.empty() && text.find(end) != text.npos) return text;
    }
    if (std::chrono::steady_clock::now() > deadline) {
      throw std::runtime_error("The connection was not ended.");
    }
  }
}

bool RawClient::hasEnded() const {
  pollfd state{socket_, POLLRDHUP, 0};
  return poll(&state, 1, 0) != 0;
}

void RawClient::reset() {
  const linger atOnce{1, 0};
  setsockopt(socket_, SOL_SOCKET, SO_LINGER, &atOnce, sizeof(atOnce));
  close(socket_);
  socket_ = -1;
}

std::string httpRequest(const std::string& firstLine, const std::string& headers,
                        const std::string& body) {
  return firstLine + "\r\nHost: localhost\r\n" + headers + "\r\n" + body;
}

std::string properRequest(const std::string& path, const std::string& json) {
  return httpRequest(
      "POST " + path + " HTTP/1.1",
      "Content-Type: application/json\r\nContent-Length: " + std::to_string(json.size()) + "\r\n",
      json);
}

}  // namespace tlpacscfg::test
