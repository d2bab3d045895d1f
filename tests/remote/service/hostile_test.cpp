#include <httplib.h>

#include <memory>

#include "harness/scratch.h"
#include "remote/service/service_fixture.h"

namespace tlpacscfg::test {
namespace {

using nlohmann::json;

class HostileRequestTest : public ServiceTest {
 protected:
  void startService(const std::vector<std::string>& arguments = {}) {
    ASSERT_TRUE(service.start(arguments)) << service.log();
  }
};

TEST_F(HostileRequestTest, AWrongTokenIsRefused) {
  startService();
  for (const std::string token : {"", "x", "a-token-of-more-than-sixteen-characterS",
                                  "a-token-of-more-than-sixteen-characters "}) {
    const json body = {{"token", token},
                       {"database", "Talora"},
                       {"sql", "INSERT INTO System_pc_names VALUES('A', '', 1)"}};
    const ServiceAnswer answer = post("/v1/execute", body.dump());
    EXPECT_EQ(answer.status, 401) << token;
    EXPECT_EQ(answer.body["error"], "The token is wrong.");
  }
  EXPECT_EQ(site.value(L"select count(*) from System_pc_names"), L"0");
}

/// An object of so many members, of which `beginning` has the first.
std::string membersAfter(const std::string& beginning, int count) {
  std::string text = beginning + R"(,"application":"x")";
  for (int i = 2; i < count; ++i) text += ",\"" + std::to_string(i) + R"(":"x")";
  return text + "}";
}

TEST_F(HostileRequestTest, BodiesThatAreNoFlatObjectOfTextsAreRefused) {
  startService();
  const std::string token = std::string(R"({"token":")") + kToken + "\"";
  const std::string bodies[] = {
      "",
      "x",
      "null",
      "[]",
      "\"text\"",
      "{",
      "{}",
      "{\"token\":",
      R"({"token":12})",
      R"({"token":null})",
      R"({"token":["x"]})",
      token + "}",
      token + R"(,"token":"again","application":"x"})",
      token + R"(,"application":{}})",
      token + R"(,"application":"a\u0000b"})",
      token + R"(,"application":"\ud800"})",
      token + ",\"application\":\"\xff\xfe\"}",
      token + R"(,"application":true})",
      token + R"(,"application":"x","application":true})",
      membersAfter(token, 17),
      token + R"(,"application":"x"} and more)",
      std::string(100'000, '['),
      std::string(100'000, '{'),
  };
  for (const std::string& body : bodies) {
    EXPECT_EQ(post("/v1/connect", body).status, 400) << body.substr(0, 80);
  }
  expectStillServing();
}

TEST_F(HostileRequestTest, RequestsThatAreNoneOfTheOperationsAreRefused) {
  startService();
  const std::string media = "Content-Type: application/json\r\n";
  const std::string empty = media + "Content-Length: 2\r\n";
  const struct {
    int status;
    std::string request;
  } cases[] = {
      {405, httpRequest("GET /v1/query HTTP/1.1", "")},
      {405, httpRequest("DELETE /v1/query HTTP/1.1", empty, "{}")},
      {404, httpRequest("POST / HTTP/1.1", empty, "{}")},
      {404, httpRequest("POST /v1/../v1/query HTTP/1.1", empty, "{}")},
      {404, httpRequest("POST /v1/drop HTTP/1.1", empty, "{}")},
      {415, httpRequest("POST /v1/query HTTP/1.1", "Content-Length: 2\r\n", "{}")},
      {415,
       httpRequest("POST /v1/query HTTP/1.1",
                   "Content-Type: multipart/form-data; boundary=x\r\nContent-Length: 2\r\n", "{}")},
      {415, httpRequest("POST /v1/query HTTP/1.1", empty + "Content-Encoding: gzip\r\n", "{}")},
      {411, httpRequest("POST /v1/query HTTP/1.1", media)},
      {411, httpRequest("POST /v1/query HTTP/1.1", media + "Transfer-Encoding: chunked\r\n",
                        "2\r\n{}\r\n0\r\n\r\n")},
      {411, httpRequest("POST /v1/query HTTP/1.1", empty + "Content-Length: 3\r\n", "{}")},
      {400, httpRequest("POST /v1/query HTTP/1.1", media + "Content-Length: -2\r\n", "{}")},
      {400, httpRequest("POST /v1/query HTTP/1.1", media + "Content-Length: 0x2\r\n", "{}")},
      {413, httpRequest("POST /v1/query HTTP/1.1", media + "Content-Length: 1048577\r\n")},
      {413, httpRequest("POST /v1/query HTTP/1.1",
                        media + "Content-Length: 99999999999999999999999\r\n")},
      {400, httpRequest("POST /v1/query HTTP/1.1", empty + "Range: bytes=0-1\r\n", "{}")},
      {400, "\r\n\r\n"},
      {400, "POST\r\n\r\n"},
      {400, "POST /v1/query HTTP/9.9\r\n\r\n"},
  };
  for (const auto& [status, request] : cases) EXPECT_EQ(statusOf(request), status) << request;
  expectStillServing();
}

TEST_F(HostileRequestTest, WhatIsJustWithinTheLimitsIsServed) {
  startService();
  const std::string token = std::string(R"({"token":")") + kToken + "\"";
  const std::string start = token + R"(,"application":")";
  constexpr std::size_t kLargest = 1048576;
  EXPECT_EQ(
      post("/v1/connect", start + std::string(kLargest - start.size() - 2, 'x') + "\"}").status,
      200);
  EXPECT_EQ(post("/v1/connect", membersAfter(token, 16)).status, 200);
  const std::string body = start + "x\"}";
  const std::string length = "Content-Length: " + std::to_string(body.size()) + "\r\n";
  for (const char* type : {"application/json; charset=utf-8", "Application/JSON"}) {
    const std::string headers = length + "Content-Type: " + type + "\r\n";
    EXPECT_EQ(statusOf(httpRequest("POST /v1/connect HTTP/1.1", headers, body)), 200) << type;
  }
}

TEST_F(HostileRequestTest, AHeaderWithoutAnEndIsCutOff) {
  startService();
  const RawClient client(service.port());
  client.send("POST /v1/query HTTP/1.1\r\nX: " + std::string(100'000, 'x'));
  EXPECT_EQ(client.readToEnd(), "");
  EXPECT_TRUE(eventually([this] { return service.logHolds("header too large"); }));
  expectStillServing();
}

TEST_F(HostileRequestTest, AHeaderOfManyLinesIsCutOff) {
  startService();
  std::string request = "POST /v1/query HTTP/1.1\r\n";
  for (int i = 0; i < 10'000; ++i) request += "X-" + std::to_string(i) + ": x\r\n";
  const RawClient client(service.port());
  client.send(request);
  EXPECT_EQ(client.readToEnd(), "");
  expectStillServing();
}

TEST_F(HostileRequestTest, ARangeThatIsHardToReadIsRefused) {
  startService();
  EXPECT_GE(statusOf(httpRequest("POST /v1/query HTTP/1.1",
                                 "Range: bytes=" + std::string(3'000, '1') + "-\r\n")),
            400);
  std::string ranges = "Range: bytes=0-";
  for (int i = 0; i < 900; ++i) ranges += ",0-";
  EXPECT_GE(statusOf(httpRequest("POST /v1/query HTTP/1.1", ranges + "\r\n")), 400);
  expectStillServing();
}

TEST_F(HostileRequestTest, ARequestThatDoesNotArriveIsCutOff) {
  startService({"--request-seconds", "1"});
  const std::string whole = properRequest("/v1/connect", "{}");
  for (const std::size_t part : {std::size_t{0}, std::size_t{10}, whole.size() - 1}) {
    const RawClient client(service.port());
    client.send(whole.substr(0, part));
    client.readToEnd();
  }
  EXPECT_TRUE(eventually([this] { return service.logHolds("too slow"); }));
  expectStillServing();
}

TEST_F(HostileRequestTest, ARequestThatArrivesInDripsIsCutOff) {
  startService({"--request-seconds", "1"});
  const RawClient client(service.port());
  client.send("POST /v1/connect HTTP/1.1\r\nX: ");
  EXPECT_TRUE(eventually([&] {
    client.send("x");
    return service.logHolds("too slow");
  }));
  expectStillServing();
}

TEST_F(HostileRequestTest, AResponseThatIsNotTakenIsCutOff) {
  startService({"--response-seconds", "1"});
  for (int i = 0; i < 100; ++i) addWorkstation(L"PC" + std::to_wstring(i));
  site.run(L"UPDATE System_pc_names SET access_string = '" + std::wstring(1'000, L'x') + L"'");
  const json body = {
      {"token", kToken},
      {"database", "Talora"},
      {"sql", "select a.access_string, b.access_string from System_pc_names a, System_pc_names b"}};
  const RawClient client(service.port());
  client.send(properRequest("/v1/query", body.dump()));
  EXPECT_TRUE(eventually([this] { return service.logHolds("too slow"); }));
  expectStillServing();
}

TEST_F(HostileRequestTest, AResultBeyondTheLimitIsRefused) {
  startService({"--response-bytes", "1024"});
  addWorkstation(L"PC");
  site.run(L"UPDATE System_pc_names SET access_string = '" + std::wstring(2'000, L'x') + L"'");
  const ServiceAnswer answer = query("select access_string from System_pc_names");
  EXPECT_EQ(answer.status, 422);
  EXPECT_EQ(answer.body["error"], "The result is larger than the service allows.");
  expectStillServing();
}

TEST_F(HostileRequestTest, ClientsThatVanishDoNoHarm) {
  startService();
  const std::string request = properRequest("/v1/connect", "{}");
  for (std::size_t part = 0; part < request.size(); part += 7) {
    RawClient client(service.port());
    client.send(request.substr(0, part));
    client.reset();
  }
  expectStillServing();
}

TEST_F(HostileRequestTest, SilentConnectionsBeyondThePlacesAreTurnedAway) {
  startService({"--workers", "2", "--waiting", "2"});
  std::vector<std::unique_ptr<RawClient>> idle;
  for (int i = 0; i < 12; ++i) idle.push_back(std::make_unique<RawClient>(service.port()));
  EXPECT_TRUE(eventually([this] {
    return service.logHolds(
        "event=dropped address=127.0.0.1 reason=\"too many connections of one address\" "
        "connections=");
  }));
  expectStillServing();
}

class TlsTest : public ServiceTest {
 protected:
  TlsTest() { EXPECT_TRUE(service.startWithTls({"--request-seconds", "1"})) << service.log(); }

  void expectStillServingTls() const {
    httplib::SSLClient client("localhost", service.port());
    client.set_ca_cert_path(service.certificateFile());
    client.enable_server_certificate_verification(true);
    const json body = {{"token", kToken}, {"application", "TLPACSCFG.DLL"}};
    const httplib::Result result = client.Post("/v1/connect", body.dump(), "application/json");
    ASSERT_TRUE(result) << httplib::to_string(result.error());
    EXPECT_EQ(result->status, 200);
  }
};

TEST_F(TlsTest, AClientThatTrustsTheCertificateIsServed) { expectStillServingTls(); }

TEST_F(TlsTest, PlainHttpGetsNoAnswer) {
  const RawClient client(service.port());
  client.send(properRequest("/v1/connect", "{}"));
  EXPECT_EQ(client.readToEnd().find("HTTP/"), std::string::npos);
  EXPECT_TRUE(eventually([this] { return service.logHolds("TLS failed"); }));
  expectStillServingTls();
}

TEST_F(TlsTest, AHandshakeThatStopsIsCutOff) {
  const RawClient client(service.port());
  client.send("\x16\x03\x01\x02");
  client.readToEnd();
  EXPECT_TRUE(eventually([this] { return service.logHolds("too slow"); }));
  expectStillServingTls();
}

TEST_F(TlsTest, OldVersionsOfTlsAreRefused) {
  httplib::SSLClient client("localhost", service.port());
  client.set_ca_cert_path(service.certificateFile());
  SSL_CTX_set_security_level(client.ssl_context(), 0);
  SSL_CTX_set_max_proto_version(client.ssl_context(), TLS1_1_VERSION);
  EXPECT_FALSE(client.Post("/v1/connect", "{}", "application/json"));
  expectStillServingTls();
}

}  // namespace
}  // namespace tlpacscfg::test
