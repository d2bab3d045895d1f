#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <vector>

/// Drives the component's windows by control ids, from another thread.
namespace tlpacscfg::test {

/// Polls until the condition holds; throws std::runtime_error after a time limit.
void waitUntil(const std::function<bool()>& condition, const std::string& what);

/// Waits for the visible top-level window of this process with that caption.
HWND windowNamed(const std::wstring& title);
bool isShown(const std::wstring& title);

/// The control anywhere inside the window; throws when there is none.
HWND controlOf(HWND window, int id);

std::wstring textOf(HWND control);

/// The windows of the same thread that show tooltips.
std::vector<HWND> tooltipWindowsBeside(HWND window);
/// The tooltip that its top-level window has for the control; empty when there is none.
std::wstring tooltipOf(HWND control);

/// Like the user: notifies the control's parent.
void click(HWND window, int id);
void choose(HWND window, int comboId, int position);
void type(HWND window, int editId, const std::wstring& text);

/// Queues a key for the control that has the focus in the window's thread.
void pressKey(HWND window, WORD virtualKey);
/// Queues Alt and a letter.
void pressMnemonic(HWND window, wchar_t letter);
HWND focusOf(HWND window);

std::vector<std::wstring> entriesOf(HWND combo);

namespace list_view {
int rowCount(HWND list);
int columnCount(HWND list);
std::wstring cell(HWND list, int row, int column);
/// The texts of a column from top to bottom.
std::vector<std::wstring> column(HWND list, int index);
int selectedRow(HWND list);
void selectRow(HWND list, int row);
int columnWidth(HWND list, int column);
std::wstring header(HWND list, int column);
/// With the mouse, in the middle of the header.
void clickHeader(HWND list, int column);
/// With the mouse, on the row's text in the column.
void clickRow(HWND list, int row, int column);
void doubleClickRow(HWND list, int row, int column);
/// With the left or the right button, in the empty part below the rows.
void clickBelowRows(HWND list);
void rightClickBelowRows(HWND list);
/// Drags the divider at the column's right edge.
void dragDivider(HWND list, int column, int pixels);
}  // namespace list_view

}  // namespace tlpacscfg::test
