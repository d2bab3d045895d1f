#include "ui/workstation_list/editor/workstation_list_editor_test.h"

/// The content, the order and the selected row of the list.
namespace tlpacscfg::test {
namespace {

TEST_F(WorkstationListEditorTest, ARowShowsTheWorkstationAndItsConfiguration) {
  addConfiguration(1, L"description = 'Default', request_filename = 'C:\\req.xml'");
  addWorkstation(L"PC-2", L"0");
  addWorkstation(L"PC-1");
  assign(L"PC-2", L"'1'");
  open(WorkstationFilter::Assigned);
  ASSERT_EQ(1U, editor.rows.rowCount());
  EXPECT_EQ((Texts{L"1", L"PC-2", L"1 - Default", L"C:\\req.xml", L"1"}), row(0));
}

TEST_F(WorkstationListEditorTest, TheFiltersShowAssignedOrExpertWorkstationsOrAll) {
  addWorkstation(L"PC-1", L"1");
  addWorkstation(L"PC-2", L"0");
  addWorkstation(L"PC-3", L"2");
  open(WorkstationFilter::Assigned);
  EXPECT_EQ(0U, editor.rows.rowCount());
  EXPECT_EQ(std::nullopt, editor.selectedRow);
  editor.filter = WorkstationFilter::Expert;
  EXPECT_TRUE(editor.FillPCList());
  EXPECT_EQ((Texts{L"PC-1"}), column(1));
  editor.filter = WorkstationFilter::All;
  EXPECT_TRUE(editor.FillPCList());
  EXPECT_EQ((Texts{L"PC-1", L"PC-2", L"PC-3"}), column(1));
}

TEST_F(WorkstationListEditorTest, TheRequestFileColumnTellsBrokersUndefinedFilesAndNone) {
  addConfiguration(1, L"pacs_type = 4, request_filename = 'ignored'");
  addConfiguration(2, L"pacs_type = 5");
  addConfiguration(3, L"pacs_type = 1");
  addConfiguration(4, L"pacs_type = 8, request_filename = 'r.xml'");
  for (int i = 1; i <= 4; ++i) {
    addWorkstation(L"PC-" + decimal(i));
    assign(L"PC-" + decimal(i), L"'" + decimal(i) + L"'");
  }
  addWorkstation(L"PC-5");
  open();
  EXPECT_EQ((Texts{L"COM - Broker Interface", L"COM - Broker Interface", L"Not Defined", L"r.xml",
                   L"N/A"}),
            column(3));
  EXPECT_EQ((Texts{L"1", L"2", L"3", L"4", L"9999"}), column(4));
}

TEST_F(WorkstationListEditorTest, AConfigurationThatIsGoneShowsNoneAndKeepsItsIdentifier) {
  addConfiguration(1);
  addWorkstation(L"PC-1");
  assign(L"PC-1", L"'7'");
  open();
  EXPECT_EQ((Texts{L"1", L"PC-1", L"None", L"N/A", L"7"}), row(0));
  EXPECT_TRUE(editor.saveAssignments());
  EXPECT_EQ(L"7", stored(L"PC-1"));
}

TEST_F(WorkstationListEditorTest, WithoutConfigurationsEveryRowShowsNone) {
  addWorkstation(L"PC-1");
  addWorkstation(L"PC-2");
  assign(L"PC-1", L"'1'");
  open();
  EXPECT_EQ((Texts{L"None", L"None"}), column(2));
  EXPECT_EQ((Texts{L"N/A", L"N/A"}), column(3));
}

TEST_F(WorkstationListEditorTest, EveryRefillSortsByNameAscendingWithoutRegardToCase) {
  for (const wchar_t* name : {L"beta", L"ALPHA", L"Gamma", L"alpha-2"}) addWorkstation(name);
  open();
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ((Texts{L"ALPHA", L"alpha-2", L"beta", L"Gamma"}), column(1));
    EXPECT_TRUE(editor.FillPCList());
  }
}

TEST_F(WorkstationListEditorTest, AHeaderSortsEitherWayAndConfigurationsByNumberNoneLast) {
  for (const int id : {2, 10, 9}) {
    addConfiguration(id);
    addWorkstation(L"PC-" + decimal(id));
    assign(L"PC-" + decimal(id), L"'" + decimal(id) + L"'");
  }
  addWorkstation(L"PC-1");
  open();
  editor.headerClicked(2);
  EXPECT_EQ((Texts{L"9999", L"10", L"9", L"2"}), column(4));
  editor.headerClicked(2);
  EXPECT_EQ((Texts{L"2", L"9", L"10", L"9999"}), column(4));
  editor.headerClicked(1);
  EXPECT_EQ((Texts{L"PC-9", L"PC-2", L"PC-10", L"PC-1"}), column(1));
  editor.headerClicked(1);
  EXPECT_EQ((Texts{L"PC-1", L"PC-10", L"PC-2", L"PC-9"}), column(1));
}

TEST_F(WorkstationListEditorTest, AHeaderKeepsTheWorkstationSelected) {
  for (const wchar_t* name : {L"PC-1", L"PC-2", L"PC-3"}) addWorkstation(name);
  open();
  editor.selectedRow = 2;
  editor.headerClicked(1);
  EXPECT_EQ(0U, editor.selectedRow);
  EXPECT_EQ(L"PC-3", editor.rows.cell(0, 1));
}

TEST_F(WorkstationListEditorTest, ARefillSelectsTheLocalComputerOrTheFirstRow) {
  for (const wchar_t* name : {L"A-01", L"READ-01", L"Z-01"}) addWorkstation(name);
  open();
  EXPECT_EQ(1U, editor.selectedRow);
  system::computerName = [] { return std::wstring(L"read-01"); };
  EXPECT_TRUE(editor.FillPCList());
  EXPECT_EQ(0U, editor.selectedRow) << "Names are compared with their case.";
}

TEST_F(WorkstationListEditorTest, TheWorkstationChosenForEditingIsSelectedAgainAfterARefill) {
  for (const wchar_t* name : {L"A-01", L"READ-01", L"Z-01"}) addWorkstation(name);
  assign(L"Z-01", L"'7'");
  open();
  editor.selectedRow = 2;
  const auto chosen = editor.cmdEditWorkstation();
  ASSERT_TRUE(chosen.has_value());
  EXPECT_EQ(L"Z-01", chosen->workstation);
  EXPECT_EQ(7, chosen->configID);
  EXPECT_EQ(7, editor.cmdEditConfig());
  EXPECT_TRUE(editor.FillPCList());
  EXPECT_EQ(1U, editor.selectedRow);
  editor.SetItemFocus();
  EXPECT_EQ(2U, editor.selectedRow);
}

TEST_F(WorkstationListEditorTest, WithoutASelectedRowTheDefaultConfigurationIsToBeEdited) {
  open();
  EXPECT_EQ(0, editor.cmdEditConfig());
  EXPECT_FALSE(editor.cmdEditWorkstation().has_value());
}

TEST_F(WorkstationListEditorTest, AnAssignmentMadeSinceTheRefillIsTheOneToEdit) {
  addWorkstation(L"PC-1");
  open();
  host->m_colWorkstation->Item(1)->configID = 5;
  EXPECT_TRUE(editor.isOutOfDate());
  EXPECT_EQ(5, editor.cmdEditConfig());
  EXPECT_TRUE(editor.refill());
  EXPECT_FALSE(editor.isOutOfDate());
}

TEST_F(WorkstationListEditorTest, TheIdentifierThatStandsForNoneOpensTheDefaultConfiguration) {
  addWorkstation(L"PC-1");
  open();
  host->m_colWorkstation->Item(1)->configID = 9999;
  EXPECT_TRUE(editor.refill());
  EXPECT_EQ(0, editor.cmdEditConfig());
  EXPECT_EQ(0, editor.cmdEditWorkstation()->configID);
  EXPECT_FALSE(editor.isOutOfDate());
}

TEST_F(WorkstationListEditorTest, AFailedRefillIsReportedUnderItsOwnTitleAndKeepsTheRows) {
  addWorkstation(L"PC-1");
  open();
  host->m_colPACSConfig = nullptr;
  EXPECT_FALSE(editor.FillPCList());
  ASSERT_EQ(1U, messages.size());
  EXPECT_EQ(
      L"PACS interface configuration could not be loaded.  Please contact Brannock & Company "
      L"for technical support.",
      messages[0].text);
  EXPECT_EQ(L"Corvane Search Configurations", messages[0].title);
  EXPECT_EQ((Texts{L"PC-1"}), column(1));
}

TEST(ReplaceNullTest, ANullBecomesNotAvailable) {
  EXPECT_EQ(L"N/A", ReplaceNull(std::nullopt));
  EXPECT_EQ(L"x", ReplaceNull(L"x"));
}

}  // namespace
}  // namespace tlpacscfg::test
