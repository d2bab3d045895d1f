#pragma once

#include <windows.h>

#include <cstdint>
#include <string>

namespace tlpacscfg::win32 {

/// A drop-down list whose entries carry 16-bit codes as item data.
class ComboBox {
 public:
  explicit ComboBox(HWND combo = nullptr) : combo_(combo) {}

  void clear() const { SendMessageW(combo_, CB_RESETCONTENT, 0, 0); }
  void add(const std::wstring& text, std::int16_t code) const;
  int count() const { return static_cast<int>(SendMessageW(combo_, CB_GETCOUNT, 0, 0)); }

  /// -1 when nothing is selected.
  int position() const { return static_cast<int>(SendMessageW(combo_, CB_GETCURSEL, 0, 0)); }
  void selectPosition(int position) const {
    SendMessageW(combo_, CB_SETCURSEL, static_cast<WPARAM>(position), 0);
  }

  std::int16_t codeAt(int position) const {
    return static_cast<std::int16_t>(
        SendMessageW(combo_, CB_GETITEMDATA, static_cast<WPARAM>(position), 0));
  }
  /// Throws InvalidPropertyArrayIndex when nothing is selected.
  std::int16_t selectedCode() const;
  /// Selects the first entry with the code; false, without a change, if there is none.
  bool selectCode(std::int16_t code) const;

  std::wstring textAt(int position) const;

  /// Widens the open list to its longest entry.
  void fitDroppedWidth() const;

 private:
  HWND combo_;
};

}  // namespace tlpacscfg::win32
