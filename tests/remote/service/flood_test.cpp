#include <httplib.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <memory>
#include <thread>

#include "remote/service/service_fixture.h"

namespace tlpacscfg::test {
namespace {

using nlohmann::json;

/// Connections of one kind that are opened again whenever they end. Each sends its bytes one at a
/// time and then stays silent.
struct Attack {
  std::string bytes;
  std::size_t connections;
};

/// What one address does to hold everything that it can.
class Flood {
 public:
  Flood(int port, const std::vector<Attack>& attacks) {
    for (const Attack& attack : attacks) {
      threads_.emplace_back([this, port, attack] { run(port, attack); });
    }
  }
  ~Flood() {
    over_ = true;
    for (std::thread& thread : threads_) thread.join();
  }
  Flood(const Flood&) = delete;
  Flood& operator=(const Flood&) = delete;

  int opened() const { return opened_; }

 private:
  struct Held {
    std::unique_ptr<RawClient> client;
    std::size_t sent = 0;
  };

  void run(int port, const Attack& attack) {
    std::vector<Held> held(attack.connections);
    while (!over_) {
      for (Held& one : held) {
        if (!one.client) one = open(port);
        if (one.client && !continues(one, attack.bytes)) one.client.reset();
      }
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
  }

  Held open(int port) {
    try {
      Held made{std::make_unique<RawClient>(port)};
      ++opened_;
      return made;
    } catch (const std::runtime_error&) {
      return {};
    }
  }

  static bool continues(Held& one, const std::string& bytes) {
    if (one.client->hasEnded()) return false;
    return one.sent == bytes.size() || one.client->send(bytes.substr(one.sent++, 1));
  }

  std::atomic<bool> over_ = false;
  std::atomic<int> opened_ = 0;
  std::vector<std::thread> threads_;
};

/// The times are so long that nothing the flood holds comes free by itself.
class FloodTest : public ServiceTest {
 protected:
  static std::vector<std::string> patient() {
    return {"--header-seconds", "3600", "--request-seconds", "3600", "--waiting", "64"};
  }

  /// Proper requests from another address, each of which must be answered.
  template <class Client>
  void expectAnswers(Client& client) {
    constexpr int kRequests = 20;
    const json body = {{"token", kToken}, {"database", "Talora"}, {"sql", "select 1"}};
    client.set_interface("127.0.0.2");
    client.set_connection_timeout(30);
    client.set_read_timeout(30);
    std::vector<std::chrono::milliseconds> times;
    for (int i = 0; i < kRequests; ++i) {
      const auto start = std::chrono::steady_clock::now();
      const httplib::Result result = client.Post("/v1/query", body.dump(), "application/json");
      ASSERT_TRUE(result) << httplib::to_string(result.error());
      ASSERT_EQ(result->status, 200) << result->body;
      times.push_back(std::chrono::duration_cast<std::chrono::milliseconds>(
          std::chrono::steady_clock::now() - start));
    }
    std::sort(times.begin(), times.end());
    RecordProperty("median_ms", static_cast<int>(times[times.size() / 2].count()));
    RecordProperty("worst_ms", static_cast<int>(times.back().count()));
    std::cout << "Under the flood: median " << times[times.size() / 2].count() << " ms, worst "
              << times.back().count() << " ms" << std::endl;
  }

  /// The flood has all that it gets, and tries for more.
  void awaitFlood(const Flood& flood) const {
    EXPECT_TRUE(eventually([&] {
      return flood.opened() > 200 && service.logHolds("too many connections of one address");
    })) << service.log();
  }
};

const std::string kHeaders =
    "POST /v1/query HTTP/1.1\r\nContent-Type: application/json\r\nContent-Length: 100000\r\n";

TEST_F(FloodTest, OneAddressDoesNotStopTheOthers) {
  ASSERT_TRUE(service.start(patient())) << service.log();
  const Flood flood(service.port(), {{"", 60},
                                     {kHeaders, 20},
                                     {kHeaders + "\r\n{\"token\":\"", 20},
                                     {kHeaders + "X: " + std::string(3000, 'x'), 20}});
  awaitFlood(flood);
  httplib::Client client("127.0.0.1", service.port());
  expectAnswers(client);
}

TEST_F(FloodTest, OneAddressDoesNotStopTheOthersOverTls) {
  ASSERT_TRUE(service.startWithTls(patient())) << service.log();
  const std::string hello("\x16\x03\x01\x02\x00\x01\x00\x01\xfc\x03\x03", 11);
  const Flood flood(service.port(),
                    {{"", 60}, {hello, 20}, {hello + std::string(400, 'x'), 20}, {"x", 20}});
  awaitFlood(flood);
  httplib::SSLClient client("127.0.0.1", service.port());
  client.set_ca_cert_path(service.certificateFile());
  client.enable_server_certificate_verification(true);
  expectAnswers(client);
}

TEST_F(FloodTest, WhatHoldsTheOnlyWorkerIsCutOff) {
  ASSERT_TRUE(service.start({"--header-seconds", "1", "--request-seconds", "1", "--workers", "1"}))
      << service.log();
  const Flood flood(service.port(), {{kHeaders, 20}, {kHeaders + "\r\n", 20}});
  EXPECT_TRUE(eventually([&] { return service.logHolds("failure=\"too slow\""); }));
  httplib::Client client("127.0.0.1", service.port());
  client.set_interface("127.0.0.2");
  client.set_read_timeout(30);
  const json body = {{"token", kToken}, {"application", "x"}};
  const httplib::Result result = client.Post("/v1/connect", body.dump(), "application/json");
  ASSERT_TRUE(result) << httplib::to_string(result.error());
  EXPECT_EQ(result->status, 200);
}

}  // namespace
}  // namespace tlpacscfg::test
