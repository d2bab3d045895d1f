#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>

#include "support/text.h"
#include "ui/settings/values/settings_binding.h"
#include "ui/settings/values/settings_expected.h"

namespace tlpacscfg::test {
namespace {

const ControlDesign* findControl(const std::wstring& name) {
  for (const ControlDesign& control : controls()) {
    if (control.name == name) return &control;
  }
  return nullptr;
}

TEST(SettingsTablesTest, EveryExpectedControlExistsWithItsKindPageTextAndTooltip) {
  for (const ExpectedControl& expected : kExpectedControls) {
    SCOPED_TRACE(toUtf8(expected.name));
    const ControlDesign* control = findControl(expected.name);
    ASSERT_NE(nullptr, control);
    EXPECT_EQ(expected.kind, control->kind);
    EXPECT_EQ(expected.page, control->page);
    if (expected.text != nullptr) {
      EXPECT_EQ(std::wstring(expected.text), control->text);
    }
    EXPECT_EQ(std::wstring(expected.tooltip), control->tooltip);
  }
}

TEST(SettingsTablesTest, NoUnexpectedControlExists) {
  std::set<std::wstring> expected;
  for (const ExpectedControl& control : kExpectedControls) expected.insert(control.name);
  for (const ControlDesign& control : controls()) {
    EXPECT_TRUE(expected.contains(control.name)) << toUtf8(control.name);
  }
  EXPECT_EQ(std::size(kExpectedControls), expected.size());
}

TEST(SettingsTablesTest, TheTabsHaveTheirCaptionsInOrder) {
  ASSERT_EQ(std::size(kExpectedTabs), pages().size());
  for (std::size_t i = 0; i < pages().size(); ++i) {
    EXPECT_EQ(std::wstring(kExpectedTabs[i]), pages()[i].caption);
    EXPECT_EQ(static_cast<Page>(i + 1), pages()[i].page);
  }
}

TEST(SettingsTablesTest, EveryListHasItsEntriesInOrderWithTheirCodes) {
  for (const ExpectedList& expected : expectedLists()) {
    SCOPED_TRACE(toUtf8(expected.control));
    const ControlDesign* control = findControl(expected.control);
    ASSERT_NE(nullptr, control);
    const auto options = optionsOf(control->control);
    ASSERT_EQ(expected.entries.size(), options.size());
    for (std::size_t i = 0; i < options.size(); ++i) {
      EXPECT_EQ(std::wstring(expected.entries[i].text), options[i].text);
      EXPECT_EQ(expected.entries[i].code, options[i].code);
    }
  }
}

TEST(SettingsTablesTest, EveryListButTheXmlFilesHasEntries) {
  std::set<std::wstring> withEntries;
  for (const ExpectedList& list : expectedLists()) withEntries.insert(list.control);
  for (const ControlDesign& control : controls()) {
    const bool list = control.kind == Kind::List || control.kind == Kind::TickList;
    EXPECT_EQ(list && control.control != Control::cmbXMLConfugrationFile,
              !optionsOf(control.control).empty())
        << toUtf8(control.name);
    EXPECT_EQ(!optionsOf(control.control).empty(), withEntries.contains(control.name));
  }
}

/// Property, control and conversion, independent of the table.
struct ExpectedBinding {
  const wchar_t* property;
  const wchar_t* control;
  Conversion conversion;
};

using enum Conversion;
constexpr ExpectedBinding kExpectedBindings[] = {
    {L"Description", L"txtDescription", Text},
    {L"RequestFileName", L"txtRequestFileName", Text},
    {L"ResponseFileName", L"txtResponseFileName", Text},
    {L"PACSType", L"cmbVendorType", Code},
    {L"CofirmStartTrigger", L"cmbStartPACS", Code},
    {L"ManualEntryTrigger", L"cmbManualEntry", Code},
    {L"UserMappingOpt", L"chkUserLogon", LogonMapping},
    {L"BiDirectional", L"chkResponseEnabled", Tick},
    {L"RequestPasswordOpt", L"cmbRequestPassword", Position},
    {L"ResPausedJobs", L"chkPaused", Tick},
    {L"ResAbortedJobs", L"chkAborted", Tick},
    {L"ResNonRequestJobs", L"chkNonPACS", Tick},
    {L"ResponsePasswordOpt", L"cmbResPassword", Position},
    {L"ApplicableFields", L"txtApplicableFields", Text},
    {L"ResponseType", L"cmbResponseType", Position},
    {L"UpdateXMLData", L"chkUpdateXMLData", Tick},
    {L"CustomXMLFile", L"cmbXMLConfugrationFile", FileEntry},
    {L"PollingOption", L"cmbPollingOption", Position},
    {L"PollingAction", L"cmbPollingAction", Position},
    {L"Port", L"txtPort", Number},
    {L"DeleteFlag", L"chkDeleteFlag", Tick},
    {L"ContextUpdate", L"cmbContextUpdate", Code},
    {L"ContextChangeOption", L"cmbContextChangeOption", ContextChange},
    {L"PollingDisplayField", L"cmbPollingDisplayField", Code},
    {L"MultiAccessContext", L"optMultiAccessionHandlingOption_0", OptionIndex},
    {L"MultiAccessFields", L"cmpAccessionFields", AccessionFields},
    {L"ContextXMLFile", L"txtContextXML", Text},
    {L"RequestDefaultText", L"chkRequestDefaultText", Tick},
    {L"ResponseReportText", L"chkResponseReportText", Tick},
    {L"CheckFileDateTime", L"chkCheckFileDateTime", Tick},
    {L"PreProcessFile", L"chkPreProcessFile", Tick},
    {L"CloseDictationEnabled", L"chkCloseDictation", Tick},
    {L"CloseDictationFile", L"txtCloseDictation", Text},
    {L"CloseDictationAction", L"cmbCloseDictationAction", Code},
    {L"SendAbortOnFailedOpen", L"chkSendAbortForCanceledOpen", Tick},
};

const wchar_t* propertyOf(const Binding& binding) {
  for (const Column& column : columns()) {
    if (column.field == binding.field) return column.property;
  }
  return L"";
}

TEST(SettingsTablesTest, EveryBindingTiesItsPropertyToItsControl) {
  std::map<std::wstring, const Binding*> byProperty;
  for (const Binding& binding : bindings()) byProperty[propertyOf(binding)] = &binding;
  EXPECT_EQ(std::size(kExpectedBindings), byProperty.size());
  for (const ExpectedBinding& expected : kExpectedBindings) {
    SCOPED_TRACE(toUtf8(expected.property));
    ASSERT_TRUE(byProperty.contains(expected.property));
    const Binding& binding = *byProperty[expected.property];
    EXPECT_EQ(std::wstring(expected.control), design(binding.control).name);
    EXPECT_EQ(expected.conversion, binding.conversion);
  }
}

TEST(SettingsTablesTest, EveryStoredPropertyIsBoundOrKnownNotToBeShown) {
  // The identifier is that of the row; saving sets the user and the time of the last change.
  const std::set<std::wstring> notShown = {L"configID", L"LastUpdateUserID", L"LastUpdateDate"};
  for (const Column& column : columns()) {
    const auto bound = std::count_if(bindings().begin(), bindings().end(),
                                     [&](const Binding& b) { return b.field == column.field; });
    EXPECT_EQ(notShown.contains(column.property) ? 0 : 1, bound) << toUtf8(column.property);
  }
}

TEST(SettingsTablesTest, EveryControlThatHoldsAValueIsBoundOrKnownToBelongToNoRecord) {
  const std::set<std::wstring> unbound = {
      // Texts sent with a response, and the box beside them.
      L"txtFinishedStatus", L"txtPausedStatus", L"txtAbortedStatus", L"txtNonPACS", L"chkCompleted",
      // Bound through another control.
      L"radLogonMapPACS_0", L"radLogonMapPACS_1", L"radLogonMapCorvane_0", L"radLogonMapCorvane_1",
      L"radLogonMapCorvane_2", L"chkEnableContextPolling", L"optMultiAccessionHandlingOption_1",
      L"optMultiAccessionHandlingOption_2"};
  const std::set<Kind> withValue = {Kind::Text, Kind::Check, Kind::Option, Kind::List,
                                    Kind::TickList};
  for (const ControlDesign& control : controls()) {
    const auto bound = std::count_if(bindings().begin(), bindings().end(), [&](const Binding& b) {
      return b.control == control.control;
    });
    const bool wanted = withValue.contains(control.kind) && !unbound.contains(control.name);
    EXPECT_EQ(wanted ? 1 : 0, bound) << toUtf8(control.name);
  }
}

}  // namespace
}  // namespace tlpacscfg::test
