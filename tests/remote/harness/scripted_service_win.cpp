#include "remote/harness/scripted_service.h"

#include <winsock2.h>

#include <algorithm>
#include <array>
#include <stdexcept>

#include "remote/harness/wine_service.h"

namespace tlpacscfg::test {
namespace {

bool sendAll(SOCKET connection, const std::string& text) {
  return ::send(connection, text.data(), static_cast<int>(text.size()), 0) ==
         static_cast<int>(text.size());
}

/// The end of the request's body; npos while the headers are incomplete.
std::size_t endOfRequest(const std::string& request) {
  const std::string name = "Content-Length: ";
  const std::size_t headerEnd = request.find("\r\n\r\n");
  const std::size_t length = request.find(name);
  if (headerEnd == request.npos || length == request.npos) return request.npos;
  return headerEnd + 4 + std::stoul(request.substr(length + name.size()));
}

}  // namespace

ScriptedService::ScriptedService(std::vector<Reply> replies) : replies_(std::move(replies)) {
  WSADATA data;
  WSAStartup(MAKEWORD(2, 2), &data);
  listener_ = socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  int length = sizeof(address);
  if (bind(listener_, reinterpret_cast<sockaddr*>(&address), length) != 0 ||
      getsockname(listener_, reinterpret_cast<sockaddr*>(&address), &length) != 0 ||
      listen(listener_, 5) != 0) {
    throw std::runtime_error("There is no port for a service.");
  }
  port_ = ntohs(address.sin_port);
  server_ = std::thread([this] { serve(); });
}

ScriptedService::~ScriptedService() {
  over_ = true;
  server_.join();
  closesocket(listener_);
  WSACleanup();
}

/// False when the service ends first.
bool ScriptedService::awaitInput(std::uintptr_t socket) const {
  while (!over_) {
    fd_set readable;
    FD_ZERO(&readable);
    FD_SET(socket, &readable);
    timeval pause{0, 20'000};
    if (select(0, &readable, nullptr, nullptr, &pause) > 0) return true;
  }
  return false;
}

void ScriptedService::serve() {
  for (std::size_t number = 0; awaitInput(listener_); ++number) {
    const SOCKET connection = accept(listener_, nullptr, nullptr);
    if (connection == INVALID_SOCKET) continue;
    ++connections_;
    treat(connection, replies_[std::min(number, replies_.size() - 1)]);
    closesocket(connection);
  }
}

void ScriptedService::treat(std::uintptr_t connection, const Reply& reply) const {
  const std::string header = "HTTP/1.1 200 OK\r\nContent-Type: application/json\r\n";
  const auto drip = [&](const std::string& beginning) {
    if (!sendAll(connection, beginning)) return;
    while (!over_ && sendAll(connection, "x")) pauseBriefly();
  };
  if (reply.treatment == Treatment::HalfHandshake) sendAll(connection, "\x16\x03\x03\x01");
  std::string request;
  std::array<char, 4096> piece{};
  while (awaitInput(connection)) {
    const int count = recv(connection, piece.data(), static_cast<int>(piece.size()), 0);
    if (count <= 0) return;
    request.append(piece.data(), static_cast<std::size_t>(count));
    if (request.size() < endOfRequest(request)) continue;
    switch (reply.treatment) {
      case Treatment::AnswerWhenTold:
        while (!released_ && !over_) pauseBriefly();
        [[fallthrough]];
      case Treatment::Answer:
        sendAll(connection, header + "Connection: close\r\nContent-Length: " +
                                std::to_string(reply.json.size()) + "\r\n\r\n" + reply.json);
        return;
      case Treatment::DripHeaders:
        return drip(header + "X: ");
      case Treatment::DripBody:
        return drip(header + "Content-Length: 1000000\r\n\r\n");
      case Treatment::Silence:
      case Treatment::HalfHandshake:
        break;
    }
  }
}

}  // namespace tlpacscfg::test
