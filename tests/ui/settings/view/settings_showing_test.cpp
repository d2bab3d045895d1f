#include <map>

#include "support/text.h"
#include "ui/settings/view/settings_fixture.h"

namespace tlpacscfg::test {
namespace {

using enum Control;

class SettingsShowingTest : public SettingsTest {
 protected:
  /// A row that differs from an empty one in every column.
  static const std::vector<std::pair<const wchar_t*, const wchar_t*>>& completeRow() {
    static const std::vector<std::pair<const wchar_t*, const wchar_t*>> row = {
        {L"pacs_type", L"7"},
        {L"description", L"Complete"},
        {L"request_filename", L" c:\\in\\{AF}.xml"},
        {L"response_filename", L"http://h/?a=b "},
        {L"bidirectional", L"1"},
        {L"response_for_paused_jobs", L"1"},
        {L"response_for_aborted_jobs", L"1"},
        {L"response_for_nonrequests", L"1"},
        {L"ins_ovr_before_pacs", L"8"},
        {L"flag1", L"10"},
        {L"user_mapping_option", L"5"},
        {L"pacs_request_password", L"2"},
        {L"pacs_response_password", L"1"},
        {L"string1", L"b.xml"},
        {L"string2", L"11,27"},
        {L"flag2", L"1"},
        {L"flag3", L"1"},
        {L"flag4", L"2"},
        {L"flag5", L"1"},
        {L"flag6", L"2147483647"},
        {L"flag7", L"1"},
        {L"flag8", L"10"},
        {L"flag9", L"35"},
        {L"flag10", L"27"},
        {L"flag11", L"2"},
        {L"string3", L"Accession ID,Visit ID"},
        {L"string4", L"c:\\ctx.xml"},
        {L"flag14", L"1"},
        {L"flag15", L"1"},
        {L"flag16", L"1"},
        {L"string5", L"c:\\close.xml"},
        {L"flag17", L"10"},
        {L"flag18", L"1"},
    };
    return row;
  }

  void addComplete(int id) {
    std::wstring changes;
    for (const auto& [column, value] : completeRow()) {
      changes += (changes.empty() ? L"" : L", ") + std::wstring(column) + L" = '" + value + L"'";
    }
    addConfiguration(id, changes);
  }
};

TEST_F(SettingsShowingTest, EveryColumnIsShownInItsControl) {
  makePrompts({L"a.xml", L"b.xml"});
  addComplete(1);
  edit([](HWND window) {
    EXPECT_EQ(text(window, txtDescription), L"Complete");
    EXPECT_EQ(text(window, txtRequestFileName), L" c:\\in\\{AF}.xml");
    EXPECT_EQ(text(window, txtResponseFileName), L"http://h/?a=b ");
    EXPECT_EQ(text(window, txtApplicableFields), L"11,27");
    EXPECT_EQ(text(window, txtContextXML), L"c:\\ctx.xml");
    EXPECT_EQ(text(window, txtCloseDictation), L"c:\\close.xml");
    EXPECT_EQ(text(window, txtPort), L"2147483647");
    EXPECT_EQ(text(window, cmpAccessionFields), L"Accession ID, Visit ID");
    EXPECT_EQ(text(window, cmbXMLConfugrationFile), L"b.xml");
    const std::map<Control, int> positions = {
        {cmbVendorType, 5},          {cmbStartPACS, 2},           {cmbManualEntry, 1},
        {cmbRequestPassword, 2},     {cmbResPassword, 1},         {cmbResponseType, 1},
        {cmbPollingOption, 1},       {cmbPollingAction, 2},       {cmbContextUpdate, 2},
        {cmbContextChangeOption, 3}, {cmbPollingDisplayField, 1}, {cmbCloseDictationAction, 1}};
    for (const auto& [list, expected] : positions) {
      EXPECT_EQ(position(window, list), expected) << toUtf8(design(list).name);
    }
    for (const Control box :
         {chkUserLogon, radLogonMapPACS_1, radLogonMapCorvane_1, chkResponseEnabled, chkPaused,
          chkAborted, chkNonPACS, chkUpdateXMLData, chkDeleteFlag, chkEnableContextPolling,
          optMultiAccessionHandlingOption_2, chkCheckFileDateTime, chkPreProcessFile,
          chkCloseDictation, chkSendAbortForCanceledOpen}) {
      EXPECT_TRUE(ticked(window, box)) << toUtf8(design(box).name);
    }
  });
  EXPECT_TRUE(messages.empty());
}

TEST_F(SettingsShowingTest, OnlyTheDefaultConfigurationsDescriptionIsFixed) {
  makeSite();
  edit([](HWND window) {
    EXPECT_EQ(text(window, txtDescription), L"Five");
    EXPECT_TRUE(enabled(window, txtDescription));
    EXPECT_EQ(list_view::selectedRow(rows(window)), 1);
    EXPECT_EQ(focusOf(window), control(window, txtDescription));
    pickRow(window, 0);
    EXPECT_FALSE(enabled(window, txtDescription));
    pickRow(window, 2);
    EXPECT_TRUE(enabled(window, txtDescription));
  });
  EXPECT_TRUE(messages.empty());
}

TEST_F(SettingsShowingTest, ATextWithALineBreakSurvivesTheEditOfAnotherField) {
  addConsistent(1, L"Default");
  site.run(L"update Interface_PACS_cfg set response_filename = 'MSH' || char(13, 10) || 'PID'");
  edit([](HWND window) {
    fill(window, txtPort, L"7");
    press(window, btnSave);
  });
  EXPECT_EQ(stored(1, L"flag6"), L"7");
  EXPECT_EQ(stored(1, L"response_filename"), L"MSH\r\nPID");
}

TEST_F(SettingsShowingTest, TextsOfEveryScriptAreShownAndStoredAsTheyAre) {
  makeSite();
  const std::wstring name = L"\u0141\u00f3d\u017a \u653e\u5c04\u79d1 O'Neil & \u00dcn";
  edit([&](HWND window) {
    fill(window, txtDescription, name);
    press(window, btnSave);
    EXPECT_EQ(list_view::cell(rows(window), 1, 1), L"5 - " + name);
  });
  EXPECT_EQ(stored(5, L"description"), name);
}

TEST_F(SettingsShowingTest, TheLargestSiteOpensAndTurnsToItsLastConfiguration) {
  site.run(
      L"insert into Interface_PACS_cfg with recursive n(i) as (select 1 union all select i + 1 "
      L"from n where i < 32766) select i, 0, 'Configuration ' || i, '', '', 0, 0, 0, 0, 0, 0, 0, "
      L"1, 0, 1, '2012-10-24 14:05:09', '', '', 0, 0, 0, 0, 0, 0, 0, 0, 11, 0, '', '', 0, 0, 0, 0, "
      L"0, '', 0, 0 from n");
  edit([](HWND window) {
    EXPECT_EQ(list_view::rowCount(rows(window)), 32766);
    pickRow(window, 32765);
    EXPECT_EQ(list_view::selectedRow(rows(window)), 32765);
  });
  EXPECT_TRUE(messages.empty());
}

}  // namespace
}  // namespace tlpacscfg::test
