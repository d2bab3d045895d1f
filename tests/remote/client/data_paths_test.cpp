#include "config/columns.h"
#include "data/direct_connections.h"
#include "data/mod_main.h"
#include "data/tl_comm_client.h"
#include "host/host_object.h"
#include "remote/client/client_fixture.h"
#include "support/text.h"

namespace tlpacscfg::test {
namespace {

/// Loads the site on both data paths.
class DataPathsTest : public ServiceClientTest {
 protected:
  struct Site {
    bool loaded = false;
    std::vector<std::vector<std::wstring>> configurations;
    std::vector<std::wstring> workstations;
  };

  Site load(bool remotely) {
    modMain.g_blnTlCommClientEnabled = remotely;
    clsConfig host;
    *host.settings = config;
    Site loaded;
    loaded.loaded = host.Init();
    EXPECT_EQ(TlCommClientConnected(), remotely);
    if (host.m_colPACSConfig) {
      for (const auto& record : host.m_colPACSConfig->ColPACSConfigs->items()) {
        loaded.configurations.push_back(valuesOf(*record));
      }
    }
    if (host.m_colWorkstation) {
      for (const auto& workstation : host.m_colWorkstation->ColWorkStations->items()) {
        loaded.workstations.push_back(workstation->WorkStation + L" " +
                                      decimal(workstation->configID) + L" " +
                                      decimal(workstation->Flag2));
      }
    }
    return loaded;
  }

  static std::vector<std::wstring> valuesOf(const clsPACSConfiguration& record) {
    std::vector<std::wstring> values = {truthWord(record.ExistingConfig),
                                        truthWord(record.Changed)};
    for (const Column& column : columns()) {
      values.push_back(std::visit(
          []<class Value>(const Value& value) -> std::wstring {
            if constexpr (std::is_same_v<Value, std::wstring>) {
              return value;
            } else {
              return decimal(value);
            }
          },
          valueOf(record, column.field)));
    }
    return values;
  }

  void startService() {
    service.start();
    useService(service.port());
  }
};

TEST_F(DataPathsTest, EqualDatabasesLoadAsEqualCollections) {
  addConfiguration(1, L"description = 'Default', flag6 = 70000, string1 = 'a.xml'");
  addConfiguration(2, L"description = 'O''Brien', flag10 = NULL, flag2 = NULL, string1 = NULL");
  addConfiguration(7, L"description = '', bidirectional = -1, pacs_type = 3, flag18 = 1");
  site.run(L"UPDATE Interface_PACS_cfg SET response_filename = '" + std::wstring(2'000, L'r') +
           L"' WHERE config_id = 7");
  addWorkstation(L"READ-01");
  addWorkstation(L"  READ-02  ", L"0");
  addWorkstation(L"READ-03", L"-5");
  assign(L"READ-01", L"'7'");
  assign(L"READ-03", L"'0'");
  startService();
  const Site direct = load(false);
  const Site remote = load(true);
  ASSERT_TRUE(direct.loaded);
  ASSERT_TRUE(remote.loaded);
  EXPECT_EQ(direct.configurations.size(), 4U);
  EXPECT_EQ(direct.configurations, remote.configurations);
  EXPECT_EQ(direct.workstations,
            (std::vector<std::wstring>{L"READ-01 7 1", L"READ-02 0 0", L"READ-03 0 -5"}));
  EXPECT_EQ(direct.workstations, remote.workstations);
  EXPECT_TRUE(messages.empty());
}

TEST_F(DataPathsTest, AnEmptyTableLoadsAsThePlaceholderAlone) {
  startService();
  EXPECT_EQ(load(true).configurations.size(), 1U);
  EXPECT_EQ(load(true).workstations.size(), 0U);
}

TEST_F(DataPathsTest, AnAssignmentThatIsNoNumberIsNoneOnTheRemoteWayOnly) {
  addWorkstation(L"READ-01");
  assign(L"READ-01", L"'none'");
  startService();
  EXPECT_EQ(load(true).workstations, std::vector<std::wstring>{L"READ-01 0 1"});
  EXPECT_TRUE(messages.empty());
  EXPECT_EQ(load(false).workstations.size(), 0U);
  expectPlainBox(L"Error 13 Error Desc Type mismatch");
}

TEST_F(DataPathsTest, AnEmptyAssignmentIsNoneOnTheRemoteWayOnly) {
  addWorkstation(L"READ-01");
  assign(L"READ-01", L"''");
  startService();
  EXPECT_EQ(load(true).workstations, std::vector<std::wstring>{L"READ-01 0 1"});
  EXPECT_TRUE(messages.empty());
  EXPECT_EQ(load(false).workstations.size(), 0U);
  expectPlainBox(L"Error 13 Error Desc Type mismatch");
}

TEST_F(DataPathsTest, AMissingAssignmentIsNoneOnBothWays) {
  addWorkstation(L"READ-01");
  assign(L"READ-01", L"NULL");
  startService();
  EXPECT_EQ(load(true).workstations, std::vector<std::wstring>{L"READ-01 0 1"});
  EXPECT_EQ(load(false).workstations, std::vector<std::wstring>{L"READ-01 0 1"});
}

TEST_F(DataPathsTest, NumbersAreGivenAlikeOnBothWays) {
  startService();
  for (const std::wstring statement : {L"UPDATE Interface_PACS_cfg SET flag2 = 1",
                                       L"INSERT INTO Interface_PACS_cfg (config_id) VALUES(1)",
                                       L"INSERT INTO Interface_PACS_cfg (config_id) VALUES(41)"}) {
    site.run(statement);
    modMain.g_blnTlCommClientEnabled = true;
    ASSERT_TRUE(ConnectTlCommClient(config));
    colPACSConfiguration configurations;
    const std::int16_t remote = configurations.GetNextConfigID();
    DisconnectDatabase();
    ASSERT_TRUE(ConnectToDatabase(config));
    EXPECT_EQ(remote, configurations.GetNextConfigID()) << statement;
    DisconnectDatabase();
  }
}

TEST_F(DataPathsTest, SavingAndDeletingReachTheDatabaseThroughTheService) {
  addConfiguration(1);
  addWorkstation(L"READ-01");
  startService();
  modMain.g_blnTlCommClientEnabled = true;
  clsConfig host;
  *host.settings = config;
  ASSERT_TRUE(host.Init());
  const auto record = host.m_colPACSConfig->Item(2);
  ASSERT_TRUE(record);
  record->Description = L"D'Arcy \u65e5\u672c";
  record->SaveConfiguration();
  EXPECT_EQ(site.value(L"select description from Interface_PACS_cfg"), L"D'Arcy \u65e5\u672c");
  host.m_colWorkstation->Item(1)->configID = 1;
  host.m_colWorkstation->SaveAllWorkStationSettings();
  EXPECT_EQ(site.value(L"select key_value from System_workstation_cfg where pc_name = 'READ-01'"),
            L"1");
  host.m_colPACSConfig->RemoveConfig(1);
  EXPECT_EQ(site.value(L"select count(*) from Interface_PACS_cfg"), L"0");
  EXPECT_EQ(site.value(L"select count(*) from System_offline_db_updates"), L"3");
  EXPECT_TRUE(messages.empty());
}

TEST_F(DataPathsTest, AClientThatCannotConnectGivesWayToTheDirectConnection) {
  addConfiguration(1);
  set(L"Token", L"another-token-altogether");
  startService();
  logOn();
  modMain.g_blnTlCommClientEnabled = true;
  clsConfig host;
  *host.settings = config;
  EXPECT_TRUE(host.Init());
  EXPECT_FALSE(TlCommClientConnected());
  EXPECT_TRUE(modMain.g_blnSqlConnected);
  EXPECT_EQ(host.m_colPACSConfig->ColPACSConfigs->count(), 2U);
  EXPECT_TRUE(messages.empty());
  EXPECT_EQ(log(), debugLine(9, L"[TLPACSCFG] Connecting to TlCommClient") +
                       debugLine(10, L"[TLPACSCFG] Storing database name:Talora") +
                       errorBlock(L"[TLPACSCFG] TlCommClient could not connect: The token is "
                                  L"wrong.") +
                       debugLine(9, L"[TLPACSCFG] Connecting to database"));
}

TEST_F(DataPathsTest, AnEmptyHostAddressGivesWayToTheDirectConnection) {
  modMain.g_blnTlCommClientEnabled = true;
  clsConfig host;
  *host.settings = config;
  host.settings->TlCommClientHostIP = L"";
  EXPECT_TRUE(host.Init());
  EXPECT_TRUE(modMain.g_blnSqlConnected);
}

TEST_F(DataPathsTest, AServiceThatVanishesWhileLoadingIsReported) {
  startService();
  modMain.g_blnTlCommClientEnabled = true;
  ASSERT_TRUE(ConnectTlCommClient(config));
  service.end("KILL");
  colPACSConfiguration configurations;
  configurations.GetPACSConfigurations();
  EXPECT_EQ(configurations.ColPACSConfigs->count(), 0U);
  colWorkstation workstations;
  workstations.GetWorkstationsList();
  EXPECT_EQ(workstations.ColWorkStations->count(), 0U);
  ASSERT_EQ(messages.size(), 2U);
  EXPECT_EQ(messages[0].text, L"The workstation list request failed.");
  EXPECT_EQ(messages[1].text, L"Unable to get the workstation list information.");
}

}  // namespace
}  // namespace tlpacscfg::test
