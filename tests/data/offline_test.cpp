#include "config/columns.h"
#include "config/pacs_configurations.h"
#include "data/direct_connections.h"
#include "data/mod_main.h"
#include "data/statements.h"
#include "harness/errors.h"
#include "harness/offline_fixture.h"
#include "harness/scratch.h"
#include "log/log_support.h"
#include "support/text.h"
#include "workstation/workstation.h"

namespace tlpacscfg::test {
namespace {

using OfflineConnectionTest = OfflineTest;

TEST_F(OfflineConnectionTest, TheLocalDatabaseIsConnected) {
  logOn();
  EXPECT_TRUE(ConnectToOfflineDatabase(config));
  EXPECT_TRUE(modMain.g_blnOfflineConnected);
  EXPECT_NE(modMain.g_conOffline, nullptr);
  EXPECT_FALSE(modMain.g_blnSqlConnected);
  EXPECT_TRUE(messages.empty());
  EXPECT_EQ(log(), debugLine(9, L"[TLPACSCFG] Connecting to offline database"));
}

TEST_F(OfflineConnectionTest, ASecondConnectWhileConnectedAnswersTrueWithoutALogLine) {
  connectOffline();
  logOn();
  EXPECT_TRUE(ConnectToOfflineDatabase(config));
  EXPECT_EQ(log(), "");
}

TEST_F(OfflineConnectionTest, WithoutALocalDirectoryThereIsNoDatabase) {
  modMain.g_strOfflineDbPath.clear();
  logOn();
  EXPECT_FALSE(ConnectToOfflineDatabase(config));
  EXPECT_FALSE(modMain.g_blnOfflineConnected);
  expectPlainBox(
      L"Local configuration database was not set or could not be found.  Cannot load PACS "
      L"configurations in Stand Alone mode");
  EXPECT_EQ(log(), debugLine(9, L"[TLPACSCFG] Connecting to offline database"));
}

TEST_F(OfflineConnectionTest, AMissingFileIsNotConnected) {
  setLocalTaloraDirectory(scratchPath(L"missing"));
  EXPECT_FALSE(ConnectToOfflineDatabase(config));
  expectPlainBox(
      L"Local configuration database was not set or could not be found.  Cannot load PACS "
      L"configurations in Stand Alone mode");
}

TEST_F(OfflineConnectionTest, AFileThatIsNoDatabaseShowsTheErrorBox) {
  install("This is no database.");
  EXPECT_FALSE(ConnectToOfflineDatabase(config));
  EXPECT_FALSE(modMain.g_blnOfflineConnected);
  ASSERT_EQ(messages.size(), 1U);
  const std::wstring& text = messages[0].text;
  EXPECT_TRUE(text.starts_with(L"Err.Description= ")) << toUtf8(text);
  EXPECT_NE(text.find(L"\r\nErr.Number "), std::wstring::npos) << toUtf8(text);
  EXPECT_TRUE(text.ends_with(L"\r\nUnable to connect to local database.")) << toUtf8(text);
  expectPlainBox(text);
}

TEST_F(OfflineConnectionTest, AnUnwritableLogIsShownLikeAnyOtherFailure) {
  logTo(scratchPath(L"missing/directory.log"));
  EXPECT_FALSE(ConnectToOfflineDatabase(config));
  expectPlainBox(
      L"Err.Description= Path/File access error\r\nErr.Number 75\r\nUnable to connect to local "
      L"database.");
}

TEST_F(OfflineConnectionTest, DisconnectingClosesTheDatabase) {
  connectOffline();
  const std::weak_ptr<odbc::Connection> connection = modMain.g_conOffline;
  DisconnectDatabase();
  EXPECT_FALSE(modMain.g_blnOfflineConnected);
  EXPECT_TRUE(connection.expired());
  EXPECT_TRUE(ConnectToOfflineDatabase(config));
}

TEST_F(OfflineConnectionTest, TheConnectionTestPassesOnlyAfterALoad) {
  connectOffline();
  EXPECT_FALSE(TestDatabaseConnection());
  colPACSConfiguration configurations;
  configurations.GetPACSConfigurations();
  EXPECT_TRUE(TestDatabaseConnection());
  EXPECT_EQ(configurations.GetNextConfigID(), 1);
}

TEST_F(OfflineConnectionTest, StatementsAreNeverRunAgainstTheDatabase) {
  connectOffline();
  EXPECT_NO_THROW(ExecuteSQL(L"DELETE FROM Interface_PACS_cfg"));
  EXPECT_EQ(readBytes(modMain.g_strOfflineDbPath), fixture);
}

using OfflineLoadingTest = OfflineTest;

TEST_F(OfflineLoadingTest, EveryConfigurationIsLoadedByAscendingIdentifier) {
  connectOffline();
  colPACSConfiguration configurations;
  configurations.GetPACSConfigurations();
  const std::vector<CsvRow> expected = csvRows("Interface_PACS_cfg");
  ASSERT_EQ(expected.size(), 8U);
  ASSERT_EQ(configurations.ColPACSConfigs->count(), 9U);
  std::vector<std::int16_t> identifiers;
  for (const auto& record : configurations.ColPACSConfigs->items()) {
    identifiers.push_back(record->configID);
  }
  EXPECT_EQ(identifiers, (std::vector<std::int16_t>{0, 1, 2, 3, 4, 5, 6, 7, 12}));
  EXPECT_TRUE(messages.empty());
}

TEST_F(OfflineLoadingTest, EveryCellOfEveryConfigurationIsTheOneInTheFile) {
  connectOffline();
  colPACSConfiguration configurations;
  configurations.GetPACSConfigurations();
  for (const CsvRow& row : csvRows("Interface_PACS_cfg")) {
    const auto record = configurations.ColPACSConfigs->find(*row.at("config_id"));
    ASSERT_NE(record, nullptr);
    for (const Column& column : columns()) {
      // The driver gives the date another form than the file of expected values.
      if (column.field == Field(&clsPACSConfiguration::LastUpdateDate)) continue;
      const auto& cell = row.at(toUtf8(column.name));
      EXPECT_EQ(textOf(valueOf(*record, column.field)), cell            ? *cell
                                                        : column.ifNull ? column.ifNull
                                                                        : L"")
          << toUtf8(column.name);
    }
    EXPECT_EQ(record->ExistingConfig, -1);
  }
}

TEST_F(OfflineLoadingTest, TheDateOfTheLastChangeIsReadFromTheFile) {
  connectOffline();
  colPACSConfiguration configurations;
  configurations.GetPACSConfigurations();
  EXPECT_EQ(configurations.Item(2)->LastUpdateDate, L"2012-10-24 14:05:09");
}

class OfflineWorkstationTest : public OfflineTest {
 protected:
  void loadAs(const std::wstring& computer) {
    system::computerName = [computer] { return computer; };
    connectOffline();
    workstations.GetOfflineWorkstationInfo();
  }

  void expectOnly(int configID, const std::wstring& name, int flag2) const {
    ASSERT_EQ(workstations.ColWorkStations->count(), 1U);
    EXPECT_EQ(workstations.Item(1)->configID, configID);
    EXPECT_EQ(workstations.Item(1)->WorkStation, name);
    EXPECT_EQ(workstations.Item(1)->Flag2, flag2);
    EXPECT_TRUE(messages.empty());
  }

  colWorkstation workstations;
};

TEST_F(OfflineWorkstationTest, OnlyTheLocalComputerIsLoaded) {
  loadAs(L"READ-08");
  expectOnly(12, L"READ-08", 1);
}

TEST_F(OfflineWorkstationTest, TheComputerIsFoundWithoutRegardToCaseAndKeepsItsOwnName) {
  loadAs(L"read-03");
  expectOnly(3, L"read-03", 0);
}

TEST_F(OfflineWorkstationTest, AQuoteInTheNameIsEscaped) {
  loadAs(L"O'BRIEN-PC");
  expectOnly(12, L"O'BRIEN-PC", 1);
}

TEST_F(OfflineWorkstationTest, ANullConfigurationIsNone) {
  loadAs(L"READ-24");
  expectOnly(0, L"READ-24", 0);
}

TEST_F(OfflineWorkstationTest, AConfigurationOfZeroIsNone) {
  loadAs(L"FRONTDESK");
  expectOnly(0, L"FRONTDESK", 0);
}

TEST_F(OfflineWorkstationTest, AComputerWithoutAConfigurationRowHasNone) {
  loadAs(L"NOCFG-01");
  expectOnly(0, L"NOCFG-01", 1);
}

TEST_F(OfflineWorkstationTest, EveryWorkstationOfTheFileIsFoundByItsName) {
  connectOffline();
  for (const CsvRow& row : csvRows("System_pc_names")) {
    const std::wstring name = *row.at("pc_name");
    system::computerName = [name] { return name; };
    colWorkstation one;
    one.GetOfflineWorkstationInfo();
    ASSERT_EQ(one.ColWorkStations->count(), 1U) << toUtf8(name);
    EXPECT_EQ(one.Item(1)->WorkStation, name);
    EXPECT_EQ(std::to_wstring(one.Item(1)->Flag2), *row.at("flag2")) << toUtf8(name);
  }
}

TEST_F(OfflineWorkstationTest, AComputerThatIsNotListedGivesAnEmptyCollection) {
  loadAs(L"UNKNOWN-PC");
  EXPECT_EQ(workstations.ColWorkStations->count(), 0U);
  EXPECT_TRUE(messages.empty());
}

TEST_F(OfflineWorkstationTest, TheResultSetIsClosedAndHeld) {
  loadAs(L"READ-01");
  ASSERT_NE(modMain.g_rsQuery, nullptr);
  EXPECT_RUNTIME_ERROR(modMain.g_rsQuery->EndOfData(), 91,
                       L"Object variable or With block variable not set");
}

TEST_F(OfflineWorkstationTest, WithoutADatabaseTheErrorIsShown) {
  workstations.GetOfflineWorkstationInfo();
  EXPECT_EQ(workstations.ColWorkStations->count(), 0U);
  expectPlainBox(L"Error 91 Error Desc Object variable or With block variable not set");
}

TEST_F(OfflineWorkstationTest, ASecondLoadShowsTheDuplicateName) {
  loadAs(L"READ-01");
  workstations.GetOfflineWorkstationInfo();
  EXPECT_EQ(workstations.ColWorkStations->count(), 1U);
  expectPlainBox(
      L"Error 457 Error Desc This key is already associated with an element of this collection");
}

TEST_F(OfflineWorkstationTest, ReadingDoesNotChangeTheFile) {
  loadAs(L"READ-01");
  colPACSConfiguration configurations;
  configurations.GetPACSConfigurations();
  configurations.SaveAllConfigurations();
  configurations.RemoveConfig(7);
  workstations.SaveAllWorkStationSettings();
  DisconnectDatabase();
  EXPECT_EQ(readBytes(modMain.g_strOfflineDbPath), fixture);
}

}  // namespace
}  // namespace tlpacscfg::test
