#include "ui/settings/editor/settings_editor_test.h"

#include <map>

#include "data/direct_connections.h"
#include "data/mod_main.h"
#include "harness/errors.h"
#include "support/runtime_error.h"
#include "ui/settings/values/settings_binding.h"

namespace tlpacscfg::test {
namespace {

using enum Control;
using system::Answer;
using system::Buttons;

TEST_F(SettingsEditorTest, ZeroOpensTheDefaultConfiguration) {
  makeSite();
  open(0);
  EXPECT_EQ(1, editor.currentID());
  EXPECT_EQ(L"Default", editor.form[txtDescription].text);
  EXPECT_FALSE(editor.form[txtDescription].enabled);
  EXPECT_EQ(0u, editor.selectedRow);
  EXPECT_TRUE(editor.descriptionFocusWanted);
}

TEST_F(SettingsEditorTest, AnyOtherConfigurationsDescriptionCanBeEdited) {
  makeSite();
  open(5);
  EXPECT_EQ(L"Five", editor.form[txtDescription].text);
  EXPECT_TRUE(editor.form[txtDescription].enabled);
  EXPECT_EQ(1u, editor.selectedRow);
}

TEST_F(SettingsEditorTest, TheListHoldsEveryStoredConfigurationUnderItsKey) {
  makeSite();
  open(5);
  ASSERT_EQ(3u, editor.rows.rowCount());
  EXPECT_EQ(L"9", editor.rows.cell(2, ConfigurationRows::kConfigID));
  EXPECT_EQ(L"9 - Nine", editor.rows.cell(2, ConfigurationRows::kConfiguration));
  EXPECT_EQ(L"9", editor.rows.cell(2, ConfigurationRows::kHiddenID));
  EXPECT_EQ(L"", editor.rows.cell(3, ConfigurationRows::kConfigID));
  EXPECT_EQ(L"C9", editor.rows.key(2));
  EXPECT_EQ(9, ConfigurationRows::configIDOfKey(L"C9"));
  EXPECT_EQ(std::nullopt, editor.rows.rowOfKey(L"C7"));
}

TEST_F(SettingsEditorTest, OpeningAsksForTheRulesOnce) {
  makeSite();
  connect();
  host->m_colPACSConfig = std::make_shared<colPACSConfiguration>();
  host->m_colPACSConfig->GetPACSConfigurations();
  editor.load();
  EXPECT_FALSE(editor.rulesWanted);
  EXPECT_TRUE(editor.firstTabWanted);
  editor.ShowPACSSettings(5);
  EXPECT_TRUE(editor.rulesWanted);
}

TEST_F(SettingsEditorTest, AnEmptySiteOpensWithDefaultsAndNoRowSelected) {
  open(0);
  EXPECT_EQ(0u, editor.rows.rowCount());
  EXPECT_EQ(std::nullopt, editor.selectedRow);
  EXPECT_TRUE(editor.isNew());
  EXPECT_EQ(L"", editor.form[txtDescription].text);
  EXPECT_TRUE(isBlank(editor.form));
  EXPECT_FALSE(editor.descriptionFocusWanted);
}

TEST_F(SettingsEditorTest, TheFirstConfigurationOfAnEmptySiteGetsTheIdentifierOne) {
  open(0);
  type(txtDescription, L"First");
  editor.btnSave();
  EXPECT_EQ(1, editor.currentID());
  EXPECT_EQ(L"First", description(1));
  EXPECT_EQ(0u, editor.selectedRow);
  EXPECT_EQ(L"First", hostDescription(1));
}

TEST_F(SettingsEditorTest, AnUnknownConfigurationShowsNothingNewAndSelectsNoRow) {
  makeSite();
  open(7);
  EXPECT_EQ(L"c:\\pacs\\request.xml", editor.form[txtRequestFileName].text);
  EXPECT_EQ(std::nullopt, editor.selectedRow);
  EXPECT_TRUE(editor.btnExit());
  EXPECT_TRUE(messages.empty());
}

TEST_F(SettingsEditorTest, SavingForAnUnknownConfigurationIsAnError) {
  makeSite();
  open(7);
  editor.TmrFieldChange();
  for (const ControlDesign& control : controls()) {
    if (control.kind == Kind::List) editor.form[control.control].position = 0;
  }
  type(txtDescription, L"Nobody");
  EXPECT_RUNTIME_ERROR(editor.btnSave(), 91, L"Object variable or With block variable not set");
  EXPECT_EQ(L"3", count());
}

TEST_F(SettingsEditorTest, SavingWithoutAnEditWritesNothing) {
  makeSite();
  open(5);
  site.run(L"update Interface_PACS_cfg set description = 'elsewhere' where config_id = 5");
  editor.btnSave();
  EXPECT_EQ(L"elsewhere", description(5));
  EXPECT_EQ(L"0", site.value(L"select count(*) from System_offline_db_updates"));
}

TEST_F(SettingsEditorTest, ADisabledListWithoutAnEntryAllowsSavingAndKeepsItsColumn) {
  addConfiguration(1, std::wstring(kConsistent) + L", description = 'Default', flag8 = 1");
  open(1);
  ASSERT_FALSE(editor.form[cmbContextUpdate].enabled);
  ASSERT_EQ(-1, editor.form[cmbContextUpdate].position);
  EXPECT_TRUE(editor.CheckForSave(1));
  EXPECT_TRUE(messages.empty());
  type(txtPort, L"104");
  editor.btnSave();
  EXPECT_EQ(L"104", site.value(L"select flag6 from Interface_PACS_cfg where config_id = 1"));
  EXPECT_EQ(L"1", site.value(L"select flag8 from Interface_PACS_cfg where config_id = 1"));
}

TEST_F(SettingsEditorTest, AnEnabledListWithoutAnEntryCannotBeSaved) {
  addConfiguration(1, std::wstring(kConsistent) + L", description = 'Default', flag10 = 99");
  open(1);
  ASSERT_TRUE(editor.form[cmbPollingDisplayField].enabled);
  EXPECT_RUNTIME_ERROR(editor.btnSave(), 381, L"Invalid property array index");
}

TEST_F(SettingsEditorTest, SavingAnEditUpdatesTheRowTheHostAndTheList) {
  makeSite();
  open(5);
  type(txtDescription, L"O'Neil");
  type(txtPort, L"104");
  editor.deleteEnabled = false;
  editor.btnSave();
  EXPECT_EQ(L"O'Neil", description(5));
  EXPECT_EQ(L"104", site.value(L"select flag6 from Interface_PACS_cfg where config_id = 5"));
  EXPECT_EQ(L"42", site.value(L"select last_user_id from Interface_PACS_cfg where config_id = 5"));
  EXPECT_EQ(L"1", site.value(L"select count(*) from System_offline_db_updates"));
  EXPECT_EQ(L"O'Neil", hostDescription(5));
  EXPECT_EQ(1, listRefreshes);
  EXPECT_EQ(L"5 - O'Neil", editor.rows.cell(1, ConfigurationRows::kConfiguration));
  EXPECT_EQ(1u, editor.selectedRow);
  EXPECT_TRUE(editor.deleteEnabled);
  EXPECT_TRUE(messages.empty());
}

TEST_F(SettingsEditorTest, TheHostGetsACopyThatLaterEditsDoNotTouch) {
  makeSite();
  open(5);
  type(txtDescription, L"Once");
  editor.btnSave();
  const auto handedOver = host->m_colPACSConfig;
  type(txtDescription, L"Twice");
  editor.btnSave();
  EXPECT_NE(handedOver, host->m_colPACSConfig);
  EXPECT_EQ(L"Once", handedOver->Item(handedOver->GetItemNumber(5))->Description);
  EXPECT_EQ(L"Twice", hostDescription(5));
}

TEST_F(SettingsEditorTest, AFailedCheckWritesNothing) {
  makeSite();
  open(5);
  type(txtDescription, L"default");
  editor.btnSave();
  ASSERT_EQ(1u, messages.size());
  EXPECT_EQ(L"Five", description(5));
  EXPECT_EQ(0, listRefreshes);
}

TEST_F(SettingsEditorTest, EveryFailedCheckIsShownAsANotice) {
  makeSite();
  open(5);
  type(txtDescription, L"");
  selectCode(editor.form, cmbVendorType, vendor::kTcpIp);
  editor.btnSave();
  ASSERT_EQ(2u, messages.size());
  expectAsked(kBlankDescription, Buttons::Ok);
  EXPECT_EQ(L"TCP/IP Port is not valid.  Please enter a port number between 1 and 65000.",
            messages[1].text);
}

TEST_F(SettingsEditorTest, APortThatIsNotUsedIsSilentlyReset) {
  makeSite();
  open(5);
  type(txtPort, L"abc");
  editor.btnSave();
  EXPECT_EQ(L"0", editor.form[txtPort].text);
  EXPECT_TRUE(messages.empty());
}

TEST_F(SettingsEditorTest, APortThatDoesNotFitIsAnErrorAndNothingIsWritten) {
  makeSite();
  open(5);
  type(txtDescription, L"Changed");
  type(txtPort, L"99999999999999999999");
  EXPECT_OVERFLOW(editor.btnSave());
  EXPECT_EQ(L"Five", description(5));
  EXPECT_EQ(L"Changed", editor.form[txtDescription].text);
  EXPECT_EQ(L"99999999999999999999", editor.form[txtPort].text);
  type(txtPort, L"7");
  editor.btnSave();
  EXPECT_EQ(L"Changed", description(5));
}

TEST_F(SettingsEditorTest, AStatementThatFailsLeavesTheEditsToBeSavedOnceMore) {
  makeSite();
  open(5);
  type(txtDescription, L"Changed");
  type(txtContextXML, L"o'clock");
  EXPECT_THROW(editor.btnSave(), RunTimeError);
  EXPECT_EQ(L"Five", description(5));
  EXPECT_EQ(L"Five", hostDescription(5));
  EXPECT_EQ(L"o'clock", editor.form[txtContextXML].text);
  type(txtContextXML, L"clock");
  editor.btnSave();
  EXPECT_EQ(L"Changed", description(5));
}

TEST_F(SettingsEditorTest, NewOffersDefaultsUnderNoIdentifier) {
  makeSite();
  open(5);
  editor.firstTabWanted = false;
  editor.descriptionFocusWanted = false;
  editor.btnNew();
  EXPECT_TRUE(editor.isNew());
  EXPECT_EQ(0, editor.currentID());
  EXPECT_EQ(std::nullopt, editor.selectedRow);
  EXPECT_FALSE(editor.deleteEnabled);
  EXPECT_TRUE(editor.firstTabWanted);
  EXPECT_TRUE(editor.descriptionFocusWanted);
  EXPECT_TRUE(editor.rulesWanted);
  EXPECT_TRUE(isBlank(editor.form));
}

TEST_F(SettingsEditorTest, ANewConfigurationIsInsertedUnderTheNextIdentifier) {
  makeSite();
  open(5);
  editor.btnNew();
  applyPendingRules();
  type(txtDescription, L"Ten");
  editor.btnSave();
  EXPECT_EQ(L"Ten", description(10));
  EXPECT_EQ(10, editor.currentID());
  EXPECT_FALSE(editor.isNew());
  EXPECT_EQ(3u, editor.selectedRow);
  EXPECT_TRUE(editor.deleteEnabled);
  EXPECT_EQ(L"Ten", hostDescription(10));
  type(txtDescription, L"Ten again");
  editor.btnSave();
  EXPECT_EQ(L"Ten again", description(10));
  EXPECT_EQ(L"4", count());
}

TEST_F(SettingsEditorTest, AnIdentifierInTheListIsReplacedByTheNextFreeOne) {
  makeSite();
  open(5);
  editor.btnNew();
  applyPendingRules();
  type(txtDescription, L"Ten");
  // Somebody else deletes all rows: numbering begins with 1 again.
  site.run(L"delete from Interface_PACS_cfg");
  editor.btnSave();
  EXPECT_EQ(L"Ten", description(2));
  EXPECT_EQ(2, editor.currentID());
  EXPECT_EQ(L"1", count());
}

TEST_F(SettingsEditorTest, AFailedInsertLeavesANewConfiguration) {
  makeSite();
  open(5);
  editor.btnNew();
  applyPendingRules();
  type(txtDescription, L"Ten");
  type(txtCloseDictation, L"o'clock");
  EXPECT_THROW(editor.btnSave(), RunTimeError);
  EXPECT_TRUE(editor.isNew());
  EXPECT_EQ(L"3", count());
  type(txtCloseDictation, L"");
  editor.btnSave();
  EXPECT_EQ(L"Ten", description(10));
}

TEST_F(SettingsEditorTest, TickingTheMappingBoxSelectsTheFirstPair) {
  makeSite();
  open(5);
  editor.form[chkUserLogon].ticked = true;
  editor.chkUserLogonClicked();
  EXPECT_EQ(1, getUserLogonMappingValue(editor.form));
  EXPECT_TRUE(editor.form[radLogonMapPACS_0].ticked);
  EXPECT_TRUE(editor.form[radLogonMapCorvane_0].ticked);
  EXPECT_FALSE(editor.rulesWanted);
  editor.form[chkUserLogon].ticked = false;
  editor.chkUserLogonClicked();
  EXPECT_FALSE(editor.form[radLogonMapPACS_0].enabled);
}

TEST_F(SettingsEditorTest, AStoredCustomFormatWithoutFilesFallsBackAndIsNotSaved) {
  addConsistent(1, L"Default");
  addConfiguration(2,
                   L"pacs_type = 7, description = 'Custom', pacs_request_password = 1, "
                   L"flag10 = 11");
  connect();
  host->m_colPACSConfig = std::make_shared<colPACSConfiguration>();
  host->m_colPACSConfig->GetPACSConfigurations();
  editor.load();
  editor.ShowPACSSettings(2);
  expectPlainBox(
      L"No XML files exist in the PROMPTS directory to be used for custom XML mapping.  Vendor "
      L"Format reset to '<None>'.");
  applyPendingRules();
  EXPECT_EQ(1u, messages.size());
  EXPECT_EQ(0, editor.form[cmbVendorType].position);
  EXPECT_EQ(L"7", site.value(L"select pacs_type from Interface_PACS_cfg where config_id = 2"));
}

TEST_F(SettingsEditorTest, AChosenCustomFormatWithoutFilesFallsBackWithTheShortMessage) {
  makeSite();
  open(5);
  selectCode(editor.form, cmbVendorType, vendor::kHmi);
  editor.TmrFieldChange();
  expectPlainBox(L"No XML files exist in the PROMPTS directory to be used for custom XML mapping.");
  EXPECT_EQ(0, editor.form[cmbVendorType].position);
}

TEST_F(SettingsEditorTest, StandAloneModeOpensBlankAndKeepsANewConfigurationInMemoryOnly) {
  host->m_colPACSConfig = std::make_shared<colPACSConfiguration>();
  host->m_colPACSConfig->AddIntitialConfig();
  host->m_colWorkstation = std::make_shared<colWorkstation>();
  modMain.g_blnUseOfflineDB = true;
  editor.load();
  editor.ShowPACSSettings(0);
  EXPECT_TRUE(editor.isNew());
  type(txtDescription, L"Memory");
  editor.btnSave();
  EXPECT_EQ(L"Memory", hostDescription(1));
  EXPECT_EQ(L"0", count());
}

TEST_F(SettingsEditorTest, AnIdentifierTakenInStandAloneModeIsAnErrorThatKeepsTheEdits) {
  addConsistent(1, L"Default");
  connect();
  host->m_colPACSConfig = std::make_shared<colPACSConfiguration>();
  host->m_colPACSConfig->GetPACSConfigurations();
  DisconnectDatabase();
  editor.load();
  editor.ShowPACSSettings(0);
  EXPECT_TRUE(editor.isNew());
  type(txtDescription, L"Memory");
  EXPECT_RUNTIME_ERROR(editor.btnSave(), 457,
                       L"This key is already associated with an element of this collection");
  EXPECT_TRUE(editor.isNew());
  EXPECT_EQ(L"Memory", editor.form[txtDescription].text);
  EXPECT_EQ(L"Default", hostDescription(1));
}

TEST_F(SettingsEditorTest, UnloadingForgetsEverything) {
  makeSite();
  open(5);
  editor.btnNew();
  editor.unload();
  EXPECT_EQ(0u, editor.rows.rowCount());
  EXPECT_FALSE(editor.isNew());
  EXPECT_EQ(0, editor.currentID());
  EXPECT_TRUE(editor.deleteEnabled);
}

TEST_F(SettingsEditorTest, AMessageAboutAConfigurationIsShownAfterTheConfiguration) {
  makeSite();
  addConfiguration(
      2, L"description = 'Custom', pacs_type = 7, pacs_request_password = 1, flag10 = 11");
  open(5);
  std::vector<std::wstring> order;
  SettingsEditor other{host, {.present = [&] {
                         order.push_back(other.form[txtDescription].text);
                         order.push_back(other.rows.key(other.selectedRow.value_or(0)));
                       }}};
  system::showMessage = [&](const system::Message& message) {
    if (message.buttons != Buttons::Ok) return Answer::No;
    order.push_back(message.text.substr(0, 19));
    return Answer::Ok;
  };
  other.load();
  other.ShowPACSSettings(2);
  EXPECT_EQ(order, (std::vector<std::wstring>{L"Custom", L"C2", L"No XML files exist "}));
  other.ShowPACSSettings(5);
  order.clear();
  other.rowClicked(1);
  EXPECT_EQ(order, (std::vector<std::wstring>{L"Custom", L"C2", L"No XML files exist "}));
}

TEST_F(SettingsEditorTest, AnUnansweredNumberingIsAnErrorAndNoBlankConfiguration) {
  makeSite();
  open(5);
  SettingsEditor other{host, {}};
  other.load();
  site.run(L"ALTER TABLE Interface_PACS_cfg RENAME TO away");
  EXPECT_THROW(other.ShowPACSSettings(5), RunTimeError);
  EXPECT_FALSE(other.isNew());
  editor.btnNew();
  applyPendingRules();
  type(txtDescription, L"New");
  EXPECT_THROW(editor.btnSave(), RunTimeError);
  EXPECT_TRUE(editor.isNew());
  EXPECT_EQ(L"New", editor.form[txtDescription].text);
  site.run(L"ALTER TABLE away RENAME TO Interface_PACS_cfg");
  editor.btnSave();
  EXPECT_EQ(L"New", description(10));
}

TEST_F(SettingsEditorTest, OpeningAConfigurationThatIsGoneAsksNothingAndKeepsTheEdits) {
  makeSite();
  open(5);
  type(txtDescription, L"Mine");
  editor.ShowPACSSettings(7);
  EXPECT_TRUE(messages.empty());
  EXPECT_EQ(L"Mine", editor.form[txtDescription].text);
  EXPECT_EQ(5, editor.currentID());
  EXPECT_EQ(1u, editor.selectedRow);
  editor.btnSave();
  EXPECT_EQ(L"Mine", description(5));
}

TEST_F(SettingsEditorTest, OpeningTheConfigurationThatIsShownKeepsItsEditsWithoutAQuestion) {
  makeSite();
  open(5);
  type(txtDescription, L"Mine");
  editor.ShowPACSSettings(5);
  EXPECT_TRUE(messages.empty());
  EXPECT_EQ(L"Mine", editor.form[txtDescription].text);
}

TEST_F(SettingsEditorTest, TurningToAnotherConfigurationAsksFirstAndCancelStays) {
  makeSite();
  open(5);
  type(txtDescription, L"Mine");
  answers = {Answer::Cancel};
  editor.ShowPACSSettings(9);
  expectAsked(kSaveQuestion, Buttons::YesNoCancel);
  EXPECT_EQ(5, editor.currentID());
  answers = {Answer::No};
  editor.ShowPACSSettings(9);
  EXPECT_EQ(9, editor.currentID());
  EXPECT_EQ(L"Nine", editor.form[txtDescription].text);
}

TEST_F(SettingsEditorTest, DroppedEditsDoNotStayOnTheScreen) {
  makeSite();
  open(5);
  type(txtDescription, L"Mine");
  type(txtPort, L"104");
  answers = {Answer::No};
  EXPECT_TRUE(editor.CheckForSave(5));
  EXPECT_EQ(L"Five", editor.form[txtDescription].text);
  EXPECT_EQ(L"0", editor.form[txtPort].text);
}

TEST_F(SettingsEditorTest, AFieldThatIsNotStoredAsEnteredIsReportedByItsCaption) {
  makeSite();
  open(5);
  const std::pair<Control, const wchar_t*> fields[] = {
      {txtApplicableFields, L"Applicable Fields"},
      {txtContextXML, L"Context Change XML File Path and Name"},
      {txtCloseDictation, L"Close Dictation XML File Path and Name"}};
  for (const auto& [field, caption] : fields) {
    type(field, L"a' --");
    try {
      editor.btnSave();
      ADD_FAILURE() << "Nothing was thrown.";
    } catch (const RunTimeError& error) {
      EXPECT_EQ(error.description(),
                L"Nothing was saved. Field '" + std::wstring(caption) +
                    L"': It holds a single quote. Write it twice, or leave it out.");
    }
    EXPECT_EQ(L"a' --", editor.form[field].text);
    type(field, L"");
  }
}

TEST_F(SettingsEditorTest, EveryStoredFieldHasACaption) {
  const std::map<std::wstring, std::wstring> named = {
      {L"Description", L"Description"},
      {L"PACSType", L"Vendor Format"},
      {L"UserMappingOpt", L"Enable User Logon Mapping"},
      {L"BiDirectional", L"Enable Response Options"},
      {L"CustomXMLFile", L"XML Configuration File"},
      {L"MultiAccessContext", L"Multiple Accession Context Change Handling"},
      {L"MultiAccessFields", L"Accession Dictation Fields"},
      {L"ContextChangeOption", L"Context Change Action"},
      {L"Port", L"Port"},
      {L"LastUpdateDate", L"LastUpdateDate"}};
  for (const Column& column : columns()) {
    const auto found = named.find(column.property);
    if (found != named.end()) {
      EXPECT_EQ(captionOf(column), found->second);
    }
    EXPECT_FALSE(captionOf(column).empty());
  }
}

}  // namespace
}  // namespace tlpacscfg::test
