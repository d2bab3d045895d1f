#include "config/columns.h"
#include "config/pacs_configurations.h"
#include "data/direct_connections.h"
#include "data/mod_main.h"
#include "harness/core_fixture.h"
#include "harness/errors.h"
#include "harness/fake_client.h"
#include "harness/records.h"
#include "log/log_support.h"
#include "odbc/error.h"
#include "support/text.h"

namespace tlpacscfg::test {
namespace {

constexpr const wchar_t* kDuplicateKey =
    L"This key is already associated with an element of this collection";

class LoadingTest : public SiteTest {
 protected:
  /// Makes the table accept anything, duplicate identifiers included.
  void dropConstraints() const {
    site.runAll({L"ALTER TABLE Interface_PACS_cfg RENAME TO strict",
                 L"CREATE TABLE Interface_PACS_cfg AS SELECT * FROM strict"});
  }

  std::vector<std::int16_t> identifiers() const {
    std::vector<std::int16_t> found;
    for (const auto& record : configurations.ColPACSConfigs->items()) {
      found.push_back(record->configID);
    }
    return found;
  }

  colPACSConfiguration configurations;
};

using Identifiers = std::vector<std::int16_t>;

TEST_F(LoadingTest, AnEmptyTableGivesOnlyThePlaceholder) {
  connect();
  configurations.GetPACSConfigurations();
  ASSERT_EQ(identifiers(), (Identifiers{0}));
  expectEqualRecords(*configurations.Item(1), clsPACSConfiguration());
  EXPECT_EQ(configurations.ColPACSConfigs->find(L"0"), configurations.Item(1));
}

TEST_F(LoadingTest, StoredConfigurationsFollowThePlaceholderByIdentifier) {
  for (const int id : {7, 1, 12, 2}) addConfiguration(id);
  connect();
  configurations.GetPACSConfigurations();
  EXPECT_EQ(identifiers(), (Identifiers{0, 1, 2, 7, 12}));
  EXPECT_EQ(configurations.ColPACSConfigs->find(L"12")->configID, 12);
}

TEST_F(LoadingTest, EveryColumnIsLoadedIntoItsProperty) {
  connect();
  clsPACSConfiguration saved = distinctRecord();
  saved.SaveConfiguration();
  configurations.GetPACSConfigurations();
  ASSERT_EQ(identifiers(), (Identifiers{0, 101}));
  clsPACSConfiguration expected = distinctRecord();
  expected.ExistingConfig = -1;
  expected.LastUpdateDate = kNowInRows;
  expectEqualRecords(*configurations.Item(2), expected);
}

TEST_F(LoadingTest, TheDirectPathWritesNothingToTheLog) {
  connect();
  logOn();
  configurations.GetPACSConfigurations();
  EXPECT_EQ(log(), "");
}

TEST_F(LoadingTest, NullInALaterColumnIsReplacedByItsSubstitute) {
  addConfiguration(1);
  std::wstring nulls;
  for (int i = 1; i <= 5; ++i) nulls += L"string" + std::to_wstring(i) + L" = NULL, ";
  for (int i = 2; i <= 18; ++i) nulls += L"flag" + std::to_wstring(i) + L" = NULL, ";
  site.run(L"UPDATE Interface_PACS_cfg SET " + nulls + L"flag1 = 8");
  connect();
  configurations.GetPACSConfigurations();
  clsPACSConfiguration expected;
  expected.configID = 1;
  expected.ManualEntryTrigger = 8;
  expected.PollingDisplayField = 1;
  expected.LastUpdateUserID = L"1";
  expected.LastUpdateDate = L"2012-10-24 14:05:09";
  expected.ExistingConfig = -1;
  expectEqualRecords(*configurations.Item(2), expected);
}

TEST_F(LoadingTest, NullInAnOlderColumnFailsTheLoadAndKeepsTheRowsBefore) {
  for (std::size_t position = 0; position <= 15; ++position) {
    const std::wstring column = columnsInLoadOrder()[position]->name;
    site.run(L"DELETE FROM Interface_PACS_cfg");
    addConfiguration(1);
    addConfiguration(2);
    if (position == 0) continue;
    site.run(L"UPDATE Interface_PACS_cfg SET " + column + L" = NULL WHERE config_id = 2");
    modMain.g_blnSqlConnected = false;
    connect();
    configurations = colPACSConfiguration();
    EXPECT_RUNTIME_ERROR(configurations.GetPACSConfigurations(), 94, L"Invalid use of Null")
    EXPECT_EQ(identifiers(), (Identifiers{0, 1})) << toUtf8(column);
  }
}

TEST_F(LoadingTest, ANullIdentifierFailsTheLoad) {
  addConfiguration(1);
  dropConstraints();
  site.run(L"UPDATE Interface_PACS_cfg SET config_id = NULL");
  connect();
  EXPECT_RUNTIME_ERROR(configurations.GetPACSConfigurations(), 94, L"Invalid use of Null");
}

TEST_F(LoadingTest, ANumberBeyond16BitsFailsTheLoadInEveryColumnButThePort) {
  for (const Column* column : columnsInLoadOrder()) {
    if (isText(column->field)) continue;
    site.run(L"DELETE FROM Interface_PACS_cfg");
    addConfiguration(1, std::wstring(column->name) + L" = 32768");
    modMain.g_blnSqlConnected = false;
    connect();
    configurations = colPACSConfiguration();
    if (column->property == std::wstring(L"Port")) {
      configurations.GetPACSConfigurations();
      EXPECT_EQ(configurations.Item(2)->Port, 32768);
    } else {
      EXPECT_RUNTIME_ERROR(configurations.GetPACSConfigurations(), 6, L"Overflow")
      EXPECT_EQ(identifiers(), (Identifiers{0})) << toUtf8(column->name);
    }
  }
}

TEST_F(LoadingTest, APortBeyond32BitsFailsTheLoad) {
  addConfiguration(1, L"flag6 = 2147483648");
  connect();
  EXPECT_OVERFLOW(configurations.GetPACSConfigurations());
}

TEST_F(LoadingTest, ATextInANumericColumnFailsTheLoad) {
  addConfiguration(1, L"flag2 = 'many'");
  connect();
  EXPECT_TYPE_MISMATCH(configurations.GetPACSConfigurations());
}

TEST_F(LoadingTest, AnEmptyTextInANumericColumnFailsTheLoad) {
  addConfiguration(1, L"flag10 = ''");
  connect();
  EXPECT_TYPE_MISMATCH(configurations.GetPACSConfigurations());
}

TEST_F(LoadingTest, AStoredIdentifierZeroCollidesWithThePlaceholder) {
  addConfiguration(0);
  addConfiguration(1);
  connect();
  EXPECT_RUNTIME_ERROR(configurations.GetPACSConfigurations(), 457, kDuplicateKey);
  EXPECT_EQ(identifiers(), (Identifiers{0}));
}

TEST_F(LoadingTest, ADuplicateIdentifierFailsTheLoad) {
  addConfiguration(1);
  dropConstraints();
  site.run(L"INSERT INTO Interface_PACS_cfg SELECT * FROM strict");
  connect();
  EXPECT_RUNTIME_ERROR(configurations.GetPACSConfigurations(), 457, kDuplicateKey);
  EXPECT_EQ(identifiers(), (Identifiers{0, 1}));
}

TEST_F(LoadingTest, ASecondLoadIntoTheSameCollectionCollides) {
  addConfiguration(1);
  connect();
  configurations.GetPACSConfigurations();
  EXPECT_RUNTIME_ERROR(configurations.GetPACSConfigurations(), 457, kDuplicateKey);
  EXPECT_EQ(identifiers(), (Identifiers{0, 1}));
}

TEST_F(LoadingTest, AMissingTableFailsTheLoadWithoutAPlaceholder) {
  site.run(L"DROP TABLE Interface_PACS_cfg");
  connect();
  EXPECT_THROW(configurations.GetPACSConfigurations(), odbc::Error);
  EXPECT_TRUE(identifiers().empty());
}

TEST_F(LoadingTest, WithoutAConnectionNothingIsLoadedNotEvenThePlaceholder) {
  configurations.GetPACSConfigurations();
  EXPECT_TRUE(identifiers().empty());
}

TEST_F(LoadingTest, StandAloneModeNeverReadsTheServer) {
  addConfiguration(1);
  connect();
  connectFakeClient();
  modMain.g_blnUseOfflineDB = true;
  configurations.GetPACSConfigurations();
  EXPECT_TRUE(identifiers().empty());
}

TEST_F(LoadingTest, TheResultSetStaysInTheSharedSlotClosed) {
  connect();
  configurations.GetPACSConfigurations();
  ASSERT_NE(modMain.g_rsQuery, nullptr);
  EXPECT_RUNTIME_ERROR(modMain.g_rsQuery->EndOfData(), 91,
                       L"Object variable or With block variable not set");
}

TEST_F(LoadingTest, TextsOfAnyLengthAndScriptComeBackUnchanged) {
  std::wstring longText;
  while (longText.size() < 10'000) longText += L"0123456789 Zürich – Ж ";
  longText += L"end  ";
  clsPACSConfiguration record;
  record.configID = 1;
  record.Description = longText;
  record.RequestFileName = L"";
  record.ResponseFileName = L"MSH|^~\\&|\r\nPID|\ttab\r\n";
  record.CustomXMLFile = L"  blanks around  ";
  record.ApplicableFields = L"\xFFFD\x4E2D\x20AC";
  connect();
  record.SaveConfiguration();
  clsPACSConfiguration second;
  second.configID = 2;
  second.CloseDictationFile = longText + longText;
  second.SaveConfiguration();

  configurations.GetPACSConfigurations();
  ASSERT_EQ(identifiers(), (Identifiers{0, 1, 2}));
  const auto loaded = configurations.Item(2);
  EXPECT_EQ(loaded->Description, record.Description);
  EXPECT_EQ(loaded->RequestFileName, record.RequestFileName);
  EXPECT_EQ(loaded->ResponseFileName, record.ResponseFileName);
  EXPECT_EQ(loaded->CustomXMLFile, record.CustomXMLFile);
  EXPECT_EQ(loaded->ApplicableFields, record.ApplicableFields);
  EXPECT_EQ(configurations.Item(3)->CloseDictationFile, second.CloseDictationFile);
}

TEST_F(LoadingTest, AllIdentifiersOf16BitsAreLoaded) {
  site.run(
      L"WITH RECURSIVE ids(id) AS (SELECT 1 UNION ALL SELECT id + 1 FROM ids WHERE id < 32767) "
      L"INSERT INTO Interface_PACS_cfg SELECT id, 0, 'description of ' || id, '', '', 0, 0, 0, 0, "
      L"0, 0, 0, 0, 0, 1, '2012-10-24 14:05:09', '', '', 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, '', '', 0, "
      L"0, 0, 0, 0, '', 0, 0 FROM ids");
  connect();
  configurations.GetPACSConfigurations();
  EXPECT_EQ(configurations.ColPACSConfigs->count(), 32768U);
  EXPECT_EQ(configurations.Item(32768)->Description, L"description of 32767");
  EXPECT_EQ(configurations.ColPACSConfigs->find(L"32767")->configID, 32767);
}

TEST_F(LoadingTest, ItemIsNullOutsideTheCollection) {
  connect();
  configurations.GetPACSConfigurations();
  EXPECT_EQ(configurations.Item(1)->configID, 0);
  for (const std::int64_t position : {-1, 0, 2, 70000}) {
    EXPECT_EQ(configurations.Item(position), nullptr);
  }
}

class RemoteLoadingTest : public LoadingTest {
 protected:
  RemoteLoadingTest() { logOn(7); }

  std::shared_ptr<ClientScript> client = connectFakeClient(L"talora");
};

TEST_F(RemoteLoadingTest, TheClientIsSentTheLoadingStatement) {
  client->table = tableOf({distinctCells()});
  configurations.GetPACSConfigurations();
  ASSERT_EQ(identifiers(), (Identifiers{0, 101}));
  clsPACSConfiguration expected = distinctRecord();
  expected.ExistingConfig = -1;
  expectEqualRecords(*configurations.Item(2), expected);
  EXPECT_EQ(client->calls, (std::vector<std::wstring>{
                               L"SQLQueryTable(talora, " + loadingStatement() + L")",
                               L"CheckForError()", L"GetTableData(0)", L"CheckForError()"}));
}

TEST_F(RemoteLoadingTest, TheLoadIsLoggedBeforeTheQuery) {
  logOn(10);
  configurations.GetPACSConfigurations();
  EXPECT_EQ(log(), debugLine(9, L"[TLPACSCFG] Getting PACS configurations using TlCommClient") +
                       debugLine(9, L"[TLPACSCFG] Querying DB using TlCommClient") +
                       debugLine(10, L"[TLPACSCFG] Query:\r\n" + loadingStatement()) +
                       debugLine(9, L"[TLPACSCFG] Getting dataset from TlCommClient") +
                       debugLine(10, L"[TLPACSCFG] DataIndex:1"));
}

TEST_F(RemoteLoadingTest, AnEmptyDatasetGivesOnlyThePlaceholder) {
  configurations.GetPACSConfigurations();
  EXPECT_EQ(identifiers(), (Identifiers{0}));
}

TEST_F(RemoteLoadingTest, AnyTableCountButOneLoadsNothing) {
  for (const std::int32_t count : {0, 2}) {
    client->tableCount = count;
    client->table = tableOf({distinctCells()});
    configurations.GetPACSConfigurations();
    EXPECT_TRUE(identifiers().empty()) << count;
  }
}

TEST_F(RemoteLoadingTest, ADatasetThatCannotBeFetchedGivesNothing) {
  client->errors = {L"", L"gone"};
  client->table = tableOf({distinctCells()});
  configurations.GetPACSConfigurations();
  EXPECT_TRUE(identifiers().empty());
  EXPECT_TRUE(messages.empty());
}

TEST_F(RemoteLoadingTest, InvalidNumbersInLaterColumnsAreReplacedByDefaults) {
  for (const std::optional<std::wstring>& cell :
       {std::optional<std::wstring>(), std::optional<std::wstring>(L""),
        std::optional<std::wstring>(L"x")}) {
    Cells cells = distinctCells();
    for (const Column* column : columnsInLoadOrder()) {
      if (column->loadPosition >= 18 && !isText(column->field)) cells[column->loadPosition] = cell;
    }
    client->table = tableOf({cells});
    configurations = colPACSConfiguration();
    configurations.GetPACSConfigurations();
    const auto record = configurations.Item(2);
    ASSERT_NE(record, nullptr);
    EXPECT_EQ(record->PollingDisplayField, 1);
    EXPECT_EQ(record->ResponseType, 0);
    EXPECT_EQ(record->Port, 0);
    EXPECT_EQ(record->RequestDefaultText, 0);
    EXPECT_EQ(record->SendAbortOnFailedOpen, 0);
  }
}

TEST_F(RemoteLoadingTest, LaterTextsThatAreNullAreEmpty) {
  Cells cells = distinctCells();
  for (const std::size_t position : {16U, 17U, 28U, 29U, 35U}) cells[position] = std::nullopt;
  client->table = tableOf({cells});
  configurations.GetPACSConfigurations();
  const auto record = configurations.Item(2);
  EXPECT_EQ(record->CustomXMLFile + record->ApplicableFields + record->ContextXMLFile +
                record->MultiAccessFields + record->CloseDictationFile,
            L"");
}

TEST_F(RemoteLoadingTest, ThePortKeepsItsFullValue) {
  Cells cells = distinctCells();
  cells[22] = L"2147483647";
  client->table = tableOf({cells});
  configurations.GetPACSConfigurations();
  EXPECT_EQ(configurations.Item(2)->Port, 2147483647);
}

TEST_F(RemoteLoadingTest, ALaterNumberBeyond16BitsFailsTheLoad) {
  Cells cells = distinctCells();
  cells[18] = L"32768";
  client->table = tableOf({cells});
  EXPECT_OVERFLOW(configurations.GetPACSConfigurations());
  EXPECT_EQ(identifiers(), (Identifiers{0}));
}

TEST_F(RemoteLoadingTest, AnInvalidNumberInAnOlderColumnFailsTheLoad) {
  Cells cells = distinctCells();
  cells[15] = L"";
  client->table = tableOf({cells});
  EXPECT_TYPE_MISMATCH(configurations.GetPACSConfigurations());
}

TEST_F(RemoteLoadingTest, ANullInAnOlderColumnFailsTheLoad) {
  Cells cells = distinctCells();
  cells[13] = std::nullopt;
  client->table = tableOf({cells});
  EXPECT_RUNTIME_ERROR(configurations.GetPACSConfigurations(), 94, L"Invalid use of Null");
}

TEST_F(RemoteLoadingTest, ATableWithTooFewColumnsFailsTheLoad) {
  client->table = tableOf({{L"1", L"2"}});
  EXPECT_RUNTIME_ERROR(configurations.GetPACSConfigurations(), 9, L"Subscript out of range");
}

}  // namespace
}  // namespace tlpacscfg::test
