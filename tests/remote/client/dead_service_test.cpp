#include <chrono>
#include <functional>

#include "remote/client/raw_client_test.h"
#include "remote/harness/scripted_service.h"

namespace tlpacscfg::test {
namespace {

using Clock = std::chrono::steady_clock;

/// A dead service fails one call after the time-out.
class DeadServiceTest : public RawClientTest {
 protected:
  static constexpr int kTimeout = 2;

  void expectOneTimeOut(const std::function<Outcome()>& call) {
    const auto start = Clock::now();
    EXPECT_EQ(nameOf(call().result), "S_OK");
    const auto time = Clock::now() - start;
    EXPECT_GE(time, std::chrono::seconds(kTimeout));
    EXPECT_LT(time, std::chrono::seconds(2 * kTimeout));
    EXPECT_EQ(error(), L"The service did not answer in time.");
  }
  void expectAtOnce(const std::function<void()>& call) {
    const auto start = Clock::now();
    call();
    EXPECT_LT(Clock::now() - start, std::chrono::seconds(kTimeout));
  }
};

TEST_F(DeadServiceTest, EveryMethodThatAsksItWaitsForOneTimeOut) {
  const Reply kSilence = {Treatment::Silence};
  const ScriptedService silent(
      {kConnects, kSilence, kConnects, kSilence, kConnects, kSilence, kSilence});
  const auto expectAfterConnecting = [&](const std::function<Outcome()>& call) {
    ASSERT_TRUE(connectTo(silent.port(), kTimeout).truth());
    expectOneTimeOut(call);
  };
  expectAfterConnecting([&] { return client.call(L"SQLQueryTable", {L"Talora", L"SELECT 1"}); });
  expectAfterConnecting([&] {
    return client.call(L"SQLExecuteText", {L"Talora", L"DELETE from x"});
  });
  expectAfterConnecting([&] {
    return client.call(L"GetNetworkDirectoryFiles",
                       {L"x", false, L"*", false, false, false, false});
  });
  expectOneTimeOut([&] { return connectTo(silent.port(), kTimeout); });
}

TEST_F(DeadServiceTest, CallsThatFollowATimeOutFailAtOnceForAsLongAsItTook) {
  const ScriptedService revived({kConnects, {Treatment::Silence}, {Treatment::Answer, "{}"}});
  ASSERT_TRUE(connectTo(revived.port(), kTimeout).truth());
  const auto execute = [&] { return client.call(L"SQLExecuteText", {L"Talora", L"DELETE"}); };
  expectOneTimeOut(execute);
  const auto pauseStart = Clock::now();
  expectAtOnce([&] {
    for (int i = 0; i < 30; ++i) EXPECT_FALSE(execute().truth());
    EXPECT_EQ(error(), L"The service did not answer in time.");
  });
  EXPECT_EQ(revived.connections(), 2);
  EXPECT_TRUE(eventually([&] { return execute().truth(); }));
  EXPECT_LT(Clock::now() - pauseStart, std::chrono::seconds(2 * kTimeout));
  EXPECT_EQ(revived.connections(), 3);
}

TEST_F(DeadServiceTest, ConnectingAgainEndsThePause) {
  const ScriptedService revived({kConnects, {Treatment::Silence}, kConnects});
  ASSERT_TRUE(connectTo(revived.port(), kTimeout).truth());
  expectOneTimeOut([&] { return client.call(L"SQLExecuteText", {L"Talora", L"DELETE"}); });
  EXPECT_TRUE(connectTo(revived.port(), kTimeout).truth());
}

TEST_F(DeadServiceTest, TheMethodsThatDoNotAskItAnswerAtOnceWhileARequestStillHangs) {
  const ScriptedService silent({kConnects, {Treatment::DripBody}});
  ASSERT_TRUE(connectTo(silent.port(), kTimeout).truth());
  expectOneTimeOut([&] { return client.call(L"SQLQueryTable", {L"Talora", L"SELECT 1"}); });
  expectAtOnce([&] { client.call(L"GetTableData", {0}); });
  expectAtOnce([&] { client.call(L"CheckForError"); });
  expectAtOnce([&] { client.call(L"DisconnectFromService", {L"test"}); });
  expectAtOnce([&] { client.release(); });
}

}  // namespace
}  // namespace tlpacscfg::test
