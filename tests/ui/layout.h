#pragma once

#include <windows.h>

#include <string>
#include <vector>

/// Whether everything in a window can be seen.
namespace tlpacscfg::test {

/// What is wrong with the visible controls directly in the window: a text, an entry or a tab that
/// is larger than its place, a control outside the window, two that overlap.
std::vector<std::wstring> layoutProblems(HWND window);

/// The same where the window scrolls, so that controls may be outside.
std::vector<std::wstring> layoutProblemsOfScrolled(HWND window);

RECT placeOf(HWND window);
bool contains(const RECT& outer, const RECT& inner);

}  // namespace tlpacscfg::test
