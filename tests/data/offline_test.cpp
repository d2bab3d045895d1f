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
    const auto text = [&](const char* column) { return row.at(column).value_or(L""); };
    const auto number = [&](const char* column, int ifNull = 0) {
      const auto& cell = row.at(column);
      return cell ? std::stoi(*cell) : ifNull;
    };
    EXPECT_EQ(record->PACSType, number("pacs_type"));
    EXPECT_EQ(record->Description, text("description"));
    EXPECT_EQ(record->RequestFileName, text("request_filename"));
    EXPECT_EQ(record->ResponseFileName, text("response_filename"));
    EXPECT_EQ(record->BiDirectional, number("bidirectional"));
    EXPECT_EQ(record->ResPausedJobs, number("response_for_paused_jobs"));
    EXPECT_EQ(record->ResAbortedJobs, number("response_for_aborted_jobs"));
    EXPECT_EQ(record->ResNonRequestJobs, number("response_for_nonrequests"));
    EXPECT_EQ(record->CofirmStartTrigger, number("ins_ovr_before_pacs"));
    EXPECT_EQ(record->ManualEntryTrigger, number("flag1"));
    EXPECT_EQ(record->UserMappingOpt, number("user_mapping_option"));
    EXPECT_EQ(record->RequestPasswordOpt, number("pacs_request_password"));
    EXPECT_EQ(record->ResponsePasswordOpt, number("pacs_response_password"));
    EXPECT_EQ(record->LastUpdateUserID, text("last_user_id"));
    EXPECT_NE(record->LastUpdateDate, L"");
    EXPECT_EQ(record->CustomXMLFile, text("string1"));
    EXPECT_EQ(record->ApplicableFields, text("string2"));
    EXPECT_EQ(record->ResponseType, number("flag2"));
    EXPECT_EQ(record->PollingOption, number("flag3"));
    EXPECT_EQ(record->PollingAction, number("flag4"));
    EXPECT_EQ(record->UpdateXMLData, number("flag5"));
    EXPECT_EQ(record->Port, number("flag6"));
    EXPECT_EQ(record->DeleteFlag, number("flag7"));
    EXPECT_EQ(record->ContextUpdate, number("flag8"));
    EXPECT_EQ(record->ContextChangeOption, number("flag9"));
    EXPECT_EQ(record->PollingDisplayField, number("flag10", 1));
    EXPECT_EQ(record->MultiAccessContext, number("flag11"));
    EXPECT_EQ(record->MultiAccessFields, text("string3"));
    EXPECT_EQ(record->ContextXMLFile, text("string4"));
    EXPECT_EQ(record->RequestDefaultText, number("flag12"));
    EXPECT_EQ(record->ResponseReportText, number("flag13"));
    EXPECT_EQ(record->CheckFileDateTime, number("flag14"));
    EXPECT_EQ(record->PreProcessFile, number("flag15"));
    EXPECT_EQ(record->CloseDictationEnabled, number("flag16"));
    EXPECT_EQ(record->CloseDictationFile, text("string5"));
    EXPECT_EQ(record->CloseDictationAction, number("flag17"));
    EXPECT_EQ(record->SendAbortOnFailedOpen, number("flag18"));
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
  EXPECT_TRUE(workstations.ColWorkStations->empty());
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
  EXPECT_TRUE(workstations.ColWorkStations->empty());
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
