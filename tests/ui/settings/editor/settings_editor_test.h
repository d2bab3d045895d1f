#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "data/mod_main.h"
#include "harness/core_fixture.h"
#include "support/text.h"
#include "ui/settings/editor/settings_editor.h"
#include "ui/settings/expected_questions.h"
#include "ui/settings/values/blank_form.h"
#include "ui/settings/values/settings_rules.h"

namespace tlpacscfg::test {

inline constexpr const wchar_t* kBlankDescription =
    L"The Configuration Description Field cannot be blank.";
inline constexpr const wchar_t* kDeleteQuestion =
    L"Are you sure you want to delete this configuration?";

/// Values that the editor shows and reads back unchanged.
inline constexpr const wchar_t* kConsistent = L"pacs_request_password = 1, flag10 = 11";

/// The editor on a site with up to three configurations, driven as by its window.
class SettingsEditorTest : public SiteTest {
 protected:
  SettingsEditorTest() {
    host->settings = std::make_shared<HostSettings>();
    host->settings->User_ID = 42;
    modMain.g_objConfig = host->settings;
  }

  void addConsistent(int id, const std::wstring& description) {
    addConfiguration(id, std::wstring(kConsistent) + L", description = '" + description + L"'");
  }

  /// Three configurations; the third is assigned to a workstation.
  void makeSite() {
    addConsistent(1, L"Default");
    addConsistent(5, L"Five");
    addConsistent(9, L"Nine");
    addWorkstation(L"READ-01");
    assign(L"READ-01", L"'9'");
  }

  void open(std::int16_t configID) {
    connect();
    host->m_colPACSConfig = std::make_shared<colPACSConfiguration>();
    host->m_colPACSConfig->GetPACSConfigurations();
    host->m_colWorkstation = std::make_shared<colWorkstation>();
    host->m_colWorkstation->GetWorkstationsList();
    editor.load();
    editor.ShowPACSSettings(configID);
    applyPendingRules();
    messages.clear();
  }

  void applyPendingRules() {
    if (editor.rulesWanted) editor.TmrFieldChange();
    editor.rulesWanted = false;
  }

  void type(Control control, const std::wstring& text) { editor.form[control].text = text; }

  std::wstring description(int id) {
    return site
        .value(L"select description from Interface_PACS_cfg where config_id = " + decimal(id))
        .value_or(L"");
  }
  std::wstring count() {
    return site.value(L"select count(*) from Interface_PACS_cfg").value_or(L"");
  }
  std::wstring hostDescription(std::int16_t id) const {
    const auto& all = *host->m_colPACSConfig;
    const auto record = all.Item(all.GetItemNumber(id));
    return record ? record->Description : L"<none>";
  }

  void expectAsked(const std::wstring& question, system::Buttons buttons) const {
    ASSERT_FALSE(messages.empty());
    EXPECT_EQ(question, messages.front().text);
    EXPECT_EQ(buttons, messages.front().buttons);
    EXPECT_EQ(system::Icon::None, messages.front().icon);
    EXPECT_EQ(system::Modality::System, messages.front().modality);
    EXPECT_EQ(L"TLPACSCFG", messages.front().title);
  }

  std::shared_ptr<clsConfig> host = std::make_shared<clsConfig>();
  int listRefreshes = 0;
  int dialogRefreshes = 0;
  SettingsEditor editor{host,
                        {.refreshWorkstationList = [this] { ++listRefreshes; },
                         .refreshAssignmentDialog = [this] { ++dialogRefreshes; }}};
};

}  // namespace tlpacscfg::test
