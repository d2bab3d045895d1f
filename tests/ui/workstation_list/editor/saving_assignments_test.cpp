#include "ui/workstation_list/editor/workstation_list_editor_test.h"

#include "harness/fake_client.h"
#include "host/site_access.h"
#include "support/runtime_error.h"

/// Saving and questions when the workstation list is closed.
namespace tlpacscfg::test {
namespace {

using system::Answer;

class SavingAssignmentsTest : public WorkstationListEditorTest {
 protected:
  /// Expects the error in the usual box and the question, and clears the messages.
  void expectCloseQuestionAfter(const std::wstring& error) {
    ASSERT_EQ(2U, messages.size());
    EXPECT_TRUE(messages[0].text.starts_with(error)) << toUtf8(messages[0].text);
    EXPECT_EQ(L"The workstation assignments could not be saved. Close without saving them?",
              messages[1].text);
    EXPECT_EQ(system::Buttons::YesNo, messages[1].buttons);
    EXPECT_EQ(Answer::No, messages[1].defaultAnswer);
    EXPECT_EQ(system::Icon::None, messages[1].icon);
    EXPECT_EQ(system::Modality::System, messages[1].modality);
    messages.clear();
  }

  /// PC-1 is reassigned to 2 here and to 3 elsewhere.
  void openInConflict() {
    addConfiguration(1, L"description = 'One'");
    addConfiguration(2, L"description = 'Two'");
    addWorkstation(L"PC-1");
    assign(L"PC-1", L"'1'");
    open();
    host->m_colWorkstation->Item(1)->configID = 2;
    site.run(L"update System_workstation_cfg set key_value = '3'");
  }

  void expectConflictQuestion() const {
    ASSERT_EQ(1U, messages.size());
    EXPECT_EQ(
        L"Somebody else reassigned workstations that were reassigned here too:\r\nPC-1: here 2 - "
        L"Two, stored 3\r\nSave the assignments made here? No keeps the stored ones.",
        messages[0].text);
    EXPECT_EQ(system::Buttons::YesNoCancel, messages[0].buttons);
    EXPECT_EQ(Answer::Cancel, messages[0].defaultAnswer);
    EXPECT_EQ(system::Icon::None, messages[0].icon);
    EXPECT_EQ(system::Modality::System, messages[0].modality);
  }
};

TEST_F(SavingAssignmentsTest, OneRowForEveryWorkstationAndTheMarkAreWritten) {
  for (const wchar_t* name : {L"PC-101", L"PC-102", L"PC-103"}) addWorkstation(name);
  assign(L"PC-101", L"'1'");
  open();
  EXPECT_TRUE(editor.saveAssignments());
  EXPECT_EQ(site.rows(L"select pc_name, key_value from System_workstation_cfg order by pc_name"),
            (ProbeRows{{L"PC-101", L"1"}, {L"PC-102", L"0"}, {L"PC-103", L"0"}}));
  EXPECT_EQ(site.value(L"select count(*) from System_offline_db_updates"), L"1");
  ASSERT_FALSE(progress.empty());
  EXPECT_EQ(progress.back(), 3U);
}

TEST_F(SavingAssignmentsTest, AnErrorOfTheProgressWindowDoesNotPreventSaving) {
  addWorkstation(L"PC-1");
  open();
  WorkstationListEditor failing(host, [] { return [](std::size_t, std::size_t) { throw 42; }; });
  EXPECT_TRUE(failing.saveAssignments());
  EXPECT_EQ(L"0", stored(L"PC-1"));
}

TEST_F(SavingAssignmentsTest, ANameThatHoldsASingleQuoteIsAnErrorAndNothingIsWritten) {
  addWorkstation(L"O''BRIEN");
  addWorkstation(L"PC-1");
  assign(L"PC-1", L"'1'");
  open();
  EXPECT_THROW((void)editor.saveAssignments(), RunTimeError);
  answers = {Answer::Ok, Answer::No};
  EXPECT_FALSE(editor.saveOrAbandon());
  expectCloseQuestionAfter(
      L"Run-time error '40002':\r\nWorkstation 'O'BRIEN': Its name holds a single quote. Nothing "
      L"was saved.");
  EXPECT_EQ(site.rows(L"select pc_name, key_value from System_workstation_cfg"),
            (ProbeRows{{L"PC-1", L"1"}}));
}

TEST_F(SavingAssignmentsTest, AFailedSaveCanBeGivenUpAndIsTriedEachTime) {
  addWorkstation(L"PC-1");
  open();
  site.run(kRefuseInserts);
  for (const Answer answer : {Answer::No, Answer::Yes}) {
    answers = {Answer::Ok, answer};
    EXPECT_EQ(answer == Answer::Yes, editor.saveOrAbandon());
    expectCloseQuestionAfter(L"Run-time error '40002':\r\n");
  }
  site.run(L"DROP TRIGGER refuse");
  EXPECT_TRUE(editor.saveOrAbandon());
  EXPECT_TRUE(messages.empty());
  EXPECT_EQ(L"0", stored(L"PC-1"));
}

TEST_F(SavingAssignmentsTest, WhatTheRemoteClientRefusesIsReportedAndSentAgain) {
  addWorkstation(L"PC-1");
  open();
  const auto client = connectSiteClient();
  host->path = OpenedPath::ofModules(*host->settings);
  client->refused = L"system_workstation_cfg";
  client->reason = L"The table is locked.";
  answers = {Answer::Ok, Answer::No};
  EXPECT_FALSE(editor.saveOrAbandon());
  expectCloseQuestionAfter(L"Run-time error '40002':\r\nThe table is locked.");
  client->refused.clear();
  EXPECT_TRUE(editor.saveOrAbandon());
  EXPECT_EQ(L"0", stored(L"PC-1"));
}

TEST_F(SavingAssignmentsTest, AConflictAnsweredYesSavesTheAssignmentsMadeHere) {
  openInConflict();
  answers = {Answer::Yes};
  EXPECT_TRUE(editor.saveAssignments());
  expectConflictQuestion();
  EXPECT_EQ(L"2", stored(L"PC-1"));
}

TEST_F(SavingAssignmentsTest, AConflictAnsweredNoKeepsTheStoredOnes) {
  openInConflict();
  answers = {Answer::No};
  EXPECT_TRUE(editor.saveAssignments());
  expectConflictQuestion();
  EXPECT_EQ(L"3", stored(L"PC-1"));
  EXPECT_EQ(3, host->m_colWorkstation->Item(1)->configID);
}

TEST_F(SavingAssignmentsTest, ACancelledConflictStaysAndWritesNothing) {
  openInConflict();
  answers = {Answer::Cancel};
  EXPECT_FALSE(editor.saveAssignments());
  expectConflictQuestion();
  EXPECT_EQ(L"3", stored(L"PC-1"));
  EXPECT_EQ(L"0", site.value(L"select count(*) from System_offline_db_updates"));
}

TEST_F(SavingAssignmentsTest, ACollectionThatAHostReplacesWhileAQuestionWaitsStaysAlive) {
  openInConflict();
  const std::weak_ptr<colWorkstation> asked = host->m_colWorkstation;
  bool freed = true;
  system::showMessage = [&](const system::Message&) {
    host->m_colWorkstation = std::make_shared<colWorkstation>();
    freed = asked.expired();
    return Answer::No;
  };
  EXPECT_TRUE(editor.saveAssignments());
  EXPECT_FALSE(freed);
}

TEST_F(SavingAssignmentsTest, ASecondObjectOfTheHostDoesNotAffectTheList) {
  addWorkstation(L"PC-1");
  open();
  host->path = OpenedPath::ofModules(*host->settings);
  const auto another = std::make_shared<clsConfig>();
  EXPECT_TRUE(editor.saveAssignments());
  EXPECT_TRUE(messages.empty());
  EXPECT_EQ(L"0", stored(L"PC-1"));
}

}  // namespace
}  // namespace tlpacscfg::test
