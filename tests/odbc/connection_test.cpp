#include "odbc/connection.h"

#include <functional>

#include "harness/core_fixture.h"
#include "harness/machine.h"
#include "support/text.h"

namespace tlpacscfg::odbc {
namespace {

class OdbcConnectionTest : public test::SiteTest {
 protected:
  static std::shared_ptr<Environment> environment(CursorLibrary library = CursorLibrary::NotUsed) {
    return std::make_shared<Environment>(library, std::chrono::seconds(5));
  }

  Connection connection{environment(), L"TlTestSite", Prompt::Never, L""};
};

std::wstring cell(const Table& table, std::size_t column, std::size_t row) {
  return std::wstring(table.at(column, row).value_or(L"NULL"));
}

TEST_F(OdbcConnectionTest, AQueryGivesEveryCellAsText) {
  const Table table = connection.query(L"SELECT 7, 'text', NULL, '', -1.5, x'41'");
  ASSERT_EQ(table.rows(), 1U);
  ASSERT_EQ(table.columns(), 6U);
  EXPECT_EQ(cell(table, 0, 0), L"7");
  EXPECT_EQ(cell(table, 1, 0), L"text");
  EXPECT_EQ(table.at(2, 0), std::nullopt);
  EXPECT_EQ(table.at(3, 0), L"");
  EXPECT_EQ(cell(table, 4, 0), L"-1.5");
}

TEST_F(OdbcConnectionTest, AQueryWithoutRowsHasItsColumns) {
  const Table table = connection.query(L"SELECT pc_name, flag2 FROM System_pc_names");
  EXPECT_EQ(table.columns(), 2U);
  EXPECT_EQ(table.rows(), 0U);
}

TEST_F(OdbcConnectionTest, AStatementWithoutAResultGivesNoTable) {
  EXPECT_EQ(connection.query(L"DELETE FROM System_pc_names").columns(), 0U);
}

TEST_F(OdbcConnectionTest, TheFirstResultThatHasColumnsCounts) {
  const std::wstring insert = L"INSERT INTO System_pc_names VALUES('A', '', 1)\r\n\r\n";
  const std::wstring text = insert + L"SELECT 'first', 1\r\n\r\nSELECT 'second'";
  EXPECT_EQ(cell(connection.query(text), 0, 0), L"first");
  connection.execute(L"DELETE FROM System_pc_names");
  EXPECT_EQ(cell(connection.queryOnce(text), 0, 0), L"first");
}

TEST_F(OdbcConnectionTest, TextsAroundTheWidthOfTheirColumnAreReadCompletely) {
  for (const std::size_t length :
       {0U, 1U, 31U, 32U, 33U, 254U, 255U, 256U, 1000U, 3999U, 4000U, 4001U, 10'000U}) {
    const std::wstring text(length, L'x');
    connection.execute(L"DELETE FROM System_pc_names");
    connection.execute(L"INSERT INTO System_pc_names VALUES('A', 'short', 1)");
    connection.execute(L"INSERT INTO System_pc_names VALUES('B', '" + text + L"', 1)");
    connection.execute(L"INSERT INTO System_pc_names VALUES('C', NULL, 1)");
    const Table table =
        connection.query(L"SELECT access_string FROM System_pc_names ORDER BY pc_name");
    ASSERT_EQ(table.rows(), 3U) << length;
    EXPECT_EQ(cell(table, 0, 0), L"short");
    EXPECT_EQ(cell(table, 0, 1), text) << length;
    EXPECT_EQ(table.at(0, 2), std::nullopt);
  }
}

TEST_F(OdbcConnectionTest, RowsOfSeveralBlocksKeepTheirOrder) {
  const Table table = connection.query(
      L"WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 10000) SELECT i, "
      L"'row ' || i FROM n");
  ASSERT_EQ(table.rows(), 10'000U);
  for (std::size_t row = 0; row < 10'000; ++row) {
    ASSERT_EQ(cell(table, 0, row), std::to_wstring(row + 1));
    ASSERT_EQ(cell(table, 1, row), L"row " + std::to_wstring(row + 1));
  }
}

TEST_F(OdbcConnectionTest, ALongTextInALaterBlockIsReadCompletely) {
  const Table table = connection.query(
      L"WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 5000) SELECT i, "
      L"CASE i WHEN 4999 THEN replace(hex(zeroblob(10000)), '00', 'ab') ELSE 'x' END FROM n");
  ASSERT_EQ(table.rows(), 5000U);
  EXPECT_EQ(cell(table, 1, 4998).size(), 20'000U);
  EXPECT_EQ(cell(table, 1, 4999), L"x");
}

TEST_F(OdbcConnectionTest, AForeignTextIsOneTransaction) {
  addWorkstation(L"A", L"1");
  const std::wstring change = L"UPDATE System_pc_names SET flag2 = flag2 + 1\r\n\r\n";
  const std::wstring wide = change + L"SELECT hex(zeroblob(10000))";
  EXPECT_EQ(cell(connection.queryOnce(wide), 0, 0).size(), 20'000U);
  EXPECT_EQ(site.value(L"select flag2 from System_pc_names"), L"2");
  EXPECT_THROW(connection.queryOnce(change + L"SELECT * FROM Missing"), Error);
  connection.limitStatements({.resultCharacters = 1000});
  EXPECT_THROW(connection.queryOnce(wide), ResultTooLarge);
  EXPECT_EQ(site.value(L"select flag2 from System_pc_names"), L"2");
}

TEST_F(OdbcConnectionTest, ACellThatIsReadInPiecesIsComplete) {
  for (const std::size_t length : {0U, 4094U, 4095U, 4096U, 8190U, 8191U, 100'000U}) {
    // The last character takes two units of UTF-16.
    const std::wstring text = std::wstring(length, L'x') + fromUtf8("\U0001F4C4");
    connection.execute(L"DELETE FROM System_pc_names");
    connection.execute(L"INSERT INTO System_pc_names VALUES('A', '" + text + L"', NULL)");
    const Table table = connection.queryOnce(
        L"SELECT pc_name, access_string, flag2, 7, '', -1.5 FROM System_pc_names");
    EXPECT_EQ(cell(table, 0, 0), L"A");
    EXPECT_EQ(cell(table, 1, 0), text) << length;
    EXPECT_EQ(table.at(2, 0), std::nullopt);
    EXPECT_EQ(cell(table, 3, 0), L"7");
    EXPECT_EQ(table.at(4, 0), L"");
    EXPECT_EQ(cell(table, 5, 0), L"-1.5");
  }
}

TEST_F(OdbcConnectionTest, AResultMayBeAsLargeAsItsLimit) {
  // Each cell counts three characters more than its text has.
  const std::wstring query = L"SELECT 'abc', NULL UNION ALL SELECT 'de', ''";
  connection.limitStatements({.resultCharacters = 17});
  EXPECT_EQ(connection.query(query).rows(), 2U);
  EXPECT_EQ(connection.queryOnce(query).rows(), 2U);
  connection.limitStatements({.resultCharacters = 16});
  EXPECT_THROW(connection.query(query), ResultTooLarge);
  EXPECT_THROW(connection.queryOnce(query), ResultTooLarge);
  EXPECT_EQ(connection.query(L"SELECT 1").rows(), 1U) << "The connection goes on.";
}

TEST_F(OdbcConnectionTest, ACellIsNoLongerThanTheLimit) {
  connection.limitStatements({.resultCharacters = 20'003});
  EXPECT_EQ(cell(connection.query(L"SELECT hex(zeroblob(10000))"), 0, 0).size(), 20'000U);
  EXPECT_THROW(connection.query(L"SELECT hex(zeroblob(10001))"), ResultTooLarge);
}

TEST_F(OdbcConnectionTest, ATimeLimitThatTheDriverDoesNotKnowIsNoError) {
  connection.limitStatements({.time = std::chrono::seconds(1)});
  EXPECT_EQ(connection.query(L"SELECT 1").rows(), 1U);
  connection.execute(L"INSERT INTO System_pc_names VALUES('A', '', 1)");
  EXPECT_EQ(site.value(L"select count(*) from System_pc_names"), L"1");
}

TEST_F(OdbcConnectionTest, AConnectionKeepsItsEnvironment) {
  auto owner = environment();
  const std::weak_ptr<Environment> watch = owner;
  {
    Connection second(std::move(owner), L"TlTestSite", Prompt::Never, L"");
    EXPECT_FALSE(watch.expired());
    EXPECT_EQ(second.query(L"SELECT 1").rows(), 1U);
  }
  EXPECT_TRUE(watch.expired());
}

TEST_F(OdbcConnectionTest, ADriverMayBeNamedByTheParameters) {
  Connection second(
      environment(), L"", Prompt::Never,
      L"UID=;PWD=;Driver={" + test::sqliteDriver() + L"};Database=:memory:;DSN='';APP=x;");
  EXPECT_EQ(second.dialect(), Dialect::Sqlite);
}

TEST_F(OdbcConnectionTest, ACursorLibraryThatCannotBeUsedIsNoError) {
  Connection second(environment(CursorLibrary::Used), L"TlTestSite", Prompt::ForMissingInformation,
                    L"");
  EXPECT_EQ(cell(second.query(L"SELECT 'x'"), 0, 0), L"x");
}

TEST_F(OdbcConnectionTest, ADriverThatIsNotInstalledIsNoLoginFailure) {
  try {
    Connection(environment(), L"", Prompt::Never, L"Driver={No Such Driver};");
    ADD_FAILURE() << "Nothing was thrown.";
  } catch (const Error& error) {
    EXPECT_EQ(error.number(), kOdbcFailed);
    // Expected on Wine 10 only: its own driver manager fails without a reason.
    if (error.description() == L"HY000: The ODBC driver gave no reason.") return;
    // Windows has one state for a driver and a data source that it does not know, and does not name
    // them. Expected on Wine only: unixODBC's state, and the name.
    EXPECT_EQ(error.sqlState(), test::onWindows() ? L"IM002" : L"01000");
    if (test::onWindows()) return;
    EXPECT_NE(error.description().find(L"No Such Driver"), std::wstring::npos)
        << toUtf8(error.description());
  }
}

TEST_F(OdbcConnectionTest, AnErrorHoldsTheStateAndTextOfTheDriver) {
  try {
    connection.query(L"SELECT * FROM Missing");
    ADD_FAILURE() << "Nothing was thrown.";
  } catch (const Error& error) {
    EXPECT_EQ(error.number(), kOdbcFailed);
    EXPECT_EQ(error.sqlState(), L"HY000");
    EXPECT_EQ(error.nativeError(), 1);
    EXPECT_TRUE(error.description().starts_with(L"HY000: [SQLite]no such table: Missing"))
        << toUtf8(error.description());
  }
}

TEST_F(OdbcConnectionTest, AnOpenTransactionIsRolledBackUnlessItIsCommitted) {
  {
    Connection::Transaction transaction(connection);
    connection.execute(L"INSERT INTO System_pc_names VALUES('A', '', 1)");
    EXPECT_EQ(connection.query(L"SELECT pc_name FROM System_pc_names").rows(), 1U);
  }
  EXPECT_EQ(connection.query(L"SELECT pc_name FROM System_pc_names").rows(), 0U);
  {
    Connection::Transaction transaction(connection);
    connection.execute(L"INSERT INTO System_pc_names VALUES('B', '', 1)");
    connection.execute(L"INSERT INTO System_pc_names VALUES('C', '', 1)");
    transaction.commit();
  }
  EXPECT_EQ(site.value(L"select count(*) from System_pc_names"), L"2");
}

TEST_F(OdbcConnectionTest, AFailureThatTheCallerIgnoresFailsTheCommit) {
  Connection::Transaction transaction(connection);
  connection.execute(L"INSERT INTO System_pc_names VALUES('A', '', 1)");
  EXPECT_THROW(connection.execute(L"INSERT INTO Missing VALUES(1)"), Error);
  EXPECT_THROW(connection.query(L"SELECT 1"), Error) << "Nothing more is sent.";
  try {
    transaction.commit();
    ADD_FAILURE() << "Nothing was thrown.";
  } catch (const Error& error) {
    EXPECT_NE(error.description().find(L"no such table: Missing"), std::wstring::npos);
  }
}

TEST_F(OdbcConnectionTest, AfterATransactionEachStatementCommitsItselfAgain) {
  { Connection::Transaction transaction(connection); }
  connection.query(L"INSERT INTO System_pc_names VALUES('A', '', 1)");
  EXPECT_EQ(site.value(L"select count(*) from System_pc_names"), L"1");
}

TEST_F(OdbcConnectionTest, AClosedConnectionReportsThatItIsLost) {
  EXPECT_FALSE(connection.isLost());
  EXPECT_TRUE(connection.answers());
  connection.close();
  EXPECT_TRUE(connection.isLost());
  EXPECT_FALSE(connection.answers());
  for (const auto& use :
       {std::function<void()>([this] { connection.query(L"SELECT 1"); }),
        std::function<void()>([this] { connection.execute(L"SELECT 1"); }),
        std::function<void()>([this] { const Connection::Transaction transaction(connection); })}) {
    try {
      use();
      ADD_FAILURE() << "Nothing was thrown.";
    } catch (const Error& error) {
      EXPECT_EQ(error.sqlState(), L"08003");
    }
  }
}

TEST_F(OdbcConnectionTest, ClosingRollsBackATransactionAndReleasesItsLocks) {
  Connection::Transaction transaction(connection);
  connection.execute(L"INSERT INTO System_pc_names VALUES('A', '', 1)");
  connection.close();
  site.run(L"INSERT INTO System_pc_names VALUES('B', '', 1)");
  EXPECT_EQ(site.value(L"select group_concat(pc_name) from System_pc_names"), L"B");
}

TEST(ConnectValueTest, OnlyWhatWouldBeMisreadIsPutIntoBraces) {
  const std::pair<const wchar_t*, const wchar_t*> cases[] = {
      {L"", L""},         {L"plain", L"plain"}, {L"a=b", L"a=b"},    {L"in{side}", L"in{side}"},
      {L"a;b", L"{a;b}"}, {L"{a", L"{{a}"},     {L"{a}", L"{{a}}}"}, {L"a;}b", L"{a;}}b}"},
      {L" a", L"{ a}"},   {L"a ", L"{a }"},     {L"}", L"}"},
  };
  for (const auto& [value, expected] : cases) {
    std::wstring text = L"PWD=";
    appendConnectValue(text, value);
    EXPECT_EQ(text, std::wstring(L"PWD=") + expected);
  }
}

TEST(WithoutEmptyDataSourceTest, OnlyAnEmptyDataSourceIsDropped) {
  EXPECT_EQ(withoutEmptyDataSource(L"UID=sa;PWD=x;Database=d;Server=s;Driver={SQL Server};DSN='';"
                                   L"APP=TLPACSCFG.DLL;"),
            L"UID=sa;PWD=x;Database=d;Server=s;Driver={SQL Server};APP=TLPACSCFG.DLL;");
  EXPECT_EQ(withoutEmptyDataSource(L"DSN=;UID=sa"), L"UID=sa");
  EXPECT_EQ(withoutEmptyDataSource(L"UID=sa;dsn=''"), L"UID=sa;");
}

TEST(WithoutEmptyDataSourceTest, EverythingElseStays) {
  for (const wchar_t* text :
       {L"", L";", L"DSN=site;UID=sa;", L"UID=;PWD=;", L"PWD={a;DSN='';b};UID=sa;",
        L"PWD={a}};DSN='';};UID=sa", L"PWD={unfinished;DSN='';", L"DSN='x';"}) {
    EXPECT_EQ(withoutEmptyDataSource(text), text);
  }
}

}  // namespace
}  // namespace tlpacscfg::odbc
