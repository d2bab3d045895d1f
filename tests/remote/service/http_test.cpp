#include <thread>

#include "remote/service/service_fixture.h"

namespace tlpacscfg::test {
namespace {

using nlohmann::json;

/// What the library that parses requests would do by itself.
class HttpTest : public ServiceTest {
 protected:
  static std::string body(const std::string& sql) {
    return json{{"token", kToken}, {"database", "Talora"}, {"sql", sql}}.dump();
  }

  static std::string headers(const std::string& more, const std::string& body) {
    return "Content-Type: application/json\r\nContent-Length: " + std::to_string(body.size()) +
           "\r\n" + more;
  }
};

TEST_F(HttpTest, AnswersAreNotCompressed) {
  ASSERT_TRUE(service.start()) << service.log();
  const std::string query = body("select hex(zeroblob(10000))");
  for (const char* encodings : {"gzip", "br", "gzip, br, deflate", "*"}) {
    const RawClient client(service.port());
    client.send(httpRequest("POST /v1/query HTTP/1.1",
                            headers(std::string("Accept-Encoding: ") + encodings + "\r\n", query),
                            query));
    const std::string answer = client.readToEnd();
    EXPECT_EQ(answer.find("Content-Encoding"), answer.npos) << encodings;
    EXPECT_NE(answer.find(std::string(20'000, '0')), answer.npos) << encodings;
  }
}

TEST_F(HttpTest, TheTimeForTheResponseDoesNotBeginWithAContinue) {
  ASSERT_TRUE(service.start({"--response-seconds", "1", "--request-seconds", "60"}))
      << service.log();
  const std::string query = body("select 1");
  const RawClient client(service.port());
  client.send(httpRequest("POST /v1/query HTTP/1.1", headers("Expect: 100-continue\r\n", query)));
  EXPECT_EQ(client.readUntil("\r\n\r\n"), "HTTP/1.1 100 Continue\r\n\r\n");
  // Longer than a response may take.
  std::this_thread::sleep_for(std::chrono::milliseconds(1200));
  client.send(query);
  EXPECT_TRUE(client.readToEnd().starts_with("HTTP/1.1 200 "));
}

TEST_F(HttpTest, ARequestThatIsRefusedIsNotAskedToContinue) {
  ASSERT_TRUE(service.start()) << service.log();
  const RawClient client(service.port());
  client.send(httpRequest("POST /v1/query HTTP/1.1",
                          "Content-Type: application/json\r\nContent-Length: 99999999\r\n"
                          "Expect: 100-continue\r\n"));
  EXPECT_TRUE(client.readToEnd().starts_with("HTTP/1.1 413 "));
}

}  // namespace
}  // namespace tlpacscfg::test
