#include <algorithm>

#include "support/runtime_error.h"
#include "harness/errors.h"
#include "harness/fake_client.h"
#include "ui/settings/editor/settings_editor_test.h"

/// Saving and deleting through the remote data client, which only logs its failures.
namespace tlpacscfg::test {
namespace {

using enum Control;
using system::Answer;
using system::Buttons;

constexpr const wchar_t* kLocked = L"The table is locked.";
constexpr const wchar_t* kUpdate = L"UPDATE Interface_PACS_cfg";
constexpr const wchar_t* kInsert = L"INSERT into Interface_PACS_cfg";
constexpr const wchar_t* kDelete = L"delete from interface_PACS_cfg";
constexpr const wchar_t* kMark = L"System_offline_db_updates";

class SettingsRemoteTest : public SettingsEditorTest {
 protected:
  /// Opens the editor on the site's configurations and then connects a client of the same site.
  void openRemotely(std::int16_t configID) {
    makeSite();
    open(configID);
    client = connectSiteClient();
  }

  void refuse(const wchar_t* statement) {
    client->refused = statement;
    client->reason = kLocked;
  }
  /// From now on the statement is executed, but its answer is lost. Returns the function that
  /// executes statements normally.
  std::function<void(const std::wstring&)> loseTheAnswerTo(const wchar_t* statement) {
    const auto run = client->execute;
    client->execute = [run, statement](const std::wstring& sql) {
      run(sql);
      if (sql.starts_with(statement)) throw RunTimeError(1, L"The time is over.");
    };
    return run;
  }
  void accept() {
    client->refused.clear();
    client->calls.clear();
  }

  std::ptrdiff_t sent(const std::wstring& piece) const {
    return std::count_if(client->calls.begin(), client->calls.end(), [&](const std::wstring& call) {
      return call.starts_with(L"SQLExecuteText(") && call.find(piece) != call.npos;
    });
  }

  void expectRefused(const std::function<void()>& command) {
    EXPECT_RUNTIME_ERROR(command(), 40002, kLocked);
  }

  std::shared_ptr<ClientScript> client;
};

TEST_F(SettingsRemoteTest, ASaveIsSentAndHandedOver) {
  openRemotely(5);
  type(txtDescription, L"Changed");
  editor.btnSave();
  EXPECT_EQ(sent(kUpdate), 1);
  EXPECT_EQ(sent(kMark), 1);
  EXPECT_EQ(hostDescription(5), L"Changed");
  EXPECT_EQ(listRefreshes, 1);
}

TEST_F(SettingsRemoteTest, ARefusedSaveIsAnErrorInTheClientsWordsAndTheEditsStay) {
  openRemotely(5);
  type(txtDescription, L"Changed");
  refuse(kUpdate);
  expectRefused([&] { editor.btnSave(); });
  EXPECT_EQ(editor.form[txtDescription].text, L"Changed");
  EXPECT_EQ(editor.currentID(), 5);
  EXPECT_EQ(hostDescription(5), L"Five");
  EXPECT_EQ(listRefreshes, 0);
}

TEST_F(SettingsRemoteTest, ARefusedSaveIsSentAgainByTheNextOne) {
  openRemotely(5);
  type(txtDescription, L"Changed");
  refuse(kUpdate);
  expectRefused([&] { editor.btnSave(); });
  accept();
  editor.btnSave();
  EXPECT_EQ(sent(kUpdate), 1);
  EXPECT_EQ(hostDescription(5), L"Changed");
  editor.btnSave();
  EXPECT_EQ(sent(kUpdate), 1) << "Nothing is left to be saved.";
}

TEST_F(SettingsRemoteTest, ExitAsksAboutWhatTheClientRefused) {
  openRemotely(5);
  type(txtDescription, L"Changed");
  refuse(kUpdate);
  expectRefused([&] { editor.btnSave(); });
  answers = {Answer::Cancel};
  EXPECT_FALSE(editor.btnExit());
  expectAsked(kSaveQuestion, Buttons::YesNoCancel);
}

TEST_F(SettingsRemoteTest, ARefusedMarkForOfflineCopiesFailsNothing) {
  openRemotely(5);
  type(txtDescription, L"Changed");
  refuse(kMark);
  editor.btnSave();
  EXPECT_EQ(sent(kUpdate), 1);
  EXPECT_EQ(sent(kMark), 1);
  EXPECT_EQ(hostDescription(5), L"Changed");
}

TEST_F(SettingsRemoteTest, ARefusedInsertLeavesTheConfigurationNewAndOutsideTheCollection) {
  openRemotely(5);
  editor.btnNew();
  applyPendingRules();
  type(txtDescription, L"Ten");
  refuse(kInsert);
  expectRefused([&] { editor.btnSave(); });
  EXPECT_TRUE(editor.isNew());
  EXPECT_EQ(editor.currentID(), 0);
  EXPECT_EQ(editor.rows.rowCount(), 3U);
  EXPECT_EQ(editor.form[txtDescription].text, L"Ten");
  EXPECT_EQ(hostDescription(10), L"<none>");
  answers = {Answer::Cancel};
  EXPECT_FALSE(editor.btnExit());
  expectAsked(kNewQuestion, Buttons::YesNoCancel);
  accept();
  editor.btnSave();
  EXPECT_EQ(sent(kInsert), 1);
  EXPECT_FALSE(editor.isNew());
  EXPECT_EQ(hostDescription(10), L"Ten");
}

TEST_F(SettingsRemoteTest, ARefusedDeleteShowsTheDirectPathsBoxAndKeepsTheConfiguration) {
  openRemotely(5);
  refuse(kDelete);
  answers = {Answer::Yes};
  editor.btnDelete();
  ASSERT_EQ(messages.size(), 2U);
  EXPECT_EQ(messages[1].text,
            L"Error Deleting configID = 5 from the DB. \r\nError = 40002 Error Description = The "
            L"table is locked.");
  EXPECT_EQ(editor.rows.rowCount(), 3U);
  EXPECT_EQ(editor.currentID(), 1) << "as after a delete";
  EXPECT_EQ(description(5), L"Five");
  EXPECT_EQ(hostDescription(5), L"Five");
  EXPECT_EQ(host->m_colPACSConfig->GetItemNumber(5), 3) << "at its former place";
}

TEST_F(SettingsRemoteTest, ARefusedDeleteIsSentAgainByTheNextOne) {
  openRemotely(5);
  refuse(kDelete);
  answers = {Answer::Yes, Answer::Ok, Answer::Yes};
  editor.btnDelete();
  accept();
  editor.rowClicked(1);
  editor.btnDelete();
  EXPECT_EQ(sent(L"where config_id = '5'"), 1);
  EXPECT_EQ(hostDescription(5), L"<none>");
  EXPECT_EQ(editor.currentID(), 1);
}

TEST_F(SettingsRemoteTest, AClientThatIsGoneIsAnErrorToo) {
  openRemotely(5);
  type(txtDescription, L"Changed");
  client->failing = {L"SQLExecuteText"};
  EXPECT_RUNTIME_ERROR(editor.btnSave(), 40002,
                       L"The object invoked has disconnected from its clients.");
  EXPECT_EQ(editor.form[txtDescription].text, L"Changed");
}

TEST_F(SettingsRemoteTest, AnIdentifierInTheListIsReplacedByTheNextFreeOne) {
  openRemotely(5);
  editor.btnNew();
  applyPendingRules();
  type(txtDescription, L"Ten");
  site.run(L"delete from Interface_PACS_cfg where config_id > 1");
  editor.btnSave();
  EXPECT_EQ(editor.currentID(), 2);
  EXPECT_EQ(description(2), L"Ten");
}

TEST_F(SettingsRemoteTest, ANewConfigurationIsNumberedBeforeItsControlsAreRead) {
  openRemotely(5);
  editor.btnNew();
  applyPendingRules();
  client->calls.clear();
  type(txtDescription, L"Ten");
  type(txtPort, L"99999999999999999999");
  EXPECT_OVERFLOW(editor.btnSave());
  ASSERT_FALSE(client->calls.empty());
  EXPECT_TRUE(client->calls.front().starts_with(L"SQLQueryTable(site, SELECT TOP 1 config_id"));
  EXPECT_EQ(sent(L""), 0);
}

TEST_F(SettingsRemoteTest, WhatAnUnansweredSaveStoredCanBeUndoneByTheNext) {
  openRemotely(5);
  const auto run = loseTheAnswerTo(kUpdate);
  type(txtDescription, L"Wrong");
  EXPECT_THROW(editor.btnSave(), RunTimeError);
  EXPECT_EQ(description(5), L"Wrong");
  client->execute = run;
  type(txtDescription, L"Five");
  editor.btnSave();
  EXPECT_EQ(description(5), L"Five");
  EXPECT_TRUE(messages.empty());
}

TEST_F(SettingsRemoteTest, LeavingAsksAboutAnUnansweredSaveEvenWhenTheOldTextIsBack) {
  openRemotely(5);
  const auto run = loseTheAnswerTo(kUpdate);
  type(txtDescription, L"Wrong");
  EXPECT_THROW(editor.btnSave(), RunTimeError);
  client->execute = run;
  type(txtDescription, L"Five");
  answers = {Answer::Yes};
  EXPECT_TRUE(editor.btnExit());
  expectAsked(kSaveQuestion, Buttons::YesNoCancel);
  EXPECT_EQ(messages.size(), 1U);
  EXPECT_EQ(description(5), L"Five");
}

TEST_F(SettingsRemoteTest, AnUnansweredSaveOfOnesOwnIsNobodyElsesChange) {
  openRemotely(5);
  const auto run = loseTheAnswerTo(kUpdate);
  type(txtDescription, L"Wrong");
  EXPECT_THROW(editor.btnSave(), RunTimeError);
  client->execute = run;
  type(txtDescription, L"Right");
  editor.btnSave();
  EXPECT_EQ(description(5), L"Right");
  EXPECT_TRUE(messages.empty());
}

TEST_F(SettingsRemoteTest, AnUnansweredInsertIsNotRepeatedHoweverOftenItIsTried) {
  openRemotely(5);
  const auto run = loseTheAnswerTo(kInsert);
  editor.btnNew();
  applyPendingRules();
  type(txtDescription, L"Mine");
  EXPECT_THROW(editor.btnSave(), RunTimeError);
  client->execute = run;
  client->failing = {L"SQLQueryTable"};
  EXPECT_THROW(editor.btnSave(), RunTimeError);
  client->failing.clear();
  editor.btnSave();
  EXPECT_EQ(count(), L"4");
  EXPECT_EQ(description(10), L"Mine");
  EXPECT_EQ(editor.currentID(), 10);
  EXPECT_FALSE(editor.isNew());
}

TEST_F(SettingsRemoteTest, AnInsertThatStoredNothingIsAnError) {
  openRemotely(5);
  const auto run = client->execute;
  client->execute = [run](const std::wstring& sql) {
    if (!sql.starts_with(kInsert)) run(sql);
  };
  editor.btnNew();
  applyPendingRules();
  type(txtDescription, L"Mine");
  EXPECT_RUNTIME_ERROR(editor.btnSave(), 40002,
                       L"Nothing was saved. The configuration is not in the database.");
  EXPECT_TRUE(editor.isNew());
  EXPECT_EQ(hostDescription(10), L"<none>");
}

}  // namespace
}  // namespace tlpacscfg::test
