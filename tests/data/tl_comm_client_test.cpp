#include "data/tl_comm_client.h"

#include <tuple>

#include "harness/core_fixture.h"
#include "harness/errors.h"
#include "harness/fake_client.h"
#include "harness/scratch.h"
#include "log/log_support.h"

namespace tlpacscfg::test {
namespace {

using Calls = std::vector<std::wstring>;

class TlCommClientTest : public CoreTest {
 protected:
  TlCommClientTest() {
    config.TlCommClientHostIP = L"10.0.0.7";
    config.TlCommClientHostPort = L"8080";
    config.TlCommClientTimeout = L"30";
    config.SqlDbName = L"talora";
    logOn();
  }

  HostSettings config;
  std::shared_ptr<ClientScript> client = installFakeClient();
};

class ConnectedClientTest : public TlCommClientTest {
 protected:
  ConnectedClientTest() { client = connectFakeClient(L"talora"); }

  template <class Failure>
  void failWith(const std::wstring& method, const Failure& failure) {
    client->listener = [=](const std::wstring& called) {
      if (called == method) throw failure;
    };
  }
};

TEST_F(TlCommClientTest, ConnectingGivesTheClientApplicationAndAddress) {
  EXPECT_TRUE(ConnectTlCommClient(config));
  EXPECT_TRUE(TlCommClientConnected());
  EXPECT_EQ(modTlCommClient.g_strTlDatabase, L"talora");
  EXPECT_EQ(client->calls, (Calls{L"ConnectToService(TLPACSCFG.DLL, 10.0.0.7, 8080, 30)"}));
  EXPECT_EQ(log(), debugLine(9, L"[TLPACSCFG] Connecting to TlCommClient") +
                       debugLine(10, L"[TLPACSCFG] Storing database name:talora") +
                       debugLine(7, L"[TLPACSCFG] TlCommClient connected successfully"));
}

TEST_F(TlCommClientTest, TheFirstMissingSettingIsLoggedAndNoObjectIsCreated) {
  const std::pair<std::wstring HostSettings::*, const wchar_t*> settings[] = {
      {&HostSettings::TlCommClientTimeout, L"[TLPACSCFG] No TlCommClient Timeout provided"},
      {&HostSettings::TlCommClientHostPort, L"[TLPACSCFG] No TlCommClient Host Port provided"},
      {&HostSettings::TlCommClientHostIP, L"[TLPACSCFG] No TlCommClient Host IP provided"}};
  std::string expected;
  // Each comes before those that are missing already.
  for (const auto& [setting, complaint] : settings) {
    (config.*setting).clear();
    EXPECT_FALSE(ConnectTlCommClient(config));
    expected += debugLine(9, L"[TLPACSCFG] Connecting to TlCommClient") + errorBlock(complaint);
  }
  EXPECT_EQ(client->created, 0);
  EXPECT_EQ(modTlCommClient.g_strTlDatabase, L"");
  EXPECT_EQ(log(), expected);
}

TEST_F(TlCommClientTest, AServiceThatCannotBeReachedIsLoggedWithItsReason) {
  client->connects = false;
  client->errors = {L"no route"};
  EXPECT_FALSE(ConnectTlCommClient(config));
  EXPECT_FALSE(TlCommClientConnected());
  EXPECT_EQ(client->destroyed, 1);
  EXPECT_EQ(log(), debugLine(9, L"[TLPACSCFG] Connecting to TlCommClient") +
                       debugLine(10, L"[TLPACSCFG] Storing database name:talora") +
                       errorBlock(L"[TLPACSCFG] TlCommClient could not connect: no route"));
}

TEST_F(TlCommClientTest, AFailingCallEndsConnectingWithoutAnError) {
  client->failing = {L"ConnectToService"};
  EXPECT_FALSE(ConnectTlCommClient(config));
  EXPECT_FALSE(TlCommClientConnected());
  EXPECT_EQ(log(), debugLine(9, L"[TLPACSCFG] Connecting to TlCommClient") +
                       debugLine(10, L"[TLPACSCFG] Storing database name:talora"));
}

TEST_F(TlCommClientTest, AnUnregisteredObjectEndsConnectingWithoutAnError) {
  createTlCommClient = []() -> std::unique_ptr<TlCommClientObject> {
    raise(ErrorNumber::CannotCreateObject);
  };
  EXPECT_FALSE(ConnectTlCommClient(config));
  EXPECT_EQ(modTlCommClient.g_strTlDatabase, L"talora");
}

TEST_F(TlCommClientTest, ConnectingAgainDropsTheEarlierClient) {
  ASSERT_TRUE(ConnectTlCommClient(config));
  client->connects = false;
  EXPECT_FALSE(ConnectTlCommClient(config));
  EXPECT_FALSE(TlCommClientConnected());
  EXPECT_EQ(client->calls,
            (Calls{L"ConnectToService(TLPACSCFG.DLL, 10.0.0.7, 8080, 30)",
                   L"DisconnectFromService(TLPACSCFG.DLL)",
                   L"ConnectToService(TLPACSCFG.DLL, 10.0.0.7, 8080, 30)", L"CheckForError()"}));
  EXPECT_EQ(client->destroyed, 2);
}

TEST_F(TlCommClientTest, DisconnectingWithoutAClientDoesNothing) {
  DisconnectTlCommClient();
  EXPECT_FALSE(fileExists(scratchPath(L"component.log")));
}

TEST_F(ConnectedClientTest, DisconnectingReleasesTheClient) {
  DisconnectTlCommClient();
  EXPECT_FALSE(TlCommClientConnected());
  EXPECT_EQ(client->destroyed, 1);
  EXPECT_EQ(client->calls, (Calls{L"DisconnectFromService(TLPACSCFG.DLL)"}));
  EXPECT_EQ(log(), debugLine(7, L"[TLPACSCFG] Disconnecting TlCommClient"));
}

TEST_F(ConnectedClientTest, ErrorsOfDisconnectingAreIgnored) {
  client->failing = {L"DisconnectFromService"};
  logTo(scratchPath(L"missing/directory.log"));
  DisconnectTlCommClient();
  EXPECT_FALSE(TlCommClientConnected());
  EXPECT_EQ(client->destroyed, 1);
}

const std::wstring kQueryLines = L"[TLPACSCFG] Query:\r\nselect 'a'\r\nfrom t";

TEST_F(ConnectedClientTest, AQueryNamesTheDatabaseAndAnswersTheNumberOfTables) {
  client->tableCount = 3;
  EXPECT_EQ(TlCommClientQuery(L"select 'a'\r\nfrom t"), 3);
  EXPECT_EQ(client->calls,
            (Calls{L"SQLQueryTable(talora, select 'a'\r\nfrom t)", L"CheckForError()"}));
  EXPECT_EQ(log(), debugLine(9, L"[TLPACSCFG] Querying DB using TlCommClient") +
                       debugLine(10, kQueryLines));
}

TEST_F(TlCommClientTest, AQueryWithoutAClientAnswersZero) {
  EXPECT_EQ(TlCommClientQuery(L"select 'a'\r\nfrom t"), 0);
  EXPECT_EQ(log(), debugLine(9, L"[TLPACSCFG] Querying DB using TlCommClient") +
                       debugLine(10, kQueryLines) +
                       debugLine(7,
                                 L"[TLPACSCFG] Cannot process query because TlCommClient is not "
                                 L"connected"));
}

TEST_F(ConnectedClientTest, AQueryThatLeavesAnErrorAnswersZero) {
  client->errors = {L"timeout"};
  EXPECT_EQ(TlCommClientQuery(L"select 'a'\r\nfrom t"), 0);
  EXPECT_EQ(log(), debugLine(9, L"[TLPACSCFG] Querying DB using TlCommClient") +
                       debugLine(10, kQueryLines) +
                       errorBlock(L"[TLPACSCFG] Query failed: timeout"));
}

TEST_F(ConnectedClientTest, AQueryWithoutTablesIsInvalid) {
  for (const std::int32_t count : {0, -1}) {
    modLogSupport.g_strLogFile = scratchPath(L"component.log");
    writeBytes(modLogSupport.g_strLogFile, "");
    client->tableCount = count;
    EXPECT_EQ(TlCommClientQuery(L"select 'a'\r\nfrom t"), 0);
    EXPECT_EQ(log(), debugLine(9, L"[TLPACSCFG] Querying DB using TlCommClient") +
                         debugLine(10, kQueryLines) +
                         errorBlock(L"[TLPACSCFG] Invalid table count returned"));
  }
}

TEST_F(ConnectedClientTest, ATableCountBeyond16BitsReturnsZero) {
  client->tableCount = 32768;
  EXPECT_EQ(TlCommClientQuery(L"q"), 0);
  client->tableCount = 32767;
  EXPECT_EQ(TlCommClientQuery(L"q"), 32767);
}

TEST_F(ConnectedClientTest, AFailingQueryCallAnswersZero) {
  client->failing = {L"SQLQueryTable"};
  EXPECT_EQ(TlCommClientQuery(L"q"), 0);
  client->failing = {L"CheckForError"};
  EXPECT_EQ(TlCommClientQuery(L"q"), 0);
}

TEST_F(ConnectedClientTest, TheFirstDatasetIsTheClientsTableZero) {
  client->table = tableOf({{L"a", std::nullopt}, {L"b", L""}});
  Table data;
  EXPECT_TRUE(TlCommClientGetDataset(1, data));
  EXPECT_EQ(client->calls, (Calls{L"GetTableData(0)", L"CheckForError()"}));
  EXPECT_EQ(data.rows(), 2U);
  EXPECT_EQ(data.at(0, 1), L"b");
  EXPECT_EQ(data.at(1, 0), std::nullopt);
  EXPECT_EQ(log(), debugLine(9, L"[TLPACSCFG] Getting dataset from TlCommClient") +
                       debugLine(10, L"[TLPACSCFG] DataIndex:1"));
}

TEST_F(TlCommClientTest, ADatasetWithoutAClientIsEmpty) {
  Table data = tableOf({{L"old"}});
  EXPECT_FALSE(TlCommClientGetDataset(2, data));
  EXPECT_EQ(data.columns(), 0U);
  EXPECT_EQ(log(), debugLine(9, L"[TLPACSCFG] Getting dataset from TlCommClient") +
                       debugLine(10, L"[TLPACSCFG] DataIndex:2") +
                       debugLine(7,
                                 L"[TLPACSCFG] Cannot process query because TlCommClient is not "
                                 L"connected"));
}

TEST_F(ConnectedClientTest, ADatasetThatLeavesAnErrorNamesTheWorkstationListWhateverTheTable) {
  client->errors = {L"gone"};
  Table data;
  EXPECT_FALSE(TlCommClientGetDataset(1, data));
  EXPECT_EQ(log(), debugLine(9, L"[TLPACSCFG] Getting dataset from TlCommClient") +
                       debugLine(10, L"[TLPACSCFG] DataIndex:1") +
                       errorBlock(L"[TLPACSCFG] Unable to retrieve workstation list: gone"));
}

TEST_F(ConnectedClientTest, AnInvalidTableFailsAndTheErrorIsStillRequested) {
  for (const std::wstring& error : {std::wstring(), std::wstring(L"gone")}) {
    client->calls.clear();
    client->errors = {error};
    failWith(L"GetTableData", UnreadableAnswer(RunTimeError(13, L"Type mismatch")));
    modLogSupport.g_strLogFile = scratchPath(L"component.log");
    writeBytes(modLogSupport.g_strLogFile, "");
    Table data = tableOf({{L"old"}});
    EXPECT_FALSE(TlCommClientGetDataset(1, data));
    EXPECT_EQ(data.columns(), 0U);
    EXPECT_EQ(client->calls, (Calls{L"GetTableData(0)", L"CheckForError()"}));
    std::string expected = debugLine(9, L"[TLPACSCFG] Getting dataset from TlCommClient") +
                           debugLine(10, L"[TLPACSCFG] DataIndex:1");
    if (!error.empty()) {
      expected += errorBlock(L"[TLPACSCFG] Unable to retrieve workstation list: " + error);
    }
    EXPECT_EQ(log(), expected);
  }
}

TEST_F(ConnectedClientTest, ADatasetThatLeavesAnErrorIsStillReturned) {
  client->table = tableOf({{L"41"}});
  client->errors = {L"gone"};
  Table data;
  EXPECT_FALSE(TlCommClientGetDataset(1, data));
  EXPECT_EQ(data.at(0, 0), L"41");
}

TEST_F(ConnectedClientTest, AFailingDatasetCallLeavesTheDataEmpty) {
  client->failing = {L"GetTableData"};
  Table data = tableOf({{L"old"}});
  EXPECT_FALSE(TlCommClientGetDataset(1, data));
  EXPECT_EQ(data.columns(), 0U);
}

TEST_F(ConnectedClientTest, ADatasetBeforeTheFirst16BitNumberFails) {
  Table data;
  EXPECT_FALSE(TlCommClientGetDataset(-32768, data));
  EXPECT_TRUE(client->calls.empty());
}

const std::wstring kStatementLines = L"[TLPACSCFG] Query:\r\ndelete from t";

TEST_F(ConnectedClientTest, AStatementIsExecutedInTheDatabase) {
  EXPECT_TRUE(TlCommClientExecute(L"delete from t"));
  EXPECT_EQ(client->calls, (Calls{L"SQLExecuteText(talora, delete from t)"}));
  EXPECT_EQ(log(), debugLine(9, L"[TLPACSCFG] Executing query using TlCommClient") +
                       debugLine(10, kStatementLines));
}

TEST_F(TlCommClientTest, AStatementWithoutAClientIsNotExecuted) {
  EXPECT_FALSE(TlCommClientExecute(L"delete from t"));
  EXPECT_EQ(log(), debugLine(9, L"[TLPACSCFG] Executing query using TlCommClient") +
                       debugLine(10, kStatementLines) +
                       debugLine(7,
                                 L"[TLPACSCFG] Cannot process query because TlCommClient is not "
                                 L"connected"));
}

TEST_F(ConnectedClientTest, AStatementThatDoesNotSucceedIsLoggedWithItsReason) {
  client->executes = false;
  client->errors = {L"no such table"};
  EXPECT_FALSE(TlCommClientExecute(L"delete from t"));
  EXPECT_EQ(log(), debugLine(9, L"[TLPACSCFG] Executing query using TlCommClient") +
                       debugLine(10, kStatementLines) +
                       errorBlock(L"[TLPACSCFG] Query failed to execute: no such table"));
}

TEST_F(ConnectedClientTest, AnErrorTextIsNotRequestedAfterASuccess) {
  client->errors = {L"left over"};
  EXPECT_TRUE(TlCommClientExecute(L"delete from t"));
  EXPECT_EQ(client->errors.size(), 1U);
}

TEST_F(ConnectedClientTest, AFailingExecuteCallAnswersFalse) {
  client->failing = {L"SQLExecuteText"};
  EXPECT_FALSE(TlCommClientExecute(L"delete from t"));
}

TEST_F(ConnectedClientTest, FilesAreListedByDirectoryAndPattern) {
  client->files = {L"a.xml", L"b.XML"};
  std::vector<std::wstring> files;
  EXPECT_TRUE(TlCommClientGetFileList(L"\\\\srv\\x\\TALORA\\PROMPTS", L"*.XML", files));
  EXPECT_EQ(files, client->files);
  EXPECT_EQ(client->calls, (Calls{L"GetNetworkDirectoryFiles(\\\\srv\\x\\TALORA\\PROMPTS, *.XML)",
                                  L"CheckForError()"}));
  EXPECT_EQ(log(), "");
}

TEST_F(TlCommClientTest, FilesWithoutAClientAreNotListed) {
  std::vector<std::wstring> files = {L"old"};
  EXPECT_FALSE(TlCommClientGetFileList(L"d", L"*.XML", files));
  EXPECT_EQ(log(), debugLine(7,
                             L"[TLPACSCFG] Cannot retrieve network files because TlCommClient is "
                             L"not connected"));
}

TEST_F(ConnectedClientTest, AFileListThatLeavesAnErrorFails) {
  client->errors = {L"no such directory"};
  std::vector<std::wstring> files;
  EXPECT_FALSE(TlCommClientGetFileList(L"d", L"*.XML", files));
  EXPECT_EQ(log(), errorBlock(L"[TLPACSCFG] Unable to get file list: no such directory"));
}

TEST_F(ConnectedClientTest, AnInvalidFileListFailsAndTheErrorIsStillRequested) {
  failWith(L"GetNetworkDirectoryFiles", UnreadableAnswer(RunTimeError(13, L"Type mismatch")));
  std::vector<std::wstring> files;
  EXPECT_FALSE(TlCommClientGetFileList(L"d", L"*.XML", files));
  EXPECT_EQ(log(), "");
  client->errors = {L"no such directory"};
  EXPECT_FALSE(TlCommClientGetFileList(L"d", L"*.XML", files));
  EXPECT_EQ(log(), errorBlock(L"[TLPACSCFG] Unable to get file list: no such directory"));
}

TEST_F(ConnectedClientTest, NoExceptionOfTheLibraryEscapesAnOperation) {
  client->listener = [](const std::wstring&) { throw std::bad_alloc(); };
  Table data;
  std::vector<std::wstring> files;
  EXPECT_EQ(TlCommClientQuery(L"q"), 0);
  EXPECT_FALSE(TlCommClientGetDataset(1, data));
  EXPECT_FALSE(TlCommClientExecute(L"q"));
  EXPECT_FALSE(TlCommClientGetFileList(L"d", L"*.XML", files));
  EXPECT_NO_THROW(DisconnectTlCommClient());
  EXPECT_FALSE(TlCommClientConnected());
  EXPECT_FALSE(ConnectTlCommClient(config));
}

TEST_F(ConnectedClientTest, AFailingFileListCallAnswersFalse) {
  client->failing = {L"GetNetworkDirectoryFiles"};
  std::vector<std::wstring> files;
  EXPECT_FALSE(TlCommClientGetFileList(L"d", L"*.XML", files));
}

TEST_F(ConnectedClientTest, AnUnwritableLogFailsEveryOperation) {
  logTo(scratchPath(L"missing/directory.log"));
  Table data;
  EXPECT_EQ(TlCommClientQuery(L"q"), 0);
  EXPECT_FALSE(TlCommClientGetDataset(1, data));
  EXPECT_FALSE(TlCommClientExecute(L"q"));
  EXPECT_FALSE(ConnectTlCommClient(config));
  EXPECT_TRUE(client->calls.empty());
  EXPECT_TRUE(TlCommClientConnected());
}

TEST(ValOrDefaultTest, ANumberIsTakenFromTheText) {
  EXPECT_EQ(ValOrDefault(L"12", 5), 12);
  EXPECT_EQ(ValOrDefault(L" -1 ", 5), -1);
  EXPECT_EQ(ValOrDefault(L"65000", 5), 65000);
  EXPECT_EQ(ValOrDefault(L"2.5", 5), 2);
}

TEST(ValOrDefaultTest, AnyOtherTextGivesTheDefault) {
  EXPECT_EQ(ValOrDefault(L"x", 5), 5);
  EXPECT_EQ(ValOrDefault(L"", 5), 5);
  EXPECT_EQ(ValOrDefault(L"12a", 5), 5);
}

TEST(ValOrDefaultTest, TooLargeANumberOverflows) {
  EXPECT_OVERFLOW(ValOrDefault(L"2147483648", 5));
}

TEST_F(ConnectedClientTest, AClientDisconnectedDuringACallLivesUntilTheCallEnds) {
  for (const wchar_t* method : {L"SQLQueryTable", L"GetTableData", L"SQLExecuteText",
                                L"GetNetworkDirectoryFiles", L"CheckForError"}) {
    client = connectFakeClient(L"talora");
    client->executes = false;
    int destroyedInside = -1;
    client->listener = [&](const std::wstring& called) {
      if (called != method || !TlCommClientConnected()) return;
      DisconnectTlCommClient();
      destroyedInside = client->destroyed;
    };
    Table data;
    std::vector<std::wstring> files;
    std::ignore = TlCommClientQuery(L"select");
    std::ignore = TlCommClientGetDataset(1, data);
    std::ignore = TlCommClientExecute(L"delete");
    std::ignore = TlCommClientGetFileList(L"X:", L"*.XML", files);
    EXPECT_EQ(destroyedInside, 0) << method;
    EXPECT_EQ(client->destroyed, 1) << method;
  }
}

TEST_F(ConnectedClientTest, WhateverIsThrownIsAFailure) {
  failWith(L"SQLQueryTable", 42);
  EXPECT_EQ(TlCommClientQuery(L"select"), 0);
  failWith(L"SQLExecuteText", 42);
  EXPECT_FALSE(TlCommClientExecute(L"delete"));
}

TEST_F(ConnectedClientTest, ARequiredCallThrowsTheClientsErrorText) {
  client->executes = false;
  client->reason = L"The table is locked.";
  EXPECT_RUNTIME_ERROR(requireTlCommClientExecution(L"delete"), 40002, L"The table is locked.");
  client->reason.clear();
  EXPECT_RUNTIME_ERROR(requireTlCommClientExecution(L"delete"), 40002,
                       L"The remote data client could not execute a statement.");
  client->errors = {L"No such table."};
  EXPECT_RUNTIME_ERROR(requireTlCommClientTable(L"select"), 40002, L"No such table.");
  client->tableCount = 2;
  EXPECT_RUNTIME_ERROR(requireTlCommClientTable(L"select"), 40002, L"Invalid table count returned");
  modTlCommClient.g_objTlCommClient.reset();
  EXPECT_RUNTIME_ERROR(requireTlCommClientTable(L"select"), 40002,
                       L"Cannot process query because TlCommClient is not connected");
}

}  // namespace
}  // namespace tlpacscfg::test
