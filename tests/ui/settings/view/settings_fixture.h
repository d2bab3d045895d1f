#pragma once

#include <functional>
#include <string>
#include <vector>

#include "ui/settings/expected_questions.h"
#include "ui/settings/values/settings_controls.h"
#include "ui/settings/view/control_ids.h"
#include "ui/window_fixture.h"

namespace tlpacscfg::test {

inline constexpr int kTabs = 5;
inline constexpr const wchar_t* kSettingsTitle = L"Corvane Expert Integration Settings";

/// The settings window, opened from the list window.
class SettingsTest : public WindowTest {
 protected:
  /// The site's network root directory, with a prompts directory that holds the files.
  void makePrompts(const std::vector<std::wstring>& files);

  /// A configuration that is read back unchanged, so that leaving it asks nothing.
  void addConsistent(int id, const std::wstring& description, const std::wstring& changes = L"");
  /// 1 "Default", 5 "Five" and 9 "Nine"; READ-01 has 5 and is the workstation that is selected.
  void makeSite();

  /// Opens the settings window on the configuration of the list's selected row, runs the script,
  /// and closes both windows without saving.
  void edit(const std::function<void(HWND)>& script);
  /// Opens the window and waits until the field rules have been applied.
  static HWND openSettings(HWND list);
  /// Waits until a control shows that rules are being applied, and until all of them have been.
  static void awaitRules(HWND window, const std::function<bool()>& shown, const std::string& what);
  static void closeSettings(HWND window);

  static HWND control(HWND window, Control which);
  static std::wstring text(HWND window, Control which);
  static bool ticked(HWND window, Control which);
  static int position(HWND window, Control which);
  static bool enabled(HWND window, Control which);
  /// True if shown on its page, even if another page is selected.
  static bool visible(HWND window, Control which);

  static void press(HWND window, Control button);
  static void fill(HWND window, Control edit, const std::wstring& text);
  static void pick(HWND window, Control list, int position);
  static void pickCode(HWND window, Control list, std::int16_t code);
  static void turnTo(HWND window, int tab);
  static int currentTab(HWND window);

  static HWND rows(HWND window);
  /// Selects a row as the user does, and waits until its configuration is shown.
  static void pickRow(HWND window, int row);
  /// Selects a row and waits until the resulting question is answered.
  void pickRowAndAnswer(HWND window, int row, system::Answer answer, int selectedAfterwards);

  /// Expects this question, in a plain box, as the first message.
  void expectQuestion(const std::wstring& question, system::Buttons buttons) const;

  std::wstring stored(int id, const std::wstring& column);
  /// How many configurations are stored.
  std::wstring count();
};

}  // namespace tlpacscfg::test
