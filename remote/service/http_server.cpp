#include "service/http_server.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <string_view>
#include <utility>

#include "service/channel.h"
#include "service/journal.h"
#include "service/operations.h"
#include "service/refusal.h"
#include "service/request.h"
#include "support/scope_exit.h"
#include "support/text.h"

namespace tlpacscfg::service {
namespace {

// A protected function, which another version may change.
constexpr std::string_view kLibraryVersion = CPPHTTPLIB_VERSION;
static_assert(kLibraryVersion.starts_with("0.11.") || kLibraryVersion.starts_with("0.18."),
              "Check Server::process_request of this version of cpp-httplib.");

constexpr const char* kJson = "application/json";
constexpr std::size_t kHeaderBytes = 4096;
constexpr const char* kHealth = "/v1/health";
constexpr int kContinue = 100;

/// Throws Refusal for a request whose body need not be read.
void checkHeaders(const httplib::Request& request, std::size_t maxBytes) {
  if (request.method == "GET" && request.path == kHealth) return;
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
struct HttpServer::Exchange {
  std::shared_ptr<const Credentials> credentials;
  const char* operation = "-";
  int status = 0;
  /// The name of the token that it showed; "-" before it has shown a right one.
  std::string token = "-";
  TokenCheck tokenCheck = TokenCheck::None;

  static thread_local Exchange* current;
};

thread_local HttpServer::Exchange* HttpServer::Exchange::current = nullptr;

HttpServer::HttpServer(const ServiceOptions& options, int stopSignal)
    : options_(options),
      stopSignal_(stopSignal),
      jobs_(options, stopSignal),
      credentials_(std::make_shared<const Credentials>(options)) {
  set_payload_max_length(options_.requestBytes);
  set_pre_routing_handler([this](const httplib::Request& request, httplib::Response& response) {
    return refuseEarly(request, response);
  });
  Get(kHealth, [](const httplib::Request&, httplib::Response& response) {
    Exchange::current->operation = kHealth;
    response.set_content(R"({"status":"up"})", kJson);
  });
  Post("/v1/.*", [this](const httplib::Request& request, httplib::Response& response) {
    answer(request, response);
  });
  set_expect_100_continue_handler(
      [this](const httplib::Request& request, httplib::Response& response) {
        const bool refused = refuseEarly(request, response) == HandlerResponse::Handled;
        return refused ? response.status : kContinue;
      });
  set_logger([](const httplib::Request&, const httplib::Response& response) {
    Exchange::current->status = response.status;
  });
}

HttpServer::HandlerResponse HttpServer::refuseEarly(const httplib::Request& request,
                                                    httplib::Response& response) const {
  try {
    checkHeaders(request, options_.requestBytes);
    return HandlerResponse::Unhandled;
  } catch (...) {
    refuse(response, refusalOfCurrentException());
    return HandlerResponse::Handled;
  }
}

std::string HttpServer::answerOf(const httplib::Request& httpRequest) const {
  const Operation& operation = *findOperation(httpRequest.path);
  Exchange::current->operation = operation.path;
  const Request request(httpRequest.body);
  const Token* const token = Exchange::current->credentials->tokens.find(request.utf8("token"));
  Exchange::current->tokenCheck = token == nullptr ? TokenCheck::Wrong : TokenCheck::Right;
  if (token == nullptr) throw Refusal(http_status::kWrongToken, "The token is wrong.");
  Exchange::current->token = token->name;
  if (operation.writes && token->rights == Rights::Read) throw changesForbidden();
  return operation.answer({options_, jobs_, metrics_, token->rights}, request);
}

void HttpServer::answer(const httplib::Request& request, httplib::Response& response) const {
  try {
    response.set_content(answerOf(request), kJson);
    response.status = http_status::kOk;
  } catch (...) {
    refuse(response, refusalOfCurrentException());
  }
}

template <class Setup>
void HttpServer::processRequest(Channel& channel, Setup setup) {
  bool closed = false;
  if constexpr (requires { this->process_request(channel, true, closed, setup); }) {
    this->process_request(channel, true, closed, setup);
  } else {
    // Newer versions also take the addresses of both sides, for handlers that ask for them.
    this->process_request(channel, {}, 0, {}, 0, true, closed, setup);
  }
}

TokenCheck HttpServer::serve(Connection& connection) {
  const auto start = Clock::now();
  // The client's time does not run while the connection waits for a worker.
  const auto used = connection.spoke.value_or(start) - connection.accepted;
  Exchange exchange{.credentials = credentials_};
  SSL_CTX* const tls = exchange.credentials->tls.get();
  Channel channel(std::move(connection.socket), tls,
                  {.headerBytes = kHeaderBytes,
                   .totalBytes = kHeaderBytes + options_.requestBytes,
                   .headerTime = options_.headerSeconds - used,
                   .readTime = options_.requestSeconds - used,
                   .writeTime = options_.responseSeconds},
                  stopSignal_);
  Exchange::current = &exchange;
  const ScopeExit forget([] { Exchange::current = nullptr; });
  std::string failure;
  try {
    if (tls == nullptr || channel.handshake()) {
      processRequest(channel, [](httplib::Request& request) {
        // The library would compress the response.
        request.headers.erase("Accept-Encoding");
      });
      channel.finish();
    }
    failure = channel.failure();
  } catch (const std::exception& error) {
    failure = error.what();
  }
  const auto time = Clock::now() - connection.accepted;
  if (exchange.status != 0) metrics_.answered(exchange.operation, exchange.status, time);
  if (exchange.tokenCheck == TokenCheck::Wrong) metrics_.refused("wrong token");
  if (!failure.empty()) metrics_.refused(failure);
  const auto milliseconds = [](Clock::duration duration) {
    return std::to_string(std::chrono::duration_cast<std::chrono::milliseconds>(duration).count());
  };
  JournalFields fields = {{"address", connection.peer.address},
                          {"operation", exchange.operation},
                          {"status", std::to_string(exchange.status)},
                          {"token", exchange.token},
                          {"read", std::to_string(channel.bytesRead())},
                          {"wrote", std::to_string(channel.bytesWritten())},
                          {"waited", milliseconds(start - connection.accepted - used)},
                          {"ms", milliseconds(time)}};
  if (!failure.empty()) fields.emplace_back("failure", failure);
  writeJournal("request", fields);
  return exchange.tokenCheck;
}

}  // namespace tlpacscfg::service
