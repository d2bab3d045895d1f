#include "data/direct_connections.h"
#include "data/mod_main.h"
#include "data/statements.h"
#include "harness/core_fixture.h"

namespace tlpacscfg::test {
namespace {

class SqliteTextsTest : public SiteTest, public ::testing::WithParamInterface<std::wstring> {};

TEST_P(SqliteTextsTest, ComeBackAsTheyWereStored) {
  connect();
  const std::wstring literal = L"'" + FixQuotes(GetParam()) + L"'";
  ExecuteSQL(L"INSERT INTO System_pc_names VALUES('PC', " + literal + L", 1)");
  openSharedResult(modMain.g_conSql,
                   L"select access_string from System_pc_names where access_string = " + literal);
  ASSERT_FALSE((*modMain.g_rsQuery).EndOfData());
  EXPECT_EQ((*modMain.g_rsQuery).Column(0), GetParam());
}

INSTANTIATE_TEST_SUITE_P(Texts, SqliteTextsTest,
                         ::testing::Values(L"", L"O'Brien's ''list''", L"\u00e4",
                                           L"Gr\u00fc\u00dfe", L"\u65e5\u672c\u8a9e 'quoted'",
                                           L"\u0416\r\n\U0001F4C4",
                                           std::wstring(10'000, L'\u00fc')));

TEST_F(SqliteTextsTest, AnUnfinishedTextStaysAnError) {
  connect();
  EXPECT_ANY_THROW(ExecuteSQL(L"INSERT INTO System_pc_names VALUES('\u00e4'', '', 1)"));
}

}  // namespace
}  // namespace tlpacscfg::test
