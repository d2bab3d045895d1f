#include "ui/model/settings_binding.h"

#include <gtest/gtest.h>

#include "support/runtime_error.h"
#include "support/text.h"
#include "ui/model/settings_rules.h"

namespace tlpacscfg::test {
namespace {

using enum Control;
using Record = clsPACSConfiguration;

const std::vector<std::wstring> kFiles = {L"a.xml", L"b.xml"};

/// A record whose every value is one that the window can show.
Record completeRecord() {
  Record record;
  record.configID = 12;
  record.PACSType = 7;
  record.Description = L"  Ray's PACS ";
  record.RequestFileName = L" c:\\in\\{AF}.xml";
  record.ResponseFileName = L"http://h/?a={AF} ";
  record.BiDirectional = 1;
  record.ResPausedJobs = 1;
  record.ResNonRequestJobs = 1;
  record.UpdateXMLData = 1;
  record.CofirmStartTrigger = 8;
  record.ManualEntryTrigger = 10;
  record.UserMappingOpt = 5;
  record.RequestPasswordOpt = 2;
  record.ResponsePasswordOpt = 1;
  record.ResponseType = 1;
  record.CustomXMLFile = L"b.xml";
  record.ApplicableFields = L"11,27";
  record.PollingOption = 1;
  record.PollingAction = 2;
  record.Port = 2147483647;
  record.DeleteFlag = 1;
  record.ContextUpdate = 10;
  record.ContextChangeOption = 35;
  record.PollingDisplayField = 27;
  record.MultiAccessContext = 2;
  record.ContextXMLFile = L"c:\\ctx.xml";
  record.MultiAccessFields = L"Accession ID,Visit ID";
  record.CheckFileDateTime = 1;
  record.CloseDictationEnabled = 1;
  record.CloseDictationFile = L"c:\\close.xml";
  record.CloseDictationAction = 10;
  record.SendAbortOnFailedOpen = 1;
  return record;
}

bool sameValues(const Record& first, const Record& second) {
  for (const Column& column : columns()) {
    if (valueOf(first, column.field) != valueOf(second, column.field)) {
      ADD_FAILURE() << toUtf8(column.property);
      return false;
    }
  }
  return true;
}

TEST(BindingTest, ARecordSurvivesBeingShownAndReadBack) {
  const Record record = completeRecord();
  SettingsForm form(kFiles);
  EXPECT_EQ(std::nullopt, showRecord(form, record));
  EXPECT_TRUE(PACSValueTheSame(form, record));
  Record back;
  back.configID = 12;
  readBack(form, back);
  EXPECT_TRUE(sameValues(record, back));
}

TEST(BindingTest, EveryCodeOfEveryListSurvivesBeingShownAndReadBack) {
  for (const Binding& binding : bindings()) {
    const bool list = binding.conversion == Conversion::Code ||
                      binding.conversion == Conversion::Position ||
                      binding.conversion == Conversion::ContextChange;
    if (!list) continue;
    for (const Option& option : optionsOf(binding.control)) {
      Record record = completeRecord();
      setValue(record, binding.field, option.code);
      SettingsForm form(kFiles);
      showRecord(form, record);
      // The formats that overrule the mapping or the password option are tested apart.
      if (binding.control == cmbVendorType &&
          (option.code == vendor::kGe || isBroker(option.code))) {
        continue;
      }
      EXPECT_EQ(FieldValue(option.code), readBack(form, binding)) << toUtf8(option.text);
      EXPECT_TRUE(PACSValueTheSame(form, record)) << toUtf8(option.text);
    }
  }
}

TEST(BindingTest, EveryChangedFieldIsNoticed) {
  const Record shown = completeRecord();
  SettingsForm form(kFiles);
  showRecord(form, shown);
  for (const Binding& binding : bindings()) {
    Record other = shown;
    const FieldValue value = valueOf(shown, binding.field);
    if (const auto* text = std::get_if<std::wstring>(&value)) {
      setValue(other, binding.field, *text + L" ");
    } else if (const auto* port = std::get_if<std::int32_t>(&value)) {
      setValue(other, binding.field, *port - 1);
    } else {
      setValue(other, binding.field,
               static_cast<std::int16_t>(std::get<std::int16_t>(value) + 100));
    }
    EXPECT_FALSE(PACSValueTheSame(form, other)) << toUtf8(design(binding.control).name);
  }
}

TEST(BindingTest, TextsAreComparedWithTheirCase) {
  Record record = completeRecord();
  SettingsForm form(kFiles);
  showRecord(form, record);
  record.Description = L"  RAY'S PACS ";
  EXPECT_FALSE(PACSValueTheSame(form, record));
}

TEST(BindingTest, WhatIsNotShownIsNeitherReadNorCompared) {
  Record record = completeRecord();
  SettingsForm form(kFiles);
  showRecord(form, record);
  record.configID = 4;
  record.LastUpdateUserID = L"9";
  record.LastUpdateDate = L"then";
  EXPECT_TRUE(PACSValueTheSame(form, record));
  readBack(form, record);
  EXPECT_EQ(4, record.configID);
  EXPECT_EQ(L"9", record.LastUpdateUserID);
  EXPECT_EQ(L"then", record.LastUpdateDate);
}

TEST(BindingTest, AFlagOfMinusOneShowsAsTickedAndCountsAsChanged) {
  Record record = completeRecord();
  record.BiDirectional = kTrue;
  SettingsForm form(kFiles);
  showRecord(form, record);
  EXPECT_TRUE(form[chkResponseEnabled].ticked);
  EXPECT_FALSE(PACSValueTheSame(form, record));
  readBack(form, record);
  EXPECT_EQ(1, record.BiDirectional);
  EXPECT_TRUE(PACSValueTheSame(form, record));
}

TEST(BindingTest, AnUnmatchedCodeLeavesTheListOfTheFormerRecord) {
  Record record = completeRecord();
  SettingsForm form(kFiles);
  showRecord(form, record);
  record.PACSType = 6;
  record.CofirmStartTrigger = 3;
  record.PollingDisplayField = 2;
  record.ContextUpdate = 1;
  record.CloseDictationAction = 2;
  record.ContextChangeOption = 15;
  record.RequestPasswordOpt = 3;
  record.ResponseType = -1;
  record.MultiAccessContext = 5;
  showRecord(form, record);
  EXPECT_EQ(7, requiredCode(form, cmbVendorType));
  EXPECT_EQ(8, requiredCode(form, cmbStartPACS));
  EXPECT_EQ(27, requiredCode(form, cmbPollingDisplayField));
  EXPECT_EQ(10, requiredCode(form, cmbContextUpdate));
  EXPECT_EQ(10, requiredCode(form, cmbCloseDictationAction));
  EXPECT_TRUE(form[chkEnableContextPolling].ticked);
  EXPECT_EQ(35, requiredCode(form, cmbContextChangeOption));
  EXPECT_EQ(2, form[cmbRequestPassword].position);
  EXPECT_EQ(1, form[cmbResponseType].position);
  EXPECT_EQ(2, getMACOption(form));
}

TEST(BindingTest, AGeRecordNeverShowsALogonMapping) {
  Record record = completeRecord();
  record.PACSType = vendor::kGe;
  record.UserMappingOpt = 5;
  SettingsForm form(kFiles);
  showRecord(form, record);
  EXPECT_FALSE(form[chkUserLogon].ticked);
  EXPECT_EQ(0, getUserLogonMappingValue(form));
  EXPECT_EQ(1, form[cmbRequestPassword].position);
  EXPECT_FALSE(form[cmbRequestPassword].enabled);
}

TEST(BindingTest, ABrokerRecordShowsTheFirstRequestPasswordOptionDisabled) {
  for (const std::int16_t format : {vendor::kBroker, vendor::kBrokerExtended}) {
    for (const int mapping : {0, 1, 6}) {
      Record record = completeRecord();
      record.PACSType = format;
      record.UserMappingOpt = static_cast<std::int16_t>(mapping);
      record.RequestPasswordOpt = 2;
      SettingsForm form(kFiles);
      showRecord(form, record);
      EXPECT_EQ(0, form[cmbRequestPassword].position);
      EXPECT_FALSE(form[cmbRequestPassword].enabled);
    }
  }
}

TEST(BindingTest, TheRulesLeaveABrokerItsPasswordOptionWhateverTheMapping) {
  for (const std::int16_t format : {vendor::kBroker, vendor::kBrokerExtended}) {
    for (int mapping = 0; mapping <= 6; ++mapping) {
      Record record = completeRecord();
      record.PACSType = format;
      record.UserMappingOpt = static_cast<std::int16_t>(mapping);
      record.RequestPasswordOpt = 2;
      SettingsForm form(kFiles);
      showRecord(form, record);
      form = applyFieldRules(form).form;
      EXPECT_EQ(0, form[cmbRequestPassword].position) << format << ' ' << mapping;
      EXPECT_FALSE(form[cmbRequestPassword].enabled);
    }
  }
}

TEST(BindingTest, FileNamesAreStoredAsTypedWithoutTrimming) {
  for (const wchar_t* typed : {L"{AF}", L"  {AF}\\req.xml ", L"http://h/?a={af}&b= ", L" "}) {
    Record record = completeRecord();
    SettingsForm form(kFiles);
    showRecord(form, record);
    for (const Control name :
         {txtRequestFileName, txtResponseFileName, txtContextXML, txtCloseDictation}) {
      form[name].text = typed;
    }
    readBack(form, record);
    EXPECT_EQ(typed, record.RequestFileName);
    EXPECT_EQ(typed, record.ResponseFileName);
    EXPECT_EQ(typed, record.ContextXMLFile);
    EXPECT_EQ(typed, record.CloseDictationFile);
  }
}

TEST(BindingTest, ContextChangeZeroUnticksTheBoxAndLeavesTheList) {
  Record record = completeRecord();
  SettingsForm form(kFiles);
  showRecord(form, record);
  record.ContextChangeOption = 0;
  showRecord(form, record);
  EXPECT_FALSE(form[chkEnableContextPolling].ticked);
  EXPECT_EQ(35, requiredCode(form, cmbContextChangeOption));
  EXPECT_TRUE(PACSValueTheSame(form, record));
}

TEST(BindingTest, AnUntickedContextChangeBoxIsReadAsZeroWhateverTheListShows) {
  Record record = completeRecord();
  SettingsForm form(kFiles);
  showRecord(form, record);
  form[chkEnableContextPolling].ticked = false;
  readBack(form, record);
  EXPECT_EQ(0, record.ContextChangeOption);
  form[cmbContextChangeOption].position = -1;
  EXPECT_NO_THROW(readBack(form, record));
}

TEST(BindingTest, TheXmlFileIsReadAsEmptyWhileItsListIsDisabled) {
  Record record = completeRecord();
  SettingsForm form(kFiles);
  showRecord(form, record);
  form[cmbXMLConfugrationFile].enabled = false;
  readBack(form, record);
  EXPECT_EQ(L"", record.CustomXMLFile);
}

TEST(BindingTest, AnXmlFileThatIsNotOfferedSelectsNone) {
  Record record = completeRecord();
  SettingsForm form(kFiles);
  showRecord(form, record);
  EXPECT_EQ(1, form[cmbXMLConfugrationFile].position);
  record.CustomXMLFile = L"gone.xml";
  showRecord(form, record);
  EXPECT_EQ(-1, form[cmbXMLConfugrationFile].position);
  EXPECT_FALSE(PACSValueTheSame(form, record));
  record.PACSType = 1;
  record.CustomXMLFile = L"";
  showRecord(form, record);
  EXPECT_TRUE(PACSValueTheSame(form, record));
}

TEST(BindingTest, AnXmlFileIsFoundInOtherLettersUnlessOneIsExactlyItsOwn) {
  Record record = completeRecord();
  SettingsForm form({L"MAP.XML", L"map.xml", L"Other.xml"});
  const struct {
    const wchar_t* stored;
    int position;
  } cases[] = {{L"map.xml", 1}, {L"MAP.XML", 0}, {L"Map.Xml", 0}, {L"OTHER.XML", 2}, {L"map", -1}};
  for (const auto& each : cases) {
    record.CustomXMLFile = each.stored;
    showRecord(form, record);
    EXPECT_EQ(each.position, form[cmbXMLConfugrationFile].position) << toUtf8(each.stored);
  }
}

TEST(BindingTest, ACustomFormatWithoutXmlFilesFallsBackWithItsMessage) {
  for (const std::int16_t format : {vendor::kCustom, vendor::kHmi}) {
    Record record = completeRecord();
    record.PACSType = format;
    SettingsForm form;
    const auto message = showRecord(form, record);
    ASSERT_TRUE(message.has_value());
    EXPECT_EQ(
        L"No XML files exist in the PROMPTS directory to be used for custom XML mapping.  Vendor "
        L"Format reset to '<None>'.",
        *message);
    EXPECT_EQ(0, requiredCode(form, cmbVendorType));
    EXPECT_FALSE(PACSValueTheSame(form, record));
  }
}

TEST(BindingTest, OtherFormatsDoNotMindThatThereAreNoXmlFiles) {
  for (const int format : {0, 1, 2, 3, 4, 5, 8}) {
    Record record = completeRecord();
    record.PACSType = static_cast<std::int16_t>(format);
    SettingsForm form;
    EXPECT_EQ(std::nullopt, showRecord(form, record));
    EXPECT_EQ(format, requiredCode(form, cmbVendorType));
  }
}

TEST(BindingTest, ANegativePortIsShownWithItsSign) {
  Record record = completeRecord();
  record.Port = -2147483647 - 1;
  SettingsForm form(kFiles);
  showRecord(form, record);
  EXPECT_EQ(L"-2147483648", form[txtPort].text);
  EXPECT_TRUE(PACSValueTheSame(form, record));
}

TEST(BindingTest, APortThatDoesNotFitIsAnOverflowAndLeavesTheRecord) {
  Record record = completeRecord();
  SettingsForm form(kFiles);
  showRecord(form, record);
  const Record before = record;
  form[txtDescription].text = L"changed";
  for (const std::wstring& port : {std::wstring(L"2147483648"), std::wstring(400, L'9')}) {
    form[txtPort].text = port;
    EXPECT_FALSE(PACSValueTheSame(form, record));
    try {
      readBack(form, record);
      FAIL();
    } catch (const RunTimeError& error) {
      EXPECT_EQ(6, error.number());
    }
    EXPECT_TRUE(sameValues(before, record));
  }
}

TEST(BindingTest, APortThatIsNoNumberCountsAsChanged) {
  Record record = completeRecord();
  SettingsForm form(kFiles);
  showRecord(form, record);
  for (const wchar_t* port : {L"", L"abc", L"1 2", L"&H10"}) {
    form[txtPort].text = port;
    EXPECT_FALSE(PACSValueTheSame(form, record));
    EXPECT_THROW(readBack(form, record), RunTimeError);
  }
  form[txtPort].text = L" 0002147483647 ";
  EXPECT_TRUE(PACSValueTheSame(form, record));
}

TEST(BindingTest, AListWithoutASelectedEntryCountsAsChangedAndCannotBeReadBack) {
  Record record = completeRecord();
  SettingsForm form(kFiles);
  showRecord(form, record);
  form[cmbVendorType].position = -1;
  EXPECT_FALSE(PACSValueTheSame(form, record));
  try {
    readBack(form, record);
    FAIL();
  } catch (const RunTimeError& error) {
    EXPECT_EQ(381, error.number());
  }
}

TEST(BindingTest, APositionListWithoutASelectedEntryReadsAsMinusOne) {
  Record record = completeRecord();
  SettingsForm form(kFiles);
  showRecord(form, record);
  form[cmbResPassword].position = -1;
  readBack(form, record);
  EXPECT_EQ(-1, record.ResponsePasswordOpt);
}

TEST(BindingTest, ADisabledListWithoutASelectedEntryKeepsWhatTheRecordHolds) {
  for (const Binding& binding : bindings()) {
    if (design(binding.control).kind != Kind::List) continue;
    if (binding.conversion == Conversion::FileEntry) continue;
    SCOPED_TRACE(toUtf8(design(binding.control).name));
    Record record = completeRecord();
    SettingsForm form(kFiles);
    showRecord(form, record);
    const Record before = record;
    form[binding.control].position = -1;
    EXPECT_FALSE(PACSValueTheSame(form, record));
    form[binding.control].enabled = false;
    EXPECT_TRUE(PACSValueTheSame(form, record));
    form[txtDescription].text = L"changed";
    EXPECT_FALSE(PACSValueTheSame(form, record));
    readBack(form, record);
    EXPECT_EQ(L"changed", record.Description);
    EXPECT_EQ(valueOf(before, binding.field), valueOf(record, binding.field));
  }
}

TEST(BindingTest, ADisabledListWithASelectedEntryIsReadBack) {
  Record record = completeRecord();
  SettingsForm form(kFiles);
  showRecord(form, record);
  selectCode(form, cmbContextUpdate, 5);
  form[cmbContextUpdate].enabled = false;
  form[cmbResPassword].position = 2;
  form[cmbResPassword].enabled = false;
  readBack(form, record);
  EXPECT_EQ(5, record.ContextUpdate);
  EXPECT_EQ(2, record.ResponsePasswordOpt);
}

TEST(BindingTest, AccessionFieldsOfOldRowsStayAsTheyAreUntilATickChanges) {
  Record record = completeRecord();
  record.MultiAccessFields = L"11, 27";
  SettingsForm form(kFiles);
  showRecord(form, record);
  EXPECT_TRUE(PACSValueTheSame(form, record));
  form.accessionTicks.set(1);
  accessionTicksChanged(form);
  readBack(form, record);
  EXPECT_EQ(L"Account", record.MultiAccessFields);
}

TEST(BindingTest, StatusTextsAndFinishedJobsBelongToNoRecord) {
  Record record = completeRecord();
  SettingsForm form(kFiles);
  form[txtFinishedStatus].text = L"done";
  form[chkCompleted].ticked = true;
  showRecord(form, record);
  EXPECT_EQ(L"done", form[txtFinishedStatus].text);
  EXPECT_TRUE(form[chkCompleted].ticked);
  EXPECT_TRUE(PACSValueTheSame(form, record));
}

}  // namespace
}  // namespace tlpacscfg::test
