#include "data/tl_comm_client.h"
#include "remote/client/client_fixture.h"
#include "remote/harness/scripted_service.h"

namespace tlpacscfg::test {
namespace {

const Reply kGivesOne = {Treatment::Answer, R"({"tables": [{"columns": 1, "rows": [["1"]]}]})"};
const std::wstring kInTime = L"The service did not answer in time.";

/// A client with a time-out of one second and services that never answer.
class TimeOutTest : public ServiceClientTest {
 protected:
  void expectNoConnection(Treatment treatment) {
    const ScriptedService slow({{treatment}});
    useService(slow.port(), L"1");
    logOn(0);
    EXPECT_FALSE(ConnectTlCommClient(config));
    EXPECT_EQ(log(), errorBlock(L"[TLPACSCFG] TlCommClient could not connect: " + kInTime));
  }

  /// The first call after connecting times out, and a later one succeeds.
  void expectNoTable(Treatment treatment) {
    const ScriptedService slow({kConnects, {treatment}, kGivesOne});
    useService(slow.port(), L"1");
    ASSERT_TRUE(ConnectTlCommClient(config));
    logOn(0);
    EXPECT_EQ(TlCommClientQuery(L"select 1"), 0);
    EXPECT_EQ(log(), errorBlock(L"[TLPACSCFG] Query failed: " + kInTime));
    Table data;
    EXPECT_TRUE(eventually([] { return TlCommClientQuery(L"select 1") == 1; }));
    EXPECT_TRUE(TlCommClientGetDataset(1, data));
    EXPECT_EQ(data.at(0, 0), L"1");
  }
};

TEST_F(TimeOutTest, AServiceThatNeverAnswersIsGivenUp) { expectNoConnection(Treatment::Silence); }

TEST_F(TimeOutTest, AHeaderThatDripsIsGivenUp) { expectNoConnection(Treatment::DripHeaders); }

TEST_F(TimeOutTest, ATextThatDripsIsGivenUp) { expectNoConnection(Treatment::DripBody); }

TEST_F(TimeOutTest, AHandshakeThatNeverBeginsIsGivenUp) {
  set(L"Transport", L"https");
  expectNoConnection(Treatment::Silence);
}

TEST_F(TimeOutTest, AHandshakeThatStopsIsGivenUp) {
  set(L"Transport", L"https");
  expectNoConnection(Treatment::HalfHandshake);
}

TEST_F(TimeOutTest, ALaterCallThatGetsNoAnswerIsGivenUp) { expectNoTable(Treatment::Silence); }

TEST_F(TimeOutTest, ALaterAnswerThatDripsIsGivenUp) { expectNoTable(Treatment::DripBody); }

TEST_F(TimeOutTest, AStatementThatGetsNoAnswerIsGivenUp) {
  const ScriptedService slow({kConnects, {Treatment::Silence}});
  useService(slow.port(), L"1");
  ASSERT_TRUE(ConnectTlCommClient(config));
  logOn(0);
  EXPECT_FALSE(TlCommClientExecute(L"DELETE from System_pc_names"));
  EXPECT_EQ(log(), errorBlock(L"[TLPACSCFG] Query failed to execute: " + kInTime));
}

}  // namespace
}  // namespace tlpacscfg::test
