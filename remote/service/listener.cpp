#include "service/listener.h"

#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <charconv>
#include <chrono>
#include <string_view>
#include <utility>

#include "service/channel.h"
#include "service/journal.h"
#include "service/refusal.h"
#include "service/work_queue.h"
#include "support/scope_exit.h"
#include "support/text.h"

namespace tlpacscfg::service {
namespace {

// Overrides a private function of the library, which another version may change.
static_assert(std::string_view(CPPHTTPLIB_VERSION).starts_with("0.11."),
              "Check Server::process_and_close_socket of this version of cpp-httplib.");

constexpr const char* kJson = "application/json";
constexpr std::size_t kHeaderBytes = 4096;

/// Throws Refusal for a request whose body need not be read.
void checkHeaders(const httplib::Request& request, std::size_t maxBytes) {
  if (request.method != "POST") throw Refusal(http_status::kNotPost, "Only POST is answered.");
  if (findOperation(request.path) == nullptr) {
    throw Refusal(http_status::kUnknownOperation, "There is no such operation.");
  }
  if (request.has_header("Range")) {
    throw Refusal(http_status::kMalformed, "A response is sent as a whole.");
  }
  const std::string type = request.get_header_value("Content-Type");
  const std::string media = type.substr(0, type.find(';'));
  if (!equalIgnoringCase(fromUtf8(media), fromUtf8(kJson)) ||
      request.has_header("Content-Encoding")) {
    throw Refusal(http_status::kNotJson, "A request is plain JSON.");
  }
  if (request.has_header("Transfer-Encoding") ||
      request.get_header_value_count("Content-Length") != 1) {
    throw Refusal(http_status::kLengthRequired, "A request states its length.");
  }
  const std::string length = request.get_header_value("Content-Length");
  const char* const end = length.data() + length.size();
  std::size_t bytes = 0;
  const auto [stop, error] = std::from_chars(length.data(), end, bytes);
  if (error == std::errc::invalid_argument || stop != end) {
    throw Refusal(http_status::kMalformed, "The length is not a number.");
  }
  if (error == std::errc::result_out_of_range || bytes > maxBytes) {
    throw Refusal(http_status::kTooLarge, "The request is larger than the service allows.");
  }
}

void refuse(httplib::Response& response, const Refusal& refusal) {
  response.status = refusal.status();
  response.set_content(errorText(refusal.what()), kJson);
}

}  // namespace

/// One connection, and what is written about it into the journal.
struct Listener::Exchange {
  std::shared_ptr<const Credentials> credentials;
  const char* operation = "-";
  int status = 0;
  /// The name of the token that it showed; "-" before it has shown a right one.
  std::string token = "-";

  static thread_local Exchange* current;
};

thread_local Listener::Exchange* Listener::Exchange::current = nullptr;

Listener::Listener(const ServiceOptions& options, int stopSignal)
    : options_(options),
      stopSignal_(stopSignal),
      credentials_(std::make_shared<const Credentials>(options)) {
  new_task_queue = [this] { return new WorkQueue(options_.workers, options_.waiting); };
  set_payload_max_length(options_.requestBytes);
  set_tcp_nodelay(true);
  set_socket_options([](socket_t socket) {
    // A restarted service can bind its port at once. Without SO_REUSEPORT no other process shares
    // it.
    const int yes = 1;
    setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof(yes));
  });
  set_pre_routing_handler([this](const httplib::Request& request, httplib::Response& response) {
    return refuseEarly(request, response);
  });
  Post("/v1/.*", [this](const httplib::Request& request, httplib::Response& response) {
    answer(request, response);
  });
  set_logger([](const httplib::Request&, const httplib::Response& response) {
    Exchange::current->status = response.status;
  });
}

Listener::HandlerResponse Listener::refuseEarly(const httplib::Request& request,
                                                httplib::Response& response) const {
  try {
    checkHeaders(request, options_.requestBytes);
    return HandlerResponse::Unhandled;
  } catch (...) {
    refuse(response, refusalOfCurrentException());
    return HandlerResponse::Handled;
  }
}

std::string Listener::answerOf(const httplib::Request& httpRequest) const {
  const Operation& operation = *findOperation(httpRequest.path);
  Exchange::current->operation = operation.path;
  const Request request(httpRequest.body);
  const Token* const token = Exchange::current->credentials->tokens.find(request.utf8("token"));
  if (token == nullptr) throw Refusal(http_status::kWrongToken, "The token is wrong.");
  Exchange::current->token = token->name;
  if (operation.writes && token->rights == Rights::Read) throw onlyReads();
  return operation.answer({options_, stopSignal_, token->rights}, request);
}

void Listener::answer(const httplib::Request& request, httplib::Response& response) const {
  try {
    response.set_content(answerOf(request), kJson);
    response.status = http_status::kOk;
  } catch (...) {
    refuse(response, refusalOfCurrentException());
  }
}

bool Listener::process_and_close_socket(socket_t socket) {
  try {
    return serveConnection(Descriptor(socket));
  } catch (const std::exception& error) {
    writeJournal("failed", {{"error", error.what()}});
  }
  return false;
}

bool Listener::serveConnection(Descriptor socket) {
  const auto start = std::chrono::steady_clock::now();
  Exchange exchange{.credentials = credentials_};
  SSL_CTX* const tls = exchange.credentials->tls.get();
  Channel channel(std::move(socket), tls,
                  {.headerBytes = kHeaderBytes,
                   .totalBytes = kHeaderBytes + options_.requestBytes,
                   .readTime = options_.requestSeconds,
                   .writeTime = options_.responseSeconds},
                  stopSignal_);
  std::string address = "-";
  int port = 0;
  channel.get_remote_ip_and_port(address, port);
  if (WorkQueue::rejected()) {
    writeJournal("turned-away", {{"address", address}});
    return false;
  }
  Exchange::current = &exchange;
  const ScopeExit forget([] { Exchange::current = nullptr; });
  bool done = false;
  if (tls == nullptr || channel.handshake()) {
    bool closed = false;
    done = process_request(channel, true, closed, nullptr);
    channel.finish();
  }

  const auto time = std::chrono::duration_cast<std::chrono::milliseconds>(
      std::chrono::steady_clock::now() - start);
  JournalFields fields = {{"address", address},
                          {"operation", exchange.operation},
                          {"status", std::to_string(exchange.status)},
                          {"token", exchange.token},
                          {"read", std::to_string(channel.bytesRead())},
                          {"wrote", std::to_string(channel.bytesWritten())},
                          {"ms", std::to_string(time.count())}};
  if (*channel.failure() != '\0') fields.emplace_back("failure", channel.failure());
  writeJournal("request", fields);
  return done;
}

bool Listener::stopping() const {
  pollfd signal{stopSignal_, POLLIN, 0};
  return poll(&signal, 1, 0) > 0;
}

bool Listener::bind(int& port) {
  if (port != 0) return bind_to_port(options_.address, port);
  port = bind_to_any_port(options_.address);
  return port > 0;
}

bool Listener::serve() {
  int port = options_.port;
  // The library's loop ends when a connection breaks before it is accepted.
  while (!stopping()) {
    if (!bind(port)) return false;
    writeJournal("listening", {{"url", std::string(options_.plainHttp ? "http" : "https") + "://" +
                                           options_.address + ":" + std::to_string(port)}});
    listen_after_bind();
  }
  return true;
}

}  // namespace tlpacscfg::service
