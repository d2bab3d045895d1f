#include "ui/settings/view/settings_fixture.h"

#include <commctrl.h>

#include "harness/scratch.h"
#include "support/text.h"
#include "ui/settings/values/settings_options.h"

namespace tlpacscfg::test {

void SettingsTest::makePrompts(const std::vector<std::wstring>& files) {
  makeDirectory(scratchPath(L"root"));
  makeDirectory(scratchPath(L"root\\TALORA"));
  makeDirectory(scratchPath(L"root\\TALORA\\PROMPTS"));
  for (const std::wstring& file : files) {
    writeBytes(scratchPath(L"root\\TALORA\\PROMPTS\\" + file), "<map/>");
  }
  const std::wstring ini = scratchPath(L"site.ini");
  writeBytes(ini, "[System]\r\nNetworkRootDir=" + toUtf8(scratchPath(L"root")) + "\r\n");
  config_->settings->Talora_INIFile = ini;
}

void SettingsTest::addConsistent(int id, const std::wstring& description,
                                 const std::wstring& changes) {
  addConfiguration(id, L"pacs_request_password = 1, flag10 = 11, description = '" + description +
                           L"'" + (changes.empty() ? L"" : L", " + changes));
}

void SettingsTest::makeSite() {
  addConsistent(1, L"Default");
  addConsistent(5, L"Five");
  addConsistent(9, L"Nine");
  addWorkstation(kComputer);
  assign(kComputer, L"'5'");
}

HWND SettingsTest::openSettings(HWND list) {
  click(list, IDC_frmPACSList_cmdEditConfig);
  const HWND window = windowNamed(kSettingsTitle);
  // The rules hide one of the two; until they have run both are visible.
  awaitRules(
      window,
      [&] {
        return visible(window, Control::cmbResPassword) !=
               visible(window, Control::txtApplicableFields);
      },
      "the rules are applied");
  return window;
}

void SettingsTest::awaitRules(HWND window, const std::function<bool()>& shown,
                              const std::string& what) {
  waitUntil(shown, what);
  // The window changes one control after the other, and answers when it has changed the last.
  SendMessageW(window, WM_NULL, 0, 0);
}

void SettingsTest::closeSettings(HWND window) {
  press(window, Control::btnExit);
  waitUntil([] { return !isShown(kSettingsTitle); }, "the settings window closes");
}

void SettingsTest::edit(const std::function<void(HWND)>& script) {
  initialise();
  showWhile([&](HWND list) {
    script(openSettings(list));
    if (isShown(kSettingsTitle)) {
      answers.clear();
      closeSettings(windowNamed(kSettingsTitle));
    }
    click(list, IDC_frmPACSList_btnOk);
  });
}

HWND SettingsTest::control(HWND window, Control which) { return controlOf(window, idOf(which)); }

std::wstring SettingsTest::text(HWND window, Control which) {
  return textOf(control(window, which));
}

bool SettingsTest::ticked(HWND window, Control which) {
  return SendMessageW(control(window, which), BM_GETCHECK, 0, 0) == BST_CHECKED;
}

int SettingsTest::position(HWND window, Control which) {
  return static_cast<int>(SendMessageW(control(window, which), CB_GETCURSEL, 0, 0));
}

bool SettingsTest::enabled(HWND window, Control which) {
  return IsWindowEnabled(control(window, which)) != FALSE;
}

bool SettingsTest::visible(HWND window, Control which) {
  return (GetWindowLongW(control(window, which), GWL_STYLE) & WS_VISIBLE) != 0;
}

void SettingsTest::press(HWND window, Control button) { click(window, idOf(button)); }

void SettingsTest::fill(HWND window, Control edit, const std::wstring& text) {
  type(window, idOf(edit), text);
}

void SettingsTest::pick(HWND window, Control list, int position) {
  choose(window, idOf(list), position);
}

void SettingsTest::pickCode(HWND window, Control list, std::int16_t code) {
  const HWND combo = control(window, list);
  const LRESULT count = SendMessageW(combo, CB_GETCOUNT, 0, 0);
  for (LRESULT i = 0; i < count; ++i) {
    if (SendMessageW(combo, CB_GETITEMDATA, static_cast<WPARAM>(i), 0) != code) continue;
    return pick(window, list, static_cast<int>(i));
  }
  throw std::runtime_error("no entry with the code " + std::to_string(code));
}

void SettingsTest::turnTo(HWND window, int tab) {
  const HWND tabs = control(window, Control::SSPACSOptions);
  RECT place{};
  SendMessageW(tabs, TCM_GETITEMRECT, static_cast<WPARAM>(tab), reinterpret_cast<LPARAM>(&place));
  const LPARAM at = MAKELPARAM((place.left + place.right) / 2, (place.top + place.bottom) / 2);
  SendMessageW(tabs, WM_LBUTTONDOWN, MK_LBUTTON, at);
  SendMessageW(tabs, WM_LBUTTONUP, 0, at);
}

int SettingsTest::currentTab(HWND window) {
  return static_cast<int>(
      SendMessageW(control(window, Control::SSPACSOptions), TCM_GETCURSEL, 0, 0));
}

HWND SettingsTest::rows(HWND window) { return control(window, Control::lvwConfigs); }

void SettingsTest::pickRow(HWND window, int row) {
  const std::wstring label = list_view::cell(rows(window), row, 1);
  const std::wstring description = label.substr(label.find(L" - ") + 3);
  list_view::selectRow(rows(window), row);
  waitUntil([&] { return text(window, Control::txtDescription) == description; },
            "the row's configuration is shown");
}

void SettingsTest::pickRowAndAnswer(HWND window, int row, system::Answer answer,
                                    int selectedAfterwards) {
  answers = {answer};
  list_view::selectRow(rows(window), row);
  waitUntil(
      [&] {
        return enabled(window, Control::btnSave) &&
               list_view::selectedRow(rows(window)) == selectedAfterwards && !messages.empty();
      },
      "the question is answered");
}

void SettingsTest::expectQuestion(const std::wstring& question, system::Buttons buttons) const {
  ASSERT_FALSE(messages.empty());
  EXPECT_EQ(messages[0].text, question);
  EXPECT_EQ(messages[0].buttons, buttons);
  EXPECT_EQ(messages[0].icon, system::Icon::None);
  EXPECT_EQ(messages[0].modality, system::Modality::System);
}

std::wstring SettingsTest::count() {
  return site.value(L"select count(*) from Interface_PACS_cfg").value_or(L"");
}

std::wstring SettingsTest::stored(int id, const std::wstring& column) {
  return site
      .value(L"select " + column + L" from Interface_PACS_cfg where config_id = " + decimal(id))
      .value_or(L"<null>");
}

}  // namespace tlpacscfg::test
