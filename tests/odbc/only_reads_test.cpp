#include "odbc/only_reads.h"

#include <gtest/gtest.h>

#include "config/columns.h"
#include "support/text.h"

namespace tlpacscfg::test {
namespace {

void expectQuery(const std::wstring& sql) { EXPECT_TRUE(onlyReads(sql)) << toUtf8(sql); }
void expectChange(const std::wstring& sql) { EXPECT_FALSE(onlyReads(sql)) << toUtf8(sql); }

TEST(OnlyReadsTest, WhatTheComponentReadsWithIsAQuery) {
  expectQuery(loadingStatement());
  expectQuery(loadingStatement(7));
  for (const wchar_t* sql :
       {L"select p.pc_name,key_value = (select key_value from system_workstation_cfg where "
        L"key_name = 'PACSConfig' and pc_name = p.pc_name), access_string, p.flag2 from "
        L"system_pc_names p",
        L"SELECT TOP 1 config_id FROM Interface_PACS_cfg ORDER BY config_id DESC",
        L"SELECT GetDate()", L"SELECT pc_name, flag2 FROM System_pc_names",
        L"SELECT name, type FROM pragma_table_info('Interface_PACS_cfg')",
        L"SELECT config_id FROM Interface_PACS_cfg GROUP BY config_id HAVING COUNT(*) > 1",
        L"SELECT CAST(DATABASEPROPERTYEX(DB_NAME(), 'Collation') AS nvarchar(128))",
        L"SELECT encrypt_option FROM sys.dm_exec_connections WHERE session_id = @@SPID"}) {
    expectQuery(sql);
  }
}

TEST(OnlyReadsTest, AQueryMayHaveOperatorsAndPages) {
  for (const wchar_t* sql :
       {L"SELECT a.*, -1.5 FROM t a WHERE (b <= 1 + 2 OR b != 3 % 2) AND c <> 'x' || 'y'",
        L"SELECT - -1, 4 / 2, 2 * 3, 1 - 2", L"SELECT CASE a WHEN 1 THEN 2 END FROM t",
        L"SELECT a FROM t ORDER BY a OFFSET 1 ROWS FETCH FIRST 2 ROWS ONLY"}) {
    expectQuery(sql);
  }
}

TEST(OnlyReadsTest, AQuotedTextMayHoldAnything) {
  for (const wchar_t* text : {L"DELETE FROM t; COMMIT", L"a--b", L"/*", L"PC[1]", L"\"", L"`", L"{",
                              L"O''Brien; DROP", L"\x00DC\x3000", L"1DELETE", L"\r\n\r\n\t\v"}) {
    expectQuery(L"SELECT flag2 FROM t WHERE pc_name = '" + std::wstring(text) + L"'");
  }
}

TEST(OnlyReadsTest, OnlyATextThatBeginsWithSelectIsAQuery) {
  expectQuery(L" \t\r\n sElEcT 1");
  for (const wchar_t* sql :
       {L"", L" ", L"p", L"'SELECT'", L"selects", L"(SELECT 1)", L"\xFEFFSELECT 1",
        L"WITH c AS (SELECT 1) SELECT 1", L"PRAGMA user_version", L"ATTACH 'f' AS a", L"VACUUM",
        L"{call p}", L"VALUES(1)", L"DECLARE @a int", L"p SELECT 1"}) {
    expectChange(sql);
  }
}

/// The reserved words of SQL Server that begin a statement, without those whose statements change
/// nothing by themselves (such as DECLARE, IF and PRINT).
TEST(OnlyReadsTest, NoChangeMayFollowAQuery) {
  for (const wchar_t* statement : {L"add signature to p by certificate c",
                                   L"alter table t drop column c",
                                   L"backup database d to disk = 'f'",
                                   L"begin tran",
                                   L"bulk insert t from 'f'",
                                   L"checkpoint",
                                   L"commit",
                                   L"create table t(a int)",
                                   L"dbcc shrinkdatabase(0)",
                                   L"delete from t",
                                   L"deny all to u",
                                   L"drop table t",
                                   L"end conversation @c",
                                   L"exec p",
                                   L"exec('x')",
                                   L"execute as user = 'u'",
                                   L"grant all to u",
                                   L"insert t values(1)",
                                   L"kill 51",
                                   L"merge t using u on 1 = 1",
                                   L"raiserror('x', 20, 1) with log",
                                   L"reconfigure",
                                   L"restore database d",
                                   L"revert",
                                   L"revoke all to u",
                                   L"rollback",
                                   L"save tran s",
                                   L"set nocount on",
                                   L"setuser 'u'",
                                   L"shutdown",
                                   L"truncate table t",
                                   L"update t",
                                   L"updatetext t.c @p 0 0 'x'",
                                   L"use other",
                                   L"waitfor (receive top 1 * from q)",
                                   L"writetext t.c @p 'x'"}) {
    for (const wchar_t* separator : {L" ", L"\r\n", L"\r\n\r\n"}) {
      expectChange(std::wstring(L"SELECT 1") + separator + statement);
      expectChange(std::wstring(L"SELECT 'a'") + separator + upperCase(statement));
    }
  }
  expectChange(L"SELECT 1; PRAGMA user_version = 1");
  expectChange(L"SELECT 1;ENABLE TRIGGER r ON t");
}

TEST(OnlyReadsTest, AQueryThatWritesIsAChange) {
  for (const wchar_t* sql : {L"SELECT a INTO b FROM t", L"SELECT NEXT VALUE FOR s",
                             L"SELECT * FROM OPENQUERY(other, 'DELETE FROM t')",
                             L"SELECT * FROM OPENROWSET('SQLNCLI', 's', 'DELETE FROM t')",
                             L"SELECT * FROM OPENDATASOURCE('SQLNCLI', 's').d.dbo.t",
                             L"SELECT * FROM (DELETE FROM t OUTPUT deleted.a) AS d"}) {
    expectChange(sql);
  }
}

TEST(OnlyReadsTest, WhatOnlySeemsAQuotedTextHidesNoChange) {
  for (const wchar_t* opening :
       {L"--'", L"/*'*/", L"/* ' */", L"\"'\"", L"['", L"`'`", L"'a' --'", L"-- -- '"}) {
    expectChange(L"SELECT 1 " + std::wstring(opening) + L"\nDELETE FROM t; COMMIT --'");
    expectChange(L"SELECT 1 " + std::wstring(opening) + L"\nDELETE FROM t '");
  }
  for (const wchar_t* sql :
       {L"SELECT 'without an end; DELETE FROM t", L"SELECT 1--1", L"SELECT 4/*2"}) {
    expectChange(sql);
  }
}

TEST(OnlyReadsTest, NoChangeHidesInAWordThatEndsEarlierForTheDatabase) {
  for (const wchar_t* before : {L"1", L"0x", L"1.5", L"1e5", L"$1", L"a\x00A0", L"1 \x3000",
                                L"a\x2028", L"a\x0127", L"1_"}) {
    expectChange(L"SELECT " + std::wstring(before) + L"DELETE FROM t");
  }
  expectChange(L"SELECT 1 FROM t WHERE 1=1COMMIT");
}

TEST(OnlyReadsTest, ACharacterThatNoQueryNeedsIsAChange) {
  for (wchar_t c = 0; c < 0x80; ++c) {
    const bool ofQueries =
        std::wstring_view(L"()*,.=<>!+-/%@|_ \t\r\n").find(c) != std::wstring::npos;
    const bool isLetterOrDigit =
        (c >= L'0' && c <= L'9') || (c >= L'A' && c <= L'Z') || (c >= L'a' && c <= L'z');
    const std::wstring sql = std::wstring(L"SELECT a ") + c + L" b";
    EXPECT_EQ(onlyReads(sql), ofQueries || isLetterOrDigit) << static_cast<int>(c);
  }
}

}  // namespace
}  // namespace tlpacscfg::test
