#pragma once

#include <windows.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "ui/win32/subclass.h"

namespace tlpacscfg::win32 {

/// A drop-down list whose entries have check boxes: a system combo box (CBS_OWNERDRAWFIXED with
/// CBS_HASSTRINGS) whose item data is 1 for a ticked entry and 0 for another, and whose text is
/// that of the ticked entries. A click or the space bar changes a tick and leaves the list open;
/// Enter, Esc, F4 and Alt+Up close it.
class TickComboBox {
 public:
  /// `name` is that of the open list for assistive technology. `changed` is called after the user
  /// has changed a tick. The rows are as high as those of `likeCombo`, an ordinary drop-down list.
  void attach(HWND combo, HWND likeCombo, std::wstring name,
              const std::vector<std::wstring>& entries, std::function<void()> changed);

  bool ticked(std::size_t entry) const;
  /// Does not count as a change by the user.
  void setTicked(std::size_t entry, bool ticked);

  /// The text of the closed list.
  void setDisplayText(const std::wstring& text);

  /// Draws the control if the message is for it.
  bool draw(const DRAWITEMSTRUCT& request) const;

 private:
  std::optional<LRESULT> onComboMessage(UINT message, WPARAM wParam, LPARAM lParam);
  std::optional<LRESULT> onListMessage(UINT message, WPARAM wParam, LPARAM lParam);
  bool answerKey(WPARAM key);
  bool answerClick(UINT message, LPARAM lParam);
  void toggle(std::size_t entry);
  LRESULT copyText(wchar_t* buffer, std::size_t size) const;
  void redraw() const;

  HWND combo_ = nullptr;
  HWND list_ = nullptr;
  std::wstring name_;
  std::wstring text_;
  std::function<void()> changed_;
  Subclass comboMessages_;
  Subclass listMessages_;
};

}  // namespace tlpacscfg::win32
