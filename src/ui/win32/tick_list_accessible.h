#pragma once

#include <windows.h>

#include <string>

namespace tlpacscfg::win32 {

/// Sent to the list by its accessible object: toggles the entry of that index.
inline constexpr UINT kToggleEntry = WM_APP;

/// The answer to WM_GETOBJECT of a list box whose item data are ticks: a list with a check box for
/// each entry. It needs the list box only, and may outlive it.
LRESULT answerAsTickList(HWND list, const std::wstring& name, WPARAM wParam);

/// Tells assistive technology that the tick of an entry has changed.
void announceTick(HWND list, std::size_t entry);

}  // namespace tlpacscfg::win32
