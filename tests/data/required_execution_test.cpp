#include "data/database.h"
#include "data/odbc/error.h"
#include "data/statements.h"
#include "data/tl_comm_client.h"
#include "tools/core_test.h"
#include "tools/errors.h"
#include "tools/fake_client.h"

namespace tlpacscfg::test {
namespace {

class RequiredExecutionTest : public SiteTest {
 protected:
  static void sendAll() {
    for (const wchar_t* statement : {L"first", L"second", L"third"}) ExecuteSQL(statement);
  }

  static RunTimeError failureOf(const std::function<void()>& statements) {
    try {
      requireExecution(statements);
    } catch (const RunTimeError& failure) {
      return failure;
    }
    ADD_FAILURE() << "nothing was thrown";
    return {0, L""};
  }

  std::shared_ptr<ClientScript> client = connectFakeClient();
};

TEST_F(RequiredExecutionTest, StatementsThatTheClientExecutesThrowNothing) {
  EXPECT_NO_THROW(requireExecution(sendAll));
  EXPECT_EQ(client->calls.size(), 3U);
}

TEST_F(RequiredExecutionTest, ARefusedStatementIsThrownInTheClientsWordsWhenAllIsSent) {
  client->refused = L"first";
  client->errors = {L"The table is locked."};
  const RunTimeError failure = failureOf(sendAll);
  EXPECT_EQ(failure.number(), odbc::kOdbcFailed);
  EXPECT_EQ(failure.description(), L"The table is locked.");
  EXPECT_EQ(client->calls.back(), L"SQLExecuteText(site, third)");
}

TEST_F(RequiredExecutionTest, ALaterStatementThatIsRefusedCountsToo) {
  client->refused = L"third";
  client->errors = {L"The disk is full."};
  EXPECT_EQ(failureOf(sendAll).description(), L"The disk is full.");
}

TEST_F(RequiredExecutionTest, TheFirstOfSeveralRefusalsIsTheOneThatIsTold) {
  client->executes = false;
  client->errors = {L"one", L"two", L"three"};
  EXPECT_EQ(failureOf(sendAll).description(), L"one");
}

TEST_F(RequiredExecutionTest, ARefusalWithoutAWordHasADescriptionAllTheSame) {
  client->executes = false;
  EXPECT_EQ(failureOf(sendAll).description(),
            L"The remote data client could not execute a statement.");
}

TEST_F(RequiredExecutionTest, ACallThatFailsItselfIsToldWithItsOwnDescription) {
  client->failing = {L"SQLExecuteText"};
  EXPECT_EQ(failureOf(sendAll).description(),
            L"The object invoked has disconnected from its clients.");
}

TEST_F(RequiredExecutionTest, EarlierRefusalsAreForgotten) {
  client->executes = false;
  sendAll();
  client->executes = true;
  EXPECT_NO_THROW(requireExecution(sendAll));
}

TEST_F(RequiredExecutionTest, WithoutTheClientTheDirectConnectionsErrorComesThrough) {
  g_objTlCommClient.reset();
  connect();
  EXPECT_THROW(requireExecution([] { ExecuteSQL(L"DELETE FROM Nowhere"); }), odbc::Error);
  EXPECT_NO_THROW(requireExecution([] { ExecuteSQL(L"DELETE FROM Interface_PACS_cfg"); }));
}

TEST_F(RequiredExecutionTest, TheStatementItselfStillFailsInSilence) {
  client->executes = false;
  EXPECT_NO_THROW(sendAll());
  EXPECT_TRUE(messages.empty());
}

}  // namespace
}  // namespace tlpacscfg::test
