#include <gtest/gtest.h>

#include "harness/errors.h"
#include "support/text.h"
#include "ui/settings/values/complete_record.h"
#include "ui/settings/values/settings_binding.h"

namespace tlpacscfg::test {
namespace {

using enum Control;
using Record = clsPACSConfiguration;

TEST(BoundListTest, TheXmlFileIsReadAsEmptyWhileItsListIsDisabled) {
  Record record = completeRecord();
  SettingsForm form(kFiles);
  showRecord(form, record);
  form[cmbXMLConfugrationFile].enabled = false;
  readBack(form, record);
  EXPECT_EQ(L"", record.CustomXMLFile);
}

TEST(BoundListTest, AnXmlFileThatIsNotOfferedSelectsNone) {
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

TEST(BoundListTest, AnXmlFileIsFoundWithoutRegardToCaseUnlessOneMatchesExactly) {
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

TEST(BoundListTest, ACustomFormatWithoutXmlFilesFallsBackWithItsMessage) {
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

TEST(BoundListTest, OtherFormatsNeedNoXmlFiles) {
  for (const int format : {0, 1, 2, 3, 4, 5, 8}) {
    Record record = completeRecord();
    record.PACSType = static_cast<std::int16_t>(format);
    SettingsForm form;
    EXPECT_EQ(std::nullopt, showRecord(form, record));
    EXPECT_EQ(format, requiredCode(form, cmbVendorType));
  }
}

TEST(BoundListTest, AListWithoutASelectedEntryCountsAsChangedAndCannotBeReadBack) {
  Record record = completeRecord();
  SettingsForm form(kFiles);
  showRecord(form, record);
  form[cmbVendorType].position = -1;
  EXPECT_FALSE(PACSValueTheSame(form, record));
  EXPECT_RUNTIME_ERROR(readBack(form, record), 381, L"Invalid property array index");
}

TEST(BoundListTest, APositionListWithoutASelectedEntryReadsAsMinusOne) {
  Record record = completeRecord();
  SettingsForm form(kFiles);
  showRecord(form, record);
  form[cmbResPassword].position = -1;
  readBack(form, record);
  EXPECT_EQ(-1, record.ResponsePasswordOpt);
}

TEST(BoundListTest, ADisabledListWithoutASelectedEntryKeepsWhatTheRecordHolds) {
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

TEST(BoundListTest, ADisabledListWithASelectedEntryIsReadBack) {
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

}  // namespace
}  // namespace tlpacscfg::test
