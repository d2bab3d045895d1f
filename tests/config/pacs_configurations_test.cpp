#include "config/pacs_configurations.h"
#include "data/direct_connections.h"
#include "data/mod_main.h"
#include "harness/core_fixture.h"
#include "harness/errors.h"
#include "harness/fake_client.h"
#include "harness/records.h"
#include "log/log_support.h"
#include "odbc/error.h"

namespace tlpacscfg::test {
namespace {

class EditingTest : public SiteTest {
 protected:
  EditingTest() { modMain.g_objConfig = std::make_shared<HostSettings>(config); }

  void load(std::initializer_list<int> ids) {
    for (const int id : ids) addConfiguration(id);
    connect();
    configurations.GetPACSConfigurations();
  }

  std::vector<std::int16_t> identifiers() const {
    std::vector<std::int16_t> found;
    for (const auto& record : configurations.ColPACSConfigs->items()) {
      found.push_back(record->configID);
    }
    return found;
  }

  std::wstring count(const std::wstring& table) const {
    return *site.value(L"SELECT count(*) FROM " + table);
  }

  colPACSConfiguration configurations;
};

using Identifiers = std::vector<std::int16_t>;

TEST_F(EditingTest, AnEmptyTableGivesTheNumberOne) {
  connect();
  EXPECT_EQ(configurations.GetNextConfigID(), 1);
  EXPECT_EQ(configurations.NextConfigID, 1);
}

TEST_F(EditingTest, TheNextNumberFollowsTheHighestAndFillsNoGap) {
  load({1, 2, 7});
  EXPECT_EQ(configurations.GetNextConfigID(), 8);
  EXPECT_EQ(configurations.NextConfigID, 8);
}

TEST_F(EditingTest, NumberingIsLogged) {
  connect();
  logOn(10);
  configurations.GetNextConfigID();
  EXPECT_EQ(log(), debugLine(9, L"[TLPACSCFG] Getting next config ID"));
}

TEST_F(EditingTest, TheNumberAfter32767Overflows) {
  load({32767});
  EXPECT_OVERFLOW(configurations.GetNextConfigID());
}

TEST_F(EditingTest, DatabaseErrorsGiveTheNumberOne) {
  connect();
  site.run(L"DROP TABLE Interface_PACS_cfg");
  EXPECT_EQ(configurations.GetNextConfigID(), 1);
}

TEST_F(EditingTest, WithoutAConnectionTheNumberIsOne) {
  EXPECT_EQ(configurations.GetNextConfigID(), 1);
}

TEST_F(EditingTest, WithoutAServerTheSharedResultSetIsNumbered) {
  Table held(1);
  for (const wchar_t* id : {L"3", L"9"}) held.append(id);
  modMain.g_rsQuery = std::make_unique<ResultSet>(held);
  EXPECT_EQ(configurations.GetNextConfigID(), 10);
  EXPECT_EQ(configurations.GetNextConfigID(), 1) << "The result set is closed now.";
}

TEST_F(EditingTest, TheRemoteClientIsAskedForTheHighestNumber) {
  configurations.NextConfigID = 5;
  logOn(10);
  const auto client = connectFakeClient(L"talora");
  client->table = tableOf({{L"41"}});
  EXPECT_EQ(configurations.GetNextConfigID(), 42);
  EXPECT_EQ(configurations.NextConfigID, 5) << "The remote path leaves the property alone.";
  const std::wstring statement =
      L"SELECT TOP 1 config_id FROM Interface_PACS_cfg ORDER BY config_id DESC";
  EXPECT_EQ(client->calls, (std::vector<std::wstring>{L"SQLQueryTable(talora, " + statement + L")",
                                                      L"CheckForError()", L"GetTableData(0)",
                                                      L"CheckForError()"}));
  EXPECT_EQ(log(), debugLine(9, L"[TLPACSCFG] Getting next config ID using TlCommClient") +
                       debugLine(9, L"[TLPACSCFG] Querying DB using TlCommClient") +
                       debugLine(10, L"[TLPACSCFG] Query:\r\n" + statement) +
                       debugLine(9, L"[TLPACSCFG] Getting dataset from TlCommClient") +
                       debugLine(10, L"[TLPACSCFG] DataIndex:1"));
}

TEST_F(EditingTest, AnEmptyRemoteTableGivesTheNumberOne) {
  const auto client = connectFakeClient();
  EXPECT_EQ(configurations.GetNextConfigID(), 1);
  client->table = Table(1);
  EXPECT_EQ(configurations.GetNextConfigID(), 1);
}

TEST_F(EditingTest, ARemoteTableIsReadWhateverTheQueryAnswered) {
  const auto client = connectFakeClient();
  client->tableCount = 0;
  client->table = tableOf({{L"41"}});
  EXPECT_EQ(configurations.GetNextConfigID(), 42);
}

TEST_F(EditingTest, ARemoteTableThatCameWithAnErrorIsReadToo) {
  const auto client = connectFakeClient();
  client->table = tableOf({{L"41"}});
  client->errors = {L"", L"half of it"};
  EXPECT_EQ(configurations.GetNextConfigID(), 42);
}

TEST_F(EditingTest, TheRemoteNumberAfter32767Overflows) {
  const auto client = connectFakeClient();
  client->table = tableOf({{L"32767"}});
  EXPECT_OVERFLOW(configurations.GetNextConfigID());
}

TEST_F(EditingTest, ARemoteIdentifierThatIsNotANumberIsAnError) {
  const auto client = connectFakeClient();
  client->table = tableOf({{L"x"}});
  EXPECT_TYPE_MISMATCH(configurations.GetNextConfigID());
  client->table = tableOf({{std::nullopt}});
  EXPECT_RUNTIME_ERROR(configurations.GetNextConfigID(), 94, L"Invalid use of Null");
}

TEST_F(EditingTest, AKnownIdentifierMakesItsRecordTheCurrentOne) {
  load({1, 2});
  configurations.SetCurrentConfig(2);
  EXPECT_EQ(configurations.CurrentPACSConfig, configurations.Item(3));
  configurations.SetCurrentConfig(0);
  EXPECT_EQ(configurations.CurrentPACSConfig, configurations.Item(1));
}

TEST_F(EditingTest, AnUnknownIdentifierGivesAFreshRecordOutsideTheCollection) {
  load({1});
  configurations.SetCurrentConfig(1);
  configurations.SetCurrentConfig(99);
  ASSERT_NE(configurations.CurrentPACSConfig, nullptr);
  expectEqualRecords(*configurations.CurrentPACSConfig, clsPACSConfiguration());
  EXPECT_EQ(identifiers(), (Identifiers{0, 1}));
}

TEST_F(EditingTest, AnAddedRecordIsTheCallersOwn) {
  const auto record = std::make_shared<clsPACSConfiguration>();
  record->configID = 5;
  configurations.AddCurrenttoCollection(record);
  EXPECT_EQ(configurations.Item(1), record);
  EXPECT_EQ(configurations.ColPACSConfigs->find(L"5"), record);
}

TEST_F(EditingTest, ATakenIdentifierIsRefused) {
  load({5});
  const auto record = std::make_shared<clsPACSConfiguration>();
  record->configID = 5;
  EXPECT_RUNTIME_ERROR(configurations.AddCurrenttoCollection(record), 457,
                       L"This key is already associated with an element of this collection");
  EXPECT_EQ(identifiers(), (Identifiers{0, 5}));
}

TEST_F(EditingTest, ThePlaceholderIsTheFirstItemAfterALoad) {
  load({1, 7});
  EXPECT_EQ(configurations.GetItemNumber(0), 1);
  EXPECT_EQ(configurations.GetItemNumber(7), 3);
  EXPECT_EQ(configurations.GetItemNumber(2), 0);
}

TEST_F(EditingTest, AnEmptyCollectionHasNoPositions) {
  EXPECT_EQ(configurations.GetItemNumber(0), 0);
}

TEST_F(EditingTest, RemovingDeletesTheRowAndTheRecord) {
  load({1, 2, 3});
  configurations.RemoveConfig(2);
  EXPECT_EQ(identifiers(), (Identifiers{0, 1, 3}));
  EXPECT_EQ(site.rows(L"SELECT config_id FROM Interface_PACS_cfg ORDER BY config_id"),
            (ProbeRows{{L"1"}, {L"3"}}));
  EXPECT_EQ(count(L"System_offline_db_updates"), L"1");
  EXPECT_TRUE(messages.empty());
}

TEST_F(EditingTest, RemovingAnUnknownIdentifierSendsTheStatementAndThenFails) {
  load({1});
  site.run(
      L"INSERT INTO Interface_PACS_cfg SELECT 9, pacs_type, description, request_filename, "
      L"response_filename, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, '', '', '', 0, 0, 0, 0, 0, 0, 0, 0, "
      L"0, 0, '', '', 0, 0, 0, 0, 0, '', 0, 0 FROM Interface_PACS_cfg");
  configurations.RemoveConfig(9);
  EXPECT_EQ(count(L"Interface_PACS_cfg"), L"1");
  EXPECT_EQ(count(L"System_offline_db_updates"), L"1");
  EXPECT_EQ(identifiers(), (Identifiers{0, 1}));
  expectPlainBox(
      L"Error Deleting configID = 9 from the DB. \r\nError = 9 Error Description = Subscript out "
      L"of range");
}

TEST_F(EditingTest, ARowThatCannotBeDeletedKeepsItsRecord) {
  load({1});
  site.run(
      L"CREATE TRIGGER keep BEFORE DELETE ON Interface_PACS_cfg BEGIN SELECT RAISE(ABORT, "
      L"'kept for good'); END");
  configurations.RemoveConfig(1);
  EXPECT_EQ(identifiers(), (Identifiers{0, 1}));
  EXPECT_EQ(count(L"System_offline_db_updates"), L"0");
  ASSERT_EQ(messages.size(), 1U);
  EXPECT_TRUE(messages[0].text.starts_with(
      L"Error Deleting configID = 1 from the DB. \r\nError = 40002 Error Description = "));
  EXPECT_NE(messages[0].text.find(L"kept for good"), std::wstring::npos);
}

TEST_F(EditingTest, TheRemoteDeleteHasItsQuotesAndALowerCaseTableName) {
  load({1, 2});
  const auto client = connectFakeClient(L"talora");
  configurations.RemoveConfig(2);
  EXPECT_EQ(client->calls,
            (std::vector<std::wstring>{
                L"SQLExecuteText(talora, delete from interface_PACS_cfg where config_id = '2')",
                L"SQLExecuteText(talora, " + kMark + L")"}));
  EXPECT_EQ(identifiers(), (Identifiers{0, 1}));
  EXPECT_EQ(count(L"Interface_PACS_cfg"), L"2");
}

TEST_F(EditingTest, ARemoteDeleteThatFailsStillRemovesTheRecord) {
  load({1});
  connectFakeClient()->executes = false;
  configurations.RemoveConfig(1);
  EXPECT_EQ(identifiers(), (Identifiers{0}));
  EXPECT_TRUE(messages.empty());
}

TEST_F(EditingTest, WithoutADatabaseOnlyTheRecordIsRemoved) {
  load({1});
  DisconnectDatabase();
  logOn();
  configurations.RemoveConfig(1);
  EXPECT_EQ(identifiers(), (Identifiers{0}));
  EXPECT_EQ(count(L"Interface_PACS_cfg"), L"1");
  EXPECT_EQ(log(), "");
}

TEST_F(EditingTest, SavingAllWithOnlyThePlaceholderIssuesNoStatement) {
  load({});
  logOn();
  configurations.SaveAllConfigurations();
  EXPECT_EQ(log(), "");
  EXPECT_EQ(count(L"System_offline_db_updates"), L"0");
}

TEST_F(EditingTest, SavingAllWritesEveryRecordAgain) {
  load({1, 2});
  const auto added = std::make_shared<clsPACSConfiguration>();
  added->configID = 3;
  added->LastUpdateUserID = L"12";
  configurations.AddCurrenttoCollection(added);
  configurations.Item(2)->Deleted = true;
  configurations.SaveAllConfigurations();
  EXPECT_EQ(site.rows(L"SELECT config_id, last_user_id FROM Interface_PACS_cfg ORDER BY config_id"),
            (ProbeRows{{L"1", L"4711"}, {L"2", L"4711"}, {L"3", L"12"}}));
  EXPECT_EQ(count(L"System_offline_db_updates"), L"3");
}

TEST_F(EditingTest, ASaveThatFailsEndsTheSavingOfAll) {
  load({1, 2});
  configurations.Item(2)->CustomXMLFile = L"'";
  EXPECT_THROW(configurations.SaveAllConfigurations(), odbc::Error);
  EXPECT_EQ(count(L"System_offline_db_updates"), L"0");
}

TEST_F(EditingTest, RecordsBelowOneAreNeverSaved) {
  load({});
  const auto added = std::make_shared<clsPACSConfiguration>();
  added->configID = -3;
  configurations.AddCurrenttoCollection(added);
  configurations.SaveAllConfigurations();
  EXPECT_EQ(count(L"Interface_PACS_cfg"), L"0");
}

TEST_F(EditingTest, ADeepCopySharesNoRecord) {
  load({1, 2});
  configurations.Item(2)->Changed = -1;
  const auto copy = configurations.deepCopy();
  ASSERT_EQ(copy->ColPACSConfigs->count(), 3U);
  for (const std::int64_t position : {1, 2, 3}) {
    EXPECT_NE(copy->Item(position), configurations.Item(position));
  }
  clsPACSConfiguration expected = *configurations.Item(2);
  expected.Changed = 0;
  expectEqualRecords(*copy->Item(2), expected);
  EXPECT_EQ(copy->ColPACSConfigs->find(L"2"), copy->Item(3));
}

}  // namespace
}  // namespace tlpacscfg::test
