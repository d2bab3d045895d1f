#include "host/host_object.h"

#include "data/direct_connections.h"
#include "data/mod_main.h"
#include "data/tl_comm_client.h"
#include "harness/errors.h"
#include "harness/fake_client.h"
#include "harness/offline_fixture.h"
#include "harness/scratch.h"
#include "log/log_support.h"

namespace tlpacscfg::test {
namespace {

constexpr const wchar_t* kNoNetworkRoot =
    L"Error - NetworkRootDir was not specified in the TALORA.INI Configuration file.";

class InitTest : public SiteTest {
 protected:
  InitTest() { *host.settings = config; }

  void writeIni(const std::string& bytes) {
    host.settings->Talora_INIFile = scratchPath(L"TALORA.INI");
    writeBytes(host.settings->Talora_INIFile, bytes);
  }

  void expectCriticalBox() const {
    ASSERT_EQ(messages.size(), 1U);
    EXPECT_EQ(messages[0].text, kNoNetworkRoot);
    EXPECT_EQ(messages[0].icon, system::Icon::Critical);
    EXPECT_EQ(messages[0].buttons, system::Buttons::Ok);
    EXPECT_EQ(messages[0].modality, system::Modality::Application);
    EXPECT_EQ(messages[0].title, L"TLPACSCFG");
  }

  clsConfig host;
};

TEST_F(InitTest, ANewObjectIsEmpty) {
  const clsConfig fresh;
  EXPECT_FALSE(fresh.Initialized);
  EXPECT_FALSE(fresh.ConfigLoaded);
  EXPECT_EQ(fresh.m_colPACSConfig, nullptr);
  EXPECT_EQ(fresh.m_colWorkstation, nullptr);
  EXPECT_EQ(fresh.settings->SqlUserName, L"");
  EXPECT_EQ(fresh.settings->SqlTimeout, 0);
  EXPECT_EQ(fresh.settings->Dynamic_DataSource, 0);
}

TEST_F(InitTest, CreatingAnObjectForgetsTheConnectionAndMakesItTheCurrentOne) {
  connect();
  const clsConfig fresh;
  EXPECT_FALSE(modMain.g_blnSqlConnected);
  EXPECT_EQ(modMain.g_objConfig, fresh.settings);
}

TEST_F(InitTest, TheDirectPathLoadsBothCollectionsAndTheNetworkRoot) {
  addConfiguration(1);
  addWorkstation(L"PC1");
  assign(L"PC1", L"'1'");
  writeIni("[System]\r\nNetworkRootDir= \\\\srv\\talora \r\n");
  EXPECT_TRUE(host.Init());
  EXPECT_TRUE(host.Initialized);
  EXPECT_TRUE(modMain.g_blnSqlConnected);
  EXPECT_EQ(host.m_colPACSConfig->ColPACSConfigs->count(), 2U);
  EXPECT_EQ(host.m_colWorkstation->Item(1)->configID, 1);
  EXPECT_EQ(modMain.g_strNetworkRootDir, L"\\\\srv\\talora");
  EXPECT_TRUE(messages.empty());
}

TEST_F(InitTest, ASecondInitReportsFailureAndChangesNothing) {
  ASSERT_TRUE(host.Init());
  const auto connection = modMain.g_conSql;
  const auto configurations = host.m_colPACSConfig;
  logOn();
  EXPECT_FALSE(host.Init());
  EXPECT_TRUE(host.Initialized);
  EXPECT_EQ(modMain.g_conSql, connection);
  EXPECT_TRUE(modMain.g_blnSqlConnected);
  EXPECT_EQ(host.m_colPACSConfig, configurations);
  EXPECT_EQ(log(), "");
}

TEST_F(InitTest, TheInitOfAnotherObjectReopensTheConnection) {
  ASSERT_TRUE(host.Init());
  clsConfig other;
  *other.settings = config;
  EXPECT_TRUE(other.Init());
  EXPECT_TRUE(modMain.g_blnSqlConnected);
}

TEST_F(InitTest, InitClosesAnEarlierRemoteClient) {
  const auto client = connectFakeClient();
  EXPECT_TRUE(host.Init());
  EXPECT_EQ(client->destroyed, 1);
  EXPECT_FALSE(TlCommClientConnected());
}

TEST_F(InitTest, AFailedConnectionFailsInitWhichCanBeTriedAgain) {
  host.settings->SQLDSN = L"";
  host.settings->SqlServerName = L"127.0.0.1,1";
  EXPECT_FALSE(host.Init());
  EXPECT_FALSE(host.Initialized);
  EXPECT_EQ(host.m_colPACSConfig, nullptr);
  EXPECT_EQ(messages.size(), 1U);
  *host.settings = config;
  EXPECT_TRUE(host.Init());
}

TEST_F(InitTest, AnUnwritableLogFailsInitWithoutABox) {
  logTo(scratchPath(L"missing/directory.log"));
  EXPECT_FALSE(host.Init());
  EXPECT_TRUE(messages.empty());
}

TEST_F(InitTest, AConfigurationThatCannotBeLoadedFailsInit) {
  addConfiguration(0);
  EXPECT_FALSE(host.Init());
  EXPECT_FALSE(host.Initialized);
}

TEST_F(InitTest, TheLogNamesTheRowThatFailedInit) {
  addConfiguration(3);
  addConfiguration(7, L"flag18 = 'bad'");
  logOn(0);
  EXPECT_FALSE(host.Init());
  EXPECT_EQ(log(),
            errorBlock(L"[TLPACSCFG] Init failed to load Interface_PACS_cfg, row 2 (config_id "
                       L"7): Error 13 Type mismatch"));
  EXPECT_TRUE(messages.empty());
}

TEST_F(InitTest, TheLogNamesANullADuplicateAndANumberThatDoesNotFit) {
  const std::pair<const wchar_t*, const wchar_t*> cases[] = {
      {L"bidirectional = NULL", L"row 1 (config_id 7): Error 94 Invalid use of Null"},
      {L"config_id = 0",
       L"row 1 (config_id 0): Error 457 This key is already associated with an "
       L"element of this collection"},
      {L"pacs_type = 40000", L"row 1 (config_id 7): Error 6 Overflow"}};
  for (const auto& [change, reason] : cases) {
    site.run(L"DELETE FROM Interface_PACS_cfg");
    addConfiguration(7);
    site.run(std::wstring(L"UPDATE Interface_PACS_cfg SET ") + change);
    logTo(scratchPath(L"component.log"), 0);
    EXPECT_FALSE(host.Init());
    EXPECT_TRUE(log().ends_with(
        errorBlock(std::wstring(L"[TLPACSCFG] Init failed to load Interface_PACS_cfg, ") + reason)))
        << log();
  }
}

TEST_F(InitTest, TheLogSaysWhyALoadingStatementFailedInit) {
  site.run(L"DROP TABLE Interface_PACS_cfg");
  logOn(0);
  EXPECT_FALSE(host.Init());
  EXPECT_NE(log().find("Init failed to load Interface_PACS_cfg: Error 40002 HY000: [SQLite]no such "
                       "table: Interface_PACS_cfg"),
            std::string::npos)
      << log();
}

TEST_F(InitTest, WorkstationsThatCannotBeLoadedDoNotFailInit) {
  addWorkstation(L"PC1", L"NULL");
  EXPECT_TRUE(host.Init());
  expectPlainBox(L"Error 94 Error Desc Invalid use of Null");
}

class RemoteInitTest : public InitTest {
 protected:
  RemoteInitTest() {
    modMain.g_blnTlCommClientEnabled = true;
    host.settings->TlCommClientHostIP = L"10.0.0.7";
    host.settings->TlCommClientHostPort = L"8080";
    host.settings->TlCommClientTimeout = L"30";
    host.settings->SqlDbName = L"talora";
  }

  std::shared_ptr<ClientScript> client = installFakeClient();
};

TEST_F(RemoteInitTest, WithAConnectedClientTheServerIsNotUsed) {
  logOn(9);
  EXPECT_TRUE(host.Init());
  EXPECT_TRUE(TlCommClientConnected());
  EXPECT_FALSE(modMain.g_blnSqlConnected);
  EXPECT_EQ(log().find("Connecting to database"), std::string::npos);
  EXPECT_EQ(client->calls.front(), L"ConnectToService(TLPACSCFG.DLL, 10.0.0.7, 8080, 30)");
  EXPECT_EQ(host.m_colPACSConfig->ColPACSConfigs->count(), 1U);
  EXPECT_TRUE(messages.empty());
}

TEST_F(RemoteInitTest, WhenTheClientCannotConnectTheServerIsUsedSilently) {
  client->connects = false;
  EXPECT_TRUE(host.Init());
  EXPECT_FALSE(TlCommClientConnected());
  EXPECT_TRUE(modMain.g_blnSqlConnected);
  EXPECT_TRUE(messages.empty());
}

TEST_F(RemoteInitTest, AClientThatIsNotEnabledIsNotCreated) {
  modMain.g_blnTlCommClientEnabled = false;
  EXPECT_TRUE(host.Init());
  EXPECT_EQ(client->created, 0);
}

TEST_F(RemoteInitTest, StandAloneModeTakesPrecedence) {
  modMain.g_blnUseOfflineDB = true;
  EXPECT_FALSE(host.Init());
  EXPECT_EQ(client->created, 0);
  EXPECT_FALSE(modMain.g_blnSqlConnected);
  expectPlainBox(
      L"Local configuration database was not set or could not be found.  Cannot load PACS "
      L"configurations in Stand Alone mode");
}

TEST_F(InitTest, ReadingTheNetworkRootTrimsBlanks) {
  writeIni("[System]\nNetworkRootDir=   C:\\x  \n");
  ReadNetworkRootDir();
  EXPECT_EQ(modMain.g_strNetworkRootDir, L"C:\\x");
  EXPECT_TRUE(messages.empty());
}

TEST_F(InitTest, WithoutAnIniFileNameTheNetworkRootKeepsItsValue) {
  modMain.g_strNetworkRootDir = L"before";
  ReadNetworkRootDir();
  EXPECT_EQ(modMain.g_strNetworkRootDir, L"before");
  EXPECT_TRUE(messages.empty());
}

TEST_F(InitTest, WithoutAHostObjectTheNetworkRootKeepsItsValue) {
  modMain.g_strNetworkRootDir = L"before";
  modMain.g_objConfig.reset();
  ReadNetworkRootDir();
  EXPECT_EQ(modMain.g_strNetworkRootDir, L"before");
}

TEST_F(InitTest, AnIniFileWithoutTheKeyIsShownOnceAndInitSucceeds) {
  modMain.g_strNetworkRootDir = L"before";
  writeIni("[System]\nOther=1\n");
  EXPECT_TRUE(host.Init());
  EXPECT_EQ(modMain.g_strNetworkRootDir, L"");
  expectCriticalBox();
}

TEST_F(InitTest, AMissingIniFileIsShownInTheSameBox) {
  host.settings->Talora_INIFile = scratchPath(L"MISSING.INI");
  ReadNetworkRootDir();
  EXPECT_EQ(modMain.g_strNetworkRootDir, L"");
  expectCriticalBox();
}

TEST_F(InitTest, AValueOfBlanksIsShownInTheSameBox) {
  writeIni("[System]\nNetworkRootDir=\"   \"\n");
  ReadNetworkRootDir();
  EXPECT_EQ(modMain.g_strNetworkRootDir, L"");
  expectCriticalBox();
}

TEST_F(InitTest, TheIniFileOfTheObjectCreatedLastIsRead) {
  writeIni("[System]\nNetworkRootDir=first\n");
  const clsConfig other;
  other.settings->Talora_INIFile = scratchPath(L"OTHER.INI");
  writeBytes(other.settings->Talora_INIFile, "[System]\nNetworkRootDir=second\n");
  EXPECT_TRUE(host.Init());
  EXPECT_EQ(modMain.g_strNetworkRootDir, L"second");
}

TEST_F(InitTest, TheVersionIsThreePlainNumbers) {
  const std::wstring version = host.Version();
  std::vector<std::wstring> parts(1);
  for (const wchar_t c : version) {
    if (c == L'.') {
      parts.emplace_back();
    } else {
      parts.back() += c;
    }
  }
  ASSERT_EQ(parts.size(), 3U);
  for (const std::wstring& part : parts) EXPECT_EQ(part, std::to_wstring(std::stoi(part)));
}

TEST(LocalDirectoryTest, TheOfflinePathFollowsTheDirectoryAsItStands) {
  setLocalTaloraDirectory(L"C:\\Prog");
  EXPECT_EQ(modMain.g_strLocalTaloraDir, L"C:\\Prog");
  EXPECT_EQ(modMain.g_strOfflineDbPath, L"C:\\Prog\\OFFLINE\\SYSTEM.MDB");
  setLocalTaloraDirectory(L"C:\\Prog\\");
  EXPECT_EQ(modMain.g_strOfflineDbPath, L"C:\\Prog\\\\OFFLINE\\SYSTEM.MDB");
  setLocalTaloraDirectory(L"");
  EXPECT_EQ(modMain.g_strOfflineDbPath, L"\\OFFLINE\\SYSTEM.MDB");
}

class OfflineInitTest : public OfflineTest {
 protected:
  clsConfig host;
};

TEST_F(OfflineInitTest, StandAloneModeLoadsTheFileAndTheLocalComputer) {
  system::computerName = [] { return std::wstring(L"READ-08"); };
  EXPECT_TRUE(host.Init());
  EXPECT_TRUE(modMain.g_blnOfflineConnected);
  EXPECT_EQ(host.m_colPACSConfig->ColPACSConfigs->count(), 9U);
  ASSERT_EQ(host.m_colWorkstation->ColWorkStations->count(), 1U);
  EXPECT_EQ(host.m_colWorkstation->Item(1)->configID, 12);
  EXPECT_TRUE(messages.empty());
  EXPECT_TRUE(TestDatabaseConnection());
}

}  // namespace
}  // namespace tlpacscfg::test
