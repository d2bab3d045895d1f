#include <csignal>

#include "harness/scratch.h"
#include "remote/service/service_fixture.h"

namespace tlpacscfg::test {
namespace {

using LifecycleTest = ServiceTest;

TEST_F(LifecycleTest, BothEndingSignalsStopItCleanly) {
  for (const int signal : {SIGTERM, SIGINT}) {
    ASSERT_TRUE(service.start()) << service.log();
    expectStillServing();
    EXPECT_EQ(service.end(signal), 0) << service.log();
    EXPECT_TRUE(service.logHolds("event=stopping\n"));
    EXPECT_TRUE(service.logHolds("event=stopped\n"));
  }
}

TEST_F(LifecycleTest, ItDoesNotWaitForSilentClientsWhenItStops) {
  ASSERT_TRUE(service.start({"--request-seconds", "3600"})) << service.log();
  const RawClient client(service.port());
  client.send("POST /v1/connect HTTP/1.1\r\n");
  // The next client is served while the first one's request is still awaited.
  expectStillServing();
  EXPECT_EQ(service.end(SIGTERM), 0) << service.log();
}

TEST_F(LifecycleTest, ItServesOnTheSamePortAgainAfterARestart) {
  ASSERT_TRUE(service.start()) << service.log();
  const std::string port = std::to_string(service.port());
  expectStillServing();
  EXPECT_EQ(service.end(SIGTERM), 0) << service.log();
  EXPECT_EQ(post("/v1/connect", "{}").status, -1);
  ASSERT_TRUE(service.start({"--port", port})) << service.log();
  expectStillServing();
  EXPECT_EQ(service.end(SIGKILL), -SIGKILL);
  ASSERT_TRUE(service.start({"--port", port})) << service.log();
  expectStillServing();
}

TEST_F(LifecycleTest, APortThatIsTakenIsReported) {
  ASSERT_TRUE(service.start()) << service.log();
  ServiceProcess second(scratchUnixPath("second"));
  second.writeConfiguration();
  EXPECT_EQ(second.runToEnd({"--config", second.configurationFile(), "--plain-http", "yes",
                             "--port", std::to_string(service.port())}),
            1);
  EXPECT_TRUE(second.logHolds("cannot listen on 127.0.0.1 port " + std::to_string(service.port())));
}

TEST_F(LifecycleTest, HelpNamesEverySetting) {
  EXPECT_EQ(service.runToEnd({"--help"}), 0);
  for (const char* name : {"address", "port", "certificate", "key", "token-file", "plain-http",
                           "workers", "request-bytes", "response-bytes", "request-seconds",
                           "statement-seconds", "memory-megabytes", "total-megabytes"}) {
    EXPECT_TRUE(service.logHolds(std::string("\n  ") + name + " ")) << name;
  }
}

TEST_F(LifecycleTest, VersionIsPrinted) {
  EXPECT_EQ(service.runToEnd({"--version"}), 0);
  EXPECT_TRUE(service.logHolds("tlcommd " TL_VERSION "\n"));
}

TEST_F(LifecycleTest, SettingsThatAreNotSafeAreRefused) {
  service.writeConfiguration();
  const std::string file = service.configurationFile();
  const struct {
    std::vector<std::string> arguments;
    const char* complaint;
  } cases[] = {
      {{"--config", file}, "certificate and key are needed"},
      {{"--config", file, "--plain-http", "yes", "--address", "0.0.0.0"},
       "plain-http is for loopback addresses only"},
      {{"--plain-http", "yes"}, "token-file is missing"},
      {{"--plain-http", "yes", "--token-file", "/nowhere"}, "the token file '/nowhere'"},
      {{"--config", file, "--plain-http", "yes", "--token-file", "/dev/null"},
       "the token file '/dev/null' is not a file"},
      {{"--config", file, "--certificate", "/nowhere", "--key", "/nowhere"},
       "the certificate '/nowhere' cannot be used"},
      {{"--config", "/nowhere"}, "the configuration file '/nowhere' cannot be read"},
      {{"--config", file, "--port", "65536"}, "port: '65536' is not a number from 0 to 65535"},
      {{"--config", file, "--response-bytes", "67108865"},
       "response-bytes: '67108865' is not a number from 1024 to 67108864"},
      {{"--config", file, "--total-megabytes", "2047"},
       "total-megabytes has no room for the service and one statement"},
      {{"--config", file, "--colour", "red"}, "there is no setting 'colour'"},
      {{"--port"}, "--port needs a value"},
      {{"nonsense"}, "'nonsense' is no option"},
  };
  for (const auto& [arguments, complaint] : cases) {
    EXPECT_EQ(service.runToEnd(arguments), 2) << complaint;
    EXPECT_TRUE(service.logHolds(complaint)) << complaint << " / " << service.log();
  }
}

TEST_F(LifecycleTest, PlainHttpMayBeServedOnEveryNameOfThisComputer) {
  for (const char* address : {"127.0.0.1", "127.0.0.2", "localhost"}) {
    ASSERT_TRUE(service.start({"--address", address})) << service.log();
    EXPECT_EQ(service.end(SIGTERM), 0);
  }
}

TEST_F(LifecycleTest, ATokenFileMayBeginWithAByteOrderMark) {
  writeBytes(platformPath(service.tokenFile()), std::string("\xEF\xBB\xBF") + kToken + " \r\n");
  ASSERT_TRUE(service.start()) << service.log();
  expectStillServing();
}

TEST_F(LifecycleTest, AShortTokenIsRefused) {
  writeBytes(platformPath(service.tokenFile()), "fifteen-letters\n");
  service.writeConfiguration();
  EXPECT_EQ(service.runToEnd({"--config", service.configurationFile(), "--plain-http", "yes"}), 2);
  EXPECT_TRUE(service.logHolds("has fewer than 16 characters"));
}

}  // namespace
}  // namespace tlpacscfg::test
