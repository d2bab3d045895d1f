#include "support/text.h"
#include "ui/settings/values/complete_record.h"
#include "ui/settings/values/settings_binding.h"
#include "ui/settings/values/settings_rules.h"
#include "ui/settings/view/settings_fixture.h"

namespace tlpacscfg::test {
namespace {

using enum Control;

using SettingsShowingTest = SettingsTest;

/// The tests of the values say what the form of a record holds.
TEST_F(SettingsShowingTest, EveryControlShowsWhatTheFormOfItsRecordHolds) {
  makePrompts(kFiles);
  clsPACSConfiguration record = completeRecord();
  record.configID = 1;
  connect();
  record.SaveConfiguration();
  SettingsForm form(kFiles);
  EXPECT_EQ(showRecord(form, record), std::nullopt);
  form = applyFieldRules(form).form;
  edit([&](HWND window) {
    for (const ControlDesign& each : controls()) {
      SCOPED_TRACE(toUtf8(each.name));
      const ControlContent& content = form[each.control];
      if (each.kind == Kind::Text) {
        EXPECT_EQ(text(window, each.control), content.text);
      } else if (each.kind == Kind::List) {
        EXPECT_EQ(position(window, each.control), content.position);
      } else if (each.kind == Kind::Check || each.kind == Kind::Option) {
        EXPECT_EQ(ticked(window, each.control), content.ticked);
      }
    }
    EXPECT_EQ(text(window, cmpAccessionFields), L"Accession ID, Visit ID");
    EXPECT_EQ(text(window, cmbXMLConfugrationFile), L"b.xml");
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
