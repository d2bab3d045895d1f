#include "service/metrics.h"

#include <gtest/gtest.h>

#include <thread>

#include "host/version.h"
#include "remote/service/service_fixture.h"

namespace tlpacscfg::test {
namespace {

using nlohmann::json;
using service::Metrics;
using std::chrono::milliseconds;

TEST(MetricsTest, RequestsAndRefusalsAreCounted) {
  Metrics metrics;
  std::thread other([&] {
    for (int i = 0; i < 1000; ++i) metrics.answered("/v1/query", 200, milliseconds(5));
  });
  for (int i = 0; i < 1000; ++i) metrics.answered("/v1/query", 200, milliseconds(5));
  other.join();
  metrics.answered("/v1/query", 422, milliseconds(5));
  metrics.refused("too slow");
  metrics.setLoad({.workers = 8, .working = 3, .places = 512, .waiting = 40});
  const json text = json::parse(metrics.text());
  EXPECT_EQ(text["requests"], json::parse(R"({"/v1/query": {"200": 2000, "422": 1}})"));
  EXPECT_EQ(text["refusals"], json::parse(R"({"too slow": 1})"));
  EXPECT_EQ(text["workers"], json::parse(R"({"all": 8, "busy": 3})"));
  EXPECT_EQ(text["places"], json::parse(R"({"all": 512, "taken": 40})"));
}

TEST(MetricsTest, TheTimesAreThoseOfTheLastRequests) {
  Metrics metrics;
  const auto times = [&] { return json::parse(metrics.text())["milliseconds"]["/v1/query"]; };
  metrics.answered("/v1/query", 200, milliseconds(1));
  EXPECT_EQ(times(), json::parse(R"({"p50": 1, "p95": 1, "p99": 1, "max": 1})"));
  for (int i = 2; i <= 100; ++i) metrics.answered("/v1/query", 200, milliseconds(i));
  EXPECT_EQ(times(), json::parse(R"({"p50": 50, "p95": 95, "p99": 99, "max": 100})"));
  for (int i = 0; i < 256; ++i) metrics.answered("/v1/query", 200, milliseconds(7));
  EXPECT_EQ(times(), json::parse(R"({"p50": 7, "p95": 7, "p99": 7, "max": 7})"));
}

using StatusTest = ServiceTest;

TEST_F(StatusTest, HealthSaysUpWithoutATokenAndNothingMore) {
  ASSERT_TRUE(service.start()) << service.log();
  const RawClient client(service.port());
  client.send(httpRequest("GET /v1/health HTTP/1.1", ""));
  const std::string answer = client.readToEnd();
  EXPECT_TRUE(answer.starts_with("HTTP/1.1 200 ")) << answer;
  EXPECT_TRUE(answer.ends_with("\r\n\r\n{\"status\":\"up\"}")) << answer;
  EXPECT_EQ(statusOf(httpRequest("HEAD /v1/health HTTP/1.1", "")), 405);
  EXPECT_EQ(statusOf(httpRequest("GET /v1/status HTTP/1.1", "")), 405);
}

TEST_F(StatusTest, StatusNeedsAToken) {
  ASSERT_TRUE(service.start()) << service.log();
  EXPECT_EQ(post("/v1/status", R"({"token":"a-token-that-is-quite-another"})").status, 401);
}

TEST_F(StatusTest, StatusTellsWhatTheServiceHasDone) {
  ASSERT_TRUE(service.start({"--header-seconds", "1"})) << service.log();
  const RawClient silent(service.port());
  EXPECT_EQ(silent.readToEnd(), "");
  EXPECT_EQ(query("select 1").status, 200);
  EXPECT_EQ(query("select wrong").status, 422);
  EXPECT_EQ(post("/v1/query", R"({"token":"wrong"})").status, 401);
  // A request is counted, and its worker is free, soon after its response.
  json status;
  ASSERT_TRUE(eventually([&] {
    status = ask("status", json::object()).body;
    return status["requests"]["/v1/query"].size() == 3 && status["workers"]["busy"] == 1;
  })) << status;
  EXPECT_EQ(status["requests"]["/v1/query"], json::parse(R"({"200": 1, "401": 1, "422": 1})"));
  EXPECT_EQ(status["refusals"], json::parse(R"({"silent": 1, "wrong token": 1})"));
  EXPECT_EQ(status["workers"], json::parse(R"({"all": 8, "busy": 1})"));
  EXPECT_EQ(status["places"], json::parse(R"({"all": 512, "taken": 0})"));
  EXPECT_GE(status["uptimeSeconds"], 1);
  EXPECT_GE(status["milliseconds"]["/v1/query"]["max"], status["milliseconds"]["/v1/query"]["p50"]);
  EXPECT_EQ(status["version"], std::to_string(kVersionMajor) + "." + std::to_string(kVersionMinor) +
                                   "." + std::to_string(kVersionRevision));
}

}  // namespace
}  // namespace tlpacscfg::test
