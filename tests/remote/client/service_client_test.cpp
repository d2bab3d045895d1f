#include <winsock2.h>

#include "data/direct_connections.h"
#include "data/statements.h"
#include "data/tl_comm_client.h"
#include "data/workstation_key.h"
#include "harness/scratch.h"
#include "remote/client/client_fixture.h"
#include "support/handle_win.h"

namespace tlpacscfg::test {
namespace {

using Names = std::vector<std::wstring>;

/// A port without a listener.
class DeafPort {
 public:
  DeafPort() {
    WSADATA data;
    WSAStartup(MAKEWORD(2, 2), &data);
    socket_ = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    int length = sizeof(address);
    EXPECT_EQ(bind(socket_, reinterpret_cast<sockaddr*>(&address), length), 0);
    EXPECT_EQ(getsockname(socket_, reinterpret_cast<sockaddr*>(&address), &length), 0);
    port_ = ntohs(address.sin_port);
  }
  ~DeafPort() {
    closesocket(socket_);
    WSACleanup();
  }
  DeafPort(const DeafPort&) = delete;
  DeafPort& operator=(const DeafPort&) = delete;

  int port() const { return port_; }

 private:
  SOCKET socket_;
  int port_ = 0;
};

class ConnectingTest : public ServiceClientTest {
 protected:
  ConnectingTest() { logOn(); }

  /// Connecting fails with this reason and these log lines, and no client stays.
  void expectRefused(const std::wstring& reason) {
    EXPECT_FALSE(ConnectTlCommClient(config));
    EXPECT_FALSE(TlCommClientConnected());
    EXPECT_EQ(log(), debugLine(9, L"[TLPACSCFG] Connecting to TlCommClient") +
                         debugLine(10, L"[TLPACSCFG] Storing database name:Talora") +
                         errorBlock(L"[TLPACSCFG] TlCommClient could not connect: " + reason));
  }
};

TEST_F(ConnectingTest, AServiceThatAcceptsTheTokenIsConnected) {
  service.start();
  useService(service.port());
  EXPECT_TRUE(ConnectTlCommClient(config));
  EXPECT_TRUE(TlCommClientConnected());
  EXPECT_EQ(log(), debugLine(9, L"[TLPACSCFG] Connecting to TlCommClient") +
                       debugLine(10, L"[TLPACSCFG] Storing database name:Talora") +
                       debugLine(7, L"[TLPACSCFG] TlCommClient connected successfully"));
  // Written after the answer.
  EXPECT_TRUE(eventually([&] {
    return service.log().find("operation=/v1/connect status=200 ") != std::string::npos;
  })) << service.log();
}

TEST_F(ConnectingTest, WithoutAHostAddressNoRequestIsSent) {
  service.start();
  useService(service.port());
  config.TlCommClientHostIP = L"";
  EXPECT_FALSE(ConnectTlCommClient(config));
  EXPECT_EQ(log(), debugLine(9, L"[TLPACSCFG] Connecting to TlCommClient") +
                       errorBlock(L"[TLPACSCFG] No TlCommClient Host IP provided"));
  EXPECT_EQ(service.log().find("/v1/connect"), std::string::npos);
}

TEST_F(ConnectingTest, AWrongTokenIsRefused) {
  service.start();
  set(L"Token", L"another-token-altogether");
  useService(service.port());
  expectRefused(L"The token is wrong.");
}

TEST_F(ConnectingTest, TheTokenMayStandInAFile) {
  service.start();
  set(L"Token", L"");
  const std::wstring file = scratchPath(L"client-token");
  writeBytes(file, "the-token-that-tests-show\r\n");
  set(L"TokenFile", file);
  useService(service.port());
  EXPECT_TRUE(ConnectTlCommClient(config));
}

TEST_F(ConnectingTest, ATokenFileMayBeginWithAByteOrderMark) {
  service.start();
  set(L"Token", L"");
  const std::wstring file = scratchPath(L"client-token");
  writeBytes(file, "\xEF\xBB\xBFthe-token-that-tests-show");
  set(L"TokenFile", file);
  useService(service.port());
  EXPECT_TRUE(ConnectTlCommClient(config));
}

TEST_F(ConnectingTest, ThisComputerHasSeveralNames) {
  service.start(0, {"--address", "127.0.0.2"});
  useService(service.port());
  set(L"Token", WineService::kToken, L"127.0.0.2");
  set(L"Transport", L"http", L"127.0.0.2");
  config.TlCommClientHostIP = L"127.0.0.2";
  EXPECT_TRUE(ConnectTlCommClient(config));
}

TEST_F(ConnectingTest, WithoutATokenNoRequestIsSent) {
  set(L"Token", L"");
  useService(1);
  expectRefused(L"No token is set for the host '127.0.0.1'.");
}

TEST_F(ConnectingTest, ARefusedConnectionIsReported) {
  const DeafPort nobody;
  useService(nobody.port(), L"20");
  expectRefused(L"There is no connection to the service.");
}

TEST_F(ConnectingTest, APortOrATimeOutThatIsNoNumberIsReported) {
  for (const wchar_t* port : {L"x", L"0", L"65536", L"-1", L"1e9"}) {
    config = {};
    useService(1);
    config.TlCommClientHostPort = port;
    EXPECT_FALSE(ConnectTlCommClient(config)) << port;
  }
  for (const wchar_t* timeout : {L"soon", L"0", L"-5", L"3601"}) {
    useService(1, timeout);
    EXPECT_FALSE(ConnectTlCommClient(config)) << timeout;
  }
  EXPECT_NE(log().find("TlCommClient could not connect: The port is not a number."),
            std::string::npos);
  EXPECT_NE(log().find("could not connect: The time-out is not a number of seconds."),
            std::string::npos);
}

TEST_F(ConnectingTest, WithoutTlsOnlyThisComputerIsAsked) {
  useService(1);
  config.TlCommClientHostIP = L"192.0.2.1";
  set(L"Token", WineService::kToken, config.TlCommClientHostIP);
  set(L"Transport", L"http", config.TlCommClientHostIP);
  expectRefused(L"Without TLS only a service on this computer is used.");
}

class ConnectedTest : public ServiceClientTest {
 protected:
  ConnectedTest() {
    connectClient();
    logOn();
  }

  static std::string queryLines(const std::wstring& sql) {
    return debugLine(9, L"[TLPACSCFG] Querying DB using TlCommClient") +
           debugLine(10, L"[TLPACSCFG] Query:\r\n" + sql);
  }
  static std::string datasetLines(int index) {
    return debugLine(9, L"[TLPACSCFG] Getting dataset from TlCommClient") +
           debugLine(10, L"[TLPACSCFG] DataIndex:" + std::to_wstring(index));
  }
  static std::string executeLines(const std::wstring& sql) {
    return debugLine(9, L"[TLPACSCFG] Executing query using TlCommClient") +
           debugLine(10, L"[TLPACSCFG] Query:\r\n" + sql);
  }
};

TEST_F(ConnectedTest, AQueryAndItsTableCrossTheWire) {
  addWorkstation(L"READ-01");
  addWorkstation(L"READ-02", L"NULL");
  const std::wstring sql = L"select pc_name, flag2 from System_pc_names order by pc_name";
  EXPECT_EQ(TlCommClientQuery(sql), 1);
  Table data;
  EXPECT_TRUE(TlCommClientGetDataset(1, data));
  ASSERT_EQ(data.columns(), 2U);
  ASSERT_EQ(data.rows(), 2U);
  EXPECT_EQ(data.at(0, 0), L"READ-01");
  EXPECT_EQ(data.at(1, 0), L"1");
  EXPECT_EQ(data.at(0, 1), L"READ-02");
  EXPECT_EQ(data.at(1, 1), std::nullopt);
  EXPECT_EQ(log(), queryLines(sql) + datasetLines(1));
}

TEST_F(ConnectedTest, AQueryWithoutRowsHasATableThatIsEmpty) {
  EXPECT_EQ(TlCommClientQuery(L"select pc_name from System_pc_names"), 1);
  Table data;
  EXPECT_TRUE(TlCommClientGetDataset(1, data));
  EXPECT_EQ(data.rows(), 0U);
}

TEST_F(ConnectedTest, AQueryThatGivesNoTableCountsAsInvalid) {
  const std::wstring sql = L"DELETE from System_pc_names";
  EXPECT_EQ(TlCommClientQuery(sql), 0);
  EXPECT_EQ(log(), queryLines(sql) + errorBlock(L"[TLPACSCFG] Invalid table count returned"));
}

TEST_F(ConnectedTest, AnErrorOfTheDatabaseReachesTheLog) {
  const std::wstring sql = L"select x from nowhere";
  EXPECT_EQ(TlCommClientQuery(sql), 0);
  EXPECT_EQ(log(), queryLines(sql) + errorBlock(L"[TLPACSCFG] Query failed: HY000: [SQLite]no such "
                                                L"table: nowhere (1)"));
}

TEST_F(ConnectedTest, ATableThatIsNotThereIsReportedInTheWordsForWorkstations) {
  EXPECT_EQ(TlCommClientQuery(L"select 1"), 1);
  Table data;
  logTo(scratchPath(L"component.log"));
  const std::string before = log();
  EXPECT_FALSE(TlCommClientGetDataset(2, data));
  EXPECT_EQ(log(), before + datasetLines(2) +
                       errorBlock(L"[TLPACSCFG] Unable to retrieve workstation list: There is no "
                                  L"such table."));
}

TEST_F(ConnectedTest, StatementsAreExecuted) {
  const std::wstring sql = L"INSERT INTO System_pc_names VALUES('READ-01', '', 1)";
  EXPECT_TRUE(TlCommClientExecute(sql));
  EXPECT_EQ(site.value(L"select count(*) from System_pc_names"), L"1");
  EXPECT_EQ(log(), executeLines(sql));
}

TEST_F(ConnectedTest, AStatementThatFailsIsReported) {
  const std::wstring sql = L"DELETE from nowhere";
  EXPECT_FALSE(TlCommClientExecute(sql));
  EXPECT_EQ(log(), executeLines(sql) + errorBlock(L"[TLPACSCFG] Query failed to execute: HY000: "
                                                  L"[SQLite]no such table: nowhere (1)"));
}

TEST_F(ConnectedTest, ADatabaseThatTheServiceDoesNotKnowIsReported) {
  modTlCommClient.g_strTlDatabase = L"Other";
  EXPECT_EQ(TlCommClientQuery(L"select 1"), 0);
  EXPECT_EQ(log(), queryLines(L"select 1") +
                       errorBlock(L"[TLPACSCFG] Query failed: There is no database 'Other'."));
}

TEST_F(ConnectedTest, TextsCrossTheWireInBothDirectionsAsTheyAre) {
  for (const std::wstring& text :
       {std::wstring(L"O'Brien's"), std::wstring(L"Gr\u00fc\u00dfe \u65e5\u672c\u8a9e \U0001F4C4"),
        std::wstring(L"line\r\nbreak \"quoted\" \\ slash"), std::wstring(10'000, L'\u00e9')}) {
    const std::wstring literal = L"'" + FixQuotes(text) + L"'";
    ASSERT_TRUE(
        TlCommClientExecute(L"DELETE from System_pc_names\r\n\r\nINSERT INTO "
                            L"System_pc_names VALUES('PC', " +
                            literal + L", 1)"));
    ASSERT_EQ(TlCommClientQuery(
                  L"select access_string from System_pc_names where access_string = " + literal),
              1);
    Table data;
    ASSERT_TRUE(TlCommClientGetDataset(1, data));
    ASSERT_EQ(data.rows(), 1U);
    EXPECT_EQ(data.at(0, 0), text);
    EXPECT_EQ(site.value(L"select access_string from System_pc_names"), text);
  }
}

TEST_F(ConnectedTest, TheLargestAnswerThatTheServiceGivesIsTaken) {
  ASSERT_EQ(TlCommClientQuery(L"select hex(zeroblob(33554400))"), 1);
  Table data;
  ASSERT_TRUE(TlCommClientGetDataset(1, data));
  EXPECT_EQ(data.at(0, 0).value_or(L"").size(), 67'108'800U);
}

TEST_F(ConnectedTest, FilesAreListed) {
  for (const wchar_t* name : {L"b.xml", L"A.XML", L"c.txt"}) {
    writeBytes(WineService::promptPath(name), "");
  }
  Names files;
  EXPECT_TRUE(TlCommClientGetFileList(L"Z:\\site\\TALORA\\PROMPTS", L"*.XML", files));
  EXPECT_EQ(files, (Names{L"A.XML", L"b.xml"}));
  EXPECT_EQ(log(), "");
}

TEST_F(ConnectedTest, ADirectoryThatIsNotSharedIsReported) {
  Names files;
  EXPECT_FALSE(TlCommClientGetFileList(L"Z:\\site\\TALORA\\PROMPTS\\..", L"*.XML", files));
  EXPECT_EQ(log(), errorBlock(L"[TLPACSCFG] Unable to get file list: The directory is not shared "
                              L"or does not exist."));
}

TEST_F(ConnectedTest, AServiceThatIsGoneIsReportedUntilItIsBack) {
  const int port = service.port();
  service.end("KILL");
  EXPECT_EQ(TlCommClientQuery(L"select 1"), 0);
  EXPECT_FALSE(TlCommClientExecute(L"DELETE from System_pc_names"));
  Names files;
  EXPECT_FALSE(TlCommClientGetFileList(L"Z:\\site\\TALORA\\PROMPTS", L"*.XML", files));
  EXPECT_FALSE(TestDatabaseConnection());
  EXPECT_TRUE(TlCommClientConnected());
  EXPECT_NE(log().find(errorBlock(L"[TLPACSCFG] Query failed: There is no connection to the "
                                  L"service.")),
            std::string::npos);
  service.start(port);
  EXPECT_EQ(TlCommClientQuery(L"select 1"), 1);
  EXPECT_TRUE(TestDatabaseConnection());
}

TEST_F(ConnectedTest, TheConnectionTestAsksTheService) {
  EXPECT_TRUE(TestDatabaseConnection());
  EXPECT_EQ(log(), executeLines(L"SELECT GetDate()"));
}

TEST_F(ConnectedTest, DisconnectingIsLoggedOnceAndThenThereIsNoClient) {
  DisconnectDatabase();
  EXPECT_FALSE(TlCommClientConnected());
  EXPECT_EQ(log(), debugLine(7, L"[TLPACSCFG] Disconnecting TlCommClient"));
  EXPECT_EQ(TlCommClientQuery(L"select 1"), 0);
  EXPECT_EQ(log(), debugLine(7, L"[TLPACSCFG] Disconnecting TlCommClient") +
                       queryLines(L"select 1") +
                       debugLine(7,
                                 L"[TLPACSCFG] Cannot process query because TlCommClient is not "
                                 L"connected"));
}

TEST_F(ConnectedTest, AnAssignmentIsFoundByTheWorkstationsName) {
  assign(L"READ-01", L"'3'");
  EXPECT_EQ(WorkstationConfigExists(L"READ-01"), 1);
  EXPECT_EQ(WorkstationConfigExists(L"READ-02"), 0);
  EXPECT_EQ(WorkstationConfigExists(L"O'Brien"), 0) << "The name is not escaped.";
}

TEST_F(ConnectedTest, AWriteLeavesAMarkForOfflineCopies) {
  AddOfflineDbUpdate();
  EXPECT_EQ(site.value(L"select count(*) from System_offline_db_updates where user_id = -1 and "
                       L"update_type = 3"),
            L"1");
}

}  // namespace
}  // namespace tlpacscfg::test
