#include <gmock/gmock.h>

#include "data/direct_connections.h"
#include "data/mod_main.h"
#include "support/text.h"
#include "wire/wire_fixture.h"

namespace tlpacscfg::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class WireLoginTest : public WireTest {
 protected:
  /// The box of a failed or timed-out login, whatever the driver's text.
  void expectTimeOutBox(const std::wstring& reason) const {
    ASSERT_EQ(messages.size(), 1U);
    const std::wstring& text = messages[0].text;
    EXPECT_THAT(text, ::testing::HasSubstr(reason));
    EXPECT_THAT(text, ::testing::Not(::testing::HasSubstr(L"geheim")));
    EXPECT_THAT(text, ::testing::EndsWith(L"\r\n-2147467259\r\nSQL Timeout, Please try again."));
    expectPlainBox(text);
  }
};

TEST_F(WireLoginTest, TheServerSeesLoginPasswordApplicationAndDatabase) {
  config.SqlUserName = L"talora_admin";
  EXPECT_TRUE(ConnectToDatabase(config));
  EXPECT_THAT(record(), ElementsAre(login(L"talora_admin", L"geheim", L"Talora")));
  EXPECT_TRUE(modMain.g_blnSqlConnected);
}

TEST_F(WireLoginTest, WithoutAUserNameTheLoginIsSa) {
  EXPECT_TRUE(ConnectToDatabase(config));
  EXPECT_THAT(record(), ElementsAre(login(L"sa", L"geheim", L"Talora")));
  EXPECT_EQ(modMain.g_strSqlUser, L"sa");
}

TEST_F(WireLoginTest, ThePasswordIsSentWithoutTheBlanksAroundIt) {
  config.Password = L"  two words  ";
  EXPECT_TRUE(ConnectToDatabase(config));
  EXPECT_THAT(record(), ElementsAre(login(L"sa", L"two words", L"Talora")));
}

TEST_F(WireLoginTest, NamesAndPasswordsMayHoldAnyCharacter) {
  config.SqlUserName = L"Jürgen";
  config.Password = L"Łódź-€";
  config.SqlDbName = L"Zürich";
  EXPECT_TRUE(ConnectToDatabase(config));
  EXPECT_THAT(record(), ElementsAre(login(L"Jürgen", L"Łódź-€", L"Zürich")));
}

TEST_F(WireLoginTest, SpecialCharactersOfConnectStringsArriveUnchanged) {
  for (const wchar_t* secret : {L"semi;colon", L"a=b;UID=evil", L"{", L"{open", L"in{side", L"end}",
                                L"}", L"quotes\"and'", L"[brackets](too)", L";"}) {
    config.Password = secret;
    EXPECT_TRUE(ConnectToDatabase(config)) << toUtf8(secret);
    EXPECT_THAT(newRecord(), ElementsAre(login(L"sa", secret, L"Talora")));
    DisconnectDatabase();
  }
  config.Password = L"geheim";
  config.SqlUserName = L"na;me";
  config.SqlDbName = L"data;base={x";
  EXPECT_TRUE(ConnectToDatabase(config));
  EXPECT_THAT(newRecord(), ElementsAre(login(L"na;me", L"geheim", L"data;base={x")));
}

TEST_F(WireLoginTest, AnEmptyPasswordIsSentEmpty) {
  config.Password.clear();
  EXPECT_TRUE(ConnectToDatabase(config));
  EXPECT_THAT(record(), ElementsAre(login(L"sa", L"", L"Talora")));
}

TEST_F(WireLoginTest, WithoutARegisteredDataSourceServerAndDatabaseAreUsed) {
  config.SQLDSN = L"TlNowhereRegistered";
  EXPECT_TRUE(ConnectToDatabase(config));
  EXPECT_THAT(record(), ElementsAre(login(L"sa", L"geheim", L"Talora")));
}

TEST_F(WireLoginTest, AfterDisconnectingTheNextConnectLogsInAgain) {
  connect();
  DisconnectDatabase();
  EXPECT_FALSE(modMain.g_blnSqlConnected);
  EXPECT_TRUE(ConnectToDatabase(config));
  EXPECT_THAT(newRecord(), ElementsAre(login(L"sa", L"geheim", L"Talora")));
}

TEST_F(WireLoginTest, ARefusedLoginShowsTheTimeOutBox) {
  refuseLogin(18456, L"Login failed for user 'sa'.");
  EXPECT_FALSE(ConnectToDatabase(config));
  EXPECT_FALSE(modMain.g_blnSqlConnected);
  expectTimeOutBox(L"Login failed for user 'sa'.");
}

TEST_F(WireLoginTest, AServerThatDoesNotAnswerFailsAtTheLoginTimeOut) {
  stallLogin();
  config.SqlTimeout = 1;
  EXPECT_FALSE(ConnectToDatabase(config));
  EXPECT_THAT(record(), ElementsAre(login(L"sa", L"geheim", L"Talora")));
  expectTimeOutBox(L"");
}

TEST_F(WireLoginTest, AServerThatHangsUpShowsTheTimeOutBox) {
  hangUpAtLogin();
  EXPECT_FALSE(ConnectToDatabase(config));
  expectTimeOutBox(L"");
}

}  // namespace
}  // namespace tlpacscfg::test
