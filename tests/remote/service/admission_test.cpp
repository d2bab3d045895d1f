#include "service/admission.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace tlpacscfg::test {
namespace {

using service::Admission;
using service::Clock;
using service::Connection;
using service::Descriptor;
using service::Slowdown;
using service::TokenCheck;
using std::chrono::milliseconds;
using std::chrono::seconds;

/// Connections are told apart by their addresses: the network and a number.
class AdmissionTest : public testing::Test {
 protected:
  /// The address of the connection that was refused for it; empty when none was.
  std::string arrive(const std::string& network) {
    const std::string address = network + std::to_string(++arrivals[network]);
    auto refused = admission.admit({Descriptor(-1), {address, network}, now});
    if (!refused) return {};
    reason = refused->reason;
    return refused->connection.peer.address;
  }

  void speak(const std::string& address) {
    auto& waiting = admission.waiting();
    const auto found = std::find_if(waiting.begin(), waiting.end(), [&](const Connection& one) {
      return one.peer.address == address;
    });
    ASSERT_NE(found, waiting.end()) << address;
    found->spoke = now;
  }

  void arriveAndSpeak(const std::string& network) {
    ASSERT_EQ(arrive(network), "");
    speak(network + std::to_string(arrivals[network]));
  }

  /// The address of the connection that a worker gets; empty when none does.
  std::string next() {
    const auto connection = admission.next(now);
    return connection ? connection->peer.address : "";
  }

  std::vector<std::string> waiting() {
    std::vector<std::string> addresses;
    for (const Connection& one : admission.waiting()) addresses.push_back(one.peer.address);
    return addresses;
  }

  void serve(const std::string& network, TokenCheck token) {
    arriveAndSpeak(network);
    now += Slowdown::kMaxDelay;
    ASSERT_NE(next(), "");
    admission.finish(network, token, now);
  }

  Clock::time_point now{std::chrono::hours(1000)};
  Admission admission{{.workers = 4, .places = 6, .silence = seconds(5)}};
  std::map<std::string, int> arrivals;
  std::string reason;
};

using Addresses = std::vector<std::string>;

TEST_F(AdmissionTest, ASilentConnectionGetsNoWorker) {
  arrive("a");
  EXPECT_EQ(next(), "");
  speak("a1");
  EXPECT_EQ(next(), "a1");
  EXPECT_EQ(next(), "");
}

TEST_F(AdmissionTest, OneNetworkGetsHalfOfTheWorkers) {
  for (int i = 0; i < 3; ++i) arriveAndSpeak("a");
  EXPECT_EQ(next(), "a1");
  EXPECT_EQ(next(), "a2");
  EXPECT_EQ(next(), "");
  arriveAndSpeak("b");
  EXPECT_EQ(next(), "b1");
  admission.finish("a", TokenCheck::None, now);
  EXPECT_EQ(next(), "a3");
}

TEST_F(AdmissionTest, OneWorkerServesEveryone) {
  Admission small({.workers = 1, .places = 1, .silence = seconds(5)});
  for (int i = 0; i < 2; ++i) {
    EXPECT_FALSE(small.admit({Descriptor(-1), {"a1", "a"}, now, now}));
    EXPECT_TRUE(small.next(now));
    EXPECT_FALSE(small.next(now));
    small.finish("a", TokenCheck::None, now);
  }
}

TEST_F(AdmissionTest, TheNetworkWithTheFewestWorkersComesFirst) {
  for (const char* network : {"a", "a", "b", "a"}) arriveAndSpeak(network);
  EXPECT_EQ(next(), "a1");
  EXPECT_EQ(next(), "b1");
  EXPECT_EQ(next(), "a2");
  arriveAndSpeak("c");
  EXPECT_EQ(next(), "c1");
  EXPECT_EQ(next(), "") << "All workers are in use.";
  admission.finish("b", TokenCheck::None, now);
  EXPECT_EQ(next(), "") << "The network has its half.";
}

TEST_F(AdmissionTest, NetworksTakeTurns) {
  Admission small({.workers = 1, .places = 6, .silence = seconds(5)});
  for (const char* network : {"a", "a", "b", "a"}) {
    ASSERT_FALSE(small.admit({Descriptor(-1), {network, network}, now, now}));
  }
  std::string served;
  while (const auto connection = small.next(now)) {
    served += connection->peer.network;
    small.finish(connection->peer.network, TokenCheck::None, now);
  }
  EXPECT_EQ(served, "abaa");
}

TEST_F(AdmissionTest, OneNetworkGetsHalfOfThePlaces) {
  for (int i = 0; i < 3; ++i) EXPECT_EQ(arrive("a"), "");
  EXPECT_EQ(arrive("a"), "a1") << "The oldest silent one.";
  EXPECT_EQ(reason, "too many connections of one address");
  for (const char* address : {"a2", "a3", "a4"}) speak(address);
  EXPECT_EQ(arrive("a"), "a5") << "None is silent but the newest.";
  EXPECT_EQ(waiting(), (Addresses{"a2", "a3", "a4"}));
  EXPECT_EQ(arrive("b"), "");
}

TEST_F(AdmissionTest, WithoutAPlaceTheNetworkWithTheMostLosesItsOldestSilentOne) {
  for (const char* network : {"b", "a", "a", "a", "c", "c"}) EXPECT_EQ(arrive(network), "");
  speak("a1");
  EXPECT_EQ(arrive("d"), "a2");
  EXPECT_EQ(reason, "too many connections");
  EXPECT_EQ(waiting(), (Addresses{"b1", "a1", "a3", "c1", "c2", "d1"}));
}

TEST_F(AdmissionTest, WithoutASilentOneTheNetworkWithTheMostLosesItsNewest) {
  for (const char* network : {"a", "a", "a", "b", "b", "c"}) arriveAndSpeak(network);
  EXPECT_EQ(arrive("d"), "a3");
}

TEST_F(AdmissionTest, AmongEqualsTheOldestSilentOneGoesAndElseTheNewcomer) {
  for (const char* network : {"a", "b", "c", "d", "e", "f"}) EXPECT_EQ(arrive(network), "");
  speak("a1");
  EXPECT_EQ(arrive("g"), "b1");
  for (const char* address : {"c1", "d1", "e1", "f1", "g1"}) speak(address);
  EXPECT_EQ(arrive("h"), "h1");
}

TEST_F(AdmissionTest, ASilentConnectionIsDroppedWhenItsTimeIsOver) {
  arrive("a");
  now += seconds(1);
  arriveAndSpeak("a");
  EXPECT_EQ(next(), "a2");
  EXPECT_EQ(admission.nextChange(now), now + seconds(4));
  now += seconds(4) - milliseconds(1);
  EXPECT_TRUE(admission.takeSilent(now).empty());
  now += milliseconds(1);
  EXPECT_EQ(admission.takeSilent(now).size(), 1U);
  EXPECT_TRUE(admission.waiting().empty());
  EXPECT_EQ(admission.nextChange(now), Clock::time_point::max());
}

TEST_F(AdmissionTest, PlacesAndWorkersAreFreeAgainAfterwards) {
  for (int round = 0; round < 10; ++round) {
    for (int i = 0; i < 2; ++i) arriveAndSpeak("a");
    EXPECT_NE(next(), "");
    EXPECT_NE(next(), "");
    EXPECT_EQ(arrive("a"), "");
    admission.take(admission.waiting().begin());
    for (int i = 0; i < 2; ++i) admission.finish("a", TokenCheck::Right, now);
    EXPECT_EQ(admission.working(), 0U);
  }
}

TEST_F(AdmissionTest, WrongTokensDelayTheirOwnNetworkOnly) {
  for (int i = 0; i <= Slowdown::kFreeFailures; ++i) serve("a", TokenCheck::Wrong);
  arriveAndSpeak("a");
  arriveAndSpeak("b");
  EXPECT_EQ(next(), "b1");
  EXPECT_EQ(next(), "");
  EXPECT_EQ(admission.nextChange(now), now + Slowdown::kFirstDelay);
  now += Slowdown::kFirstDelay;
  EXPECT_EQ(next(), "a5");
}

TEST(SlowdownTest, TheDelayDoublesToABoundAndARightTokenEndsIt) {
  Slowdown slowdown;
  const Clock::time_point now{std::chrono::hours(1000)};
  const int expected[] = {0, 0, 0, 100, 200, 400, 800, 1600, 2000, 2000, 2000};
  for (const int delay : expected) {
    slowdown.report("a", TokenCheck::Wrong, now);
    slowdown.report("a", TokenCheck::None, now);
    EXPECT_EQ(slowdown.delay("a", now), milliseconds(delay));
    EXPECT_EQ(slowdown.delay("b", now), milliseconds(0));
  }
  slowdown.report("a", TokenCheck::Right, now);
  EXPECT_EQ(slowdown.delay("a", now), milliseconds(0));
}

TEST(SlowdownTest, WrongTokensAreForgottenAfterAWhile) {
  Slowdown slowdown;
  Clock::time_point now{std::chrono::hours(1000)};
  for (int i = 0; i < 100; ++i) slowdown.report("a", TokenCheck::Wrong, now);
  now += Slowdown::kMemory;
  EXPECT_EQ(slowdown.delay("a", now), Slowdown::kMaxDelay);
  now += seconds(1);
  EXPECT_EQ(slowdown.delay("a", now), milliseconds(0));
  slowdown.report("a", TokenCheck::Wrong, now);
  EXPECT_EQ(slowdown.delay("a", now), milliseconds(0)) << "It counts from one again.";
}

TEST(SlowdownTest, ManyNetworksTakeNoMoreMemoryThanItsTable) {
  Slowdown slowdown;
  Clock::time_point now{std::chrono::hours(1000)};
  const auto fail = [&](const std::string& network) {
    for (int i = 0; i <= Slowdown::kFreeFailures; ++i) {
      slowdown.report(network, TokenCheck::Wrong, now += milliseconds(1));
    }
  };
  fail("first");
  fail("second");
  for (std::size_t i = 0; i < Slowdown::kMaxNetworks - 1; ++i) fail(std::to_string(i));
  EXPECT_EQ(slowdown.delay("first", now), milliseconds(0)) << "The one longest ago made place.";
  EXPECT_EQ(slowdown.delay("second", now), Slowdown::kFirstDelay);
}

}  // namespace
}  // namespace tlpacscfg::test
