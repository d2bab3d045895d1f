#include "ui/settings/values/settings_binding.h"

#include <gtest/gtest.h>

#include "harness/errors.h"
#include "harness/records.h"
#include "support/text.h"
#include "ui/settings/values/complete_record.h"
#include "ui/settings/values/settings_rules.h"

namespace tlpacscfg::test {
namespace {

using enum Control;
using Record = clsPACSConfiguration;

TEST(BindingTest, ARecordSurvivesBeingShownAndReadBack) {
  const Record record = completeRecord();
  SettingsForm form(kFiles);
  EXPECT_EQ(std::nullopt, showRecord(form, record));
  EXPECT_TRUE(PACSValueTheSame(form, record));
  Record back;
  back.configID = 12;
  readBack(form, back);
  expectEqualRecords(back, record);
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
      // Other tests cover the formats that override the mapping or the password option.
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
      readBack(form, record);
      EXPECT_EQ(0, record.RequestPasswordOpt);
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
    EXPECT_OVERFLOW(readBack(form, record));
    expectEqualRecords(record, before);
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
