#pragma once

#include <windows.h>

#include <initializer_list>
#include <string>

/// What a user's keyboard and mouse do, through the system's input and so to whatever window is in
/// front. Nothing else may use the display meanwhile.
namespace tlpacscfg::test::real_input {

/// Waits until the window is in front.
void bringToFront(HWND window);

/// Presses the keys in order and lets them go in the reverse order.
void keys(std::initializer_list<WORD> virtualKeys);
void key(WORD virtualKey);
/// Alt and a letter.
void mnemonic(wchar_t letter);
void write(const std::wstring& text);

/// A click in the middle of the control, or at a place in its client area.
void clickOn(HWND control);
void clickAt(HWND control, POINT at);
void doubleClickAt(HWND control, POINT at);

}  // namespace tlpacscfg::test::real_input
