// Drives the windows of another program, one step for each call:
//
//   drive wait TITLE                   waits until the window exists
//   drive gone TITLE                   waits until it does not
//   drive exists TITLE                 prints yes or no
//   drive click TITLE ID               presses a button or ticks a box, once it is enabled
//   drive press TITLE ok|cancel|yes|no answers a message box
//   drive choose TITLE ID POSITION     chooses an entry of a drop-down list
//   drive choose-code TITLE ID CODE    the same by the entry's item data
//   drive open TITLE ID                opens a drop-down list
//   drive close-list TITLE ID          closes it
//   drive type TITLE ID TEXT           replaces the text of a field
//   drive text TITLE ID                prints it
//   drive tab TITLE ID POSITION        selects a tab
//   drive header TITLE ID COLUMN       clicks a list's column header with the mouse
//   drive select TITLE ID ROW          selects a list's row
//   drive double-click TITLE ID ROW    double-clicks it with the mouse
//   drive rows TITLE ID                prints how many rows a list has
//   drive row-of TITLE ID COLUMN TEXT  prints the first row with that text, or -1
//   drive cell TITLE ID ROW COLUMN     prints one cell
//   drive close TITLE                  presses the window's close button
//   drive place TITLE                  prints WIDTHxHEIGHT+LEFT+TOP
//
// Positions, rows and columns count from 0. The exit code is 0 when the step was done.
#include <windows.h>
#include <commctrl.h>
#include <fcntl.h>
#include <io.h>

#include <cstdio>
#include <map>
#include <span>
#include <vector>

#include "windows.h"

namespace drive {
namespace {

using Arguments = std::span<const std::wstring>;

int number(const std::wstring& text) { return std::stoi(text); }

void print(const std::wstring& text) { std::wprintf(L"%ls\n", text.c_str()); }

HWND controlIn(Arguments arguments) {
  return controlOf(windowNamed(arguments[0]), number(arguments[1]));
}

void click(Arguments arguments) {
  const HWND button = controlIn(arguments);
  waitUntil([&] { return IsWindowEnabled(button) != FALSE; }, "an enabled button");
  tell(button, BM_CLICK);
}

void press(Arguments arguments) {
  static const std::map<std::wstring, int> answers = {
      {L"ok", IDOK}, {L"cancel", IDCANCEL}, {L"yes", IDYES}, {L"no", IDNO}};
  const HWND box = windowNamed(arguments[0]);
  tell(box, WM_COMMAND, static_cast<WPARAM>(answers.at(arguments[1])));
}

void chooseEntry(HWND list, int position) {
  if (ask(list, CB_SETCURSEL, static_cast<WPARAM>(position)) == CB_ERR) {
    throw Failure("the list has no such entry");
  }
  notifyParent(list, CBN_SELCHANGE);
}

void choose(Arguments arguments) { chooseEntry(controlIn(arguments), number(arguments[2])); }

void chooseCode(Arguments arguments) {
  const HWND list = controlIn(arguments);
  const auto count = static_cast<int>(ask(list, CB_GETCOUNT));
  for (int position = 0; position < count; ++position) {
    if (ask(list, CB_GETITEMDATA, static_cast<WPARAM>(position)) == number(arguments[2])) {
      return chooseEntry(list, position);
    }
  }
  throw Failure("the list has no entry of that code");
}

void type(Arguments arguments) {
  const HWND field = controlIn(arguments);
  ask(field, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(arguments[2].c_str()));
}

/// Clicks the middle of a rectangle of the window.
void clickAt(HWND window, int x, int y, bool twice) {
  const LPARAM point = MAKELPARAM(static_cast<WORD>(x), static_cast<WORD>(y));
  tell(window, WM_LBUTTONDOWN, MK_LBUTTON, point);
  tell(window, WM_LBUTTONUP, 0, point);
  if (!twice) return;
  tell(window, WM_LBUTTONDBLCLK, MK_LBUTTON, point);
  tell(window, WM_LBUTTONUP, 0, point);
}

void clickHeader(Arguments arguments) {
  const HWND list = controlIn(arguments);
  const int column = number(arguments[2]);
  int left = -GetScrollPos(list, SB_HORZ);
  for (int i = 0; i < column; ++i) {
    left += static_cast<int>(ask(list, LVM_GETCOLUMNWIDTH, static_cast<WPARAM>(i)));
  }
  const auto width = static_cast<int>(ask(list, LVM_GETCOLUMNWIDTH, static_cast<WPARAM>(column)));
  const auto header = reinterpret_cast<HWND>(ask(list, LVM_GETHEADER));
  RECT client{};
  GetClientRect(header, &client);
  clickAt(header, left + width / 2, client.bottom / 2, false);
}

void selectRow(HWND list, int row) {
  const SharedMemory memory(list, sizeof(LVITEMW));
  LVITEMW state{};
  state.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
  state.state = state.stateMask;
  memory.write(0, &state, sizeof(state));
  if (!ask(list, LVM_SETITEMSTATE, static_cast<WPARAM>(row),
           reinterpret_cast<LPARAM>(memory.address()))) {
    throw Failure("the list has no such row");
  }
  ask(list, LVM_ENSUREVISIBLE, static_cast<WPARAM>(row), FALSE);
}

void select(Arguments arguments) { selectRow(controlIn(arguments), number(arguments[2])); }

void doubleClick(Arguments arguments) {
  const HWND list = controlIn(arguments);
  const int row = number(arguments[2]);
  selectRow(list, row);
  const SharedMemory memory(list, sizeof(RECT));
  RECT place{.left = LVIR_LABEL, .top = 0, .right = 0, .bottom = 0};
  memory.write(0, &place, sizeof(place));
  ask(list, LVM_GETITEMRECT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(memory.address()));
  memory.read(0, &place, sizeof(place));
  clickAt(list, place.right + 20, (place.top + place.bottom) / 2, true);
}

std::wstring cellText(HWND list, int row, int column) {
  constexpr int kLongest = 1024;
  const SharedMemory memory(list, sizeof(LVITEMW) + kLongest * sizeof(wchar_t));
  LVITEMW item{};
  item.iSubItem = column;
  item.cchTextMax = kLongest;
  item.pszText = reinterpret_cast<wchar_t*>(memory.address() + sizeof(LVITEMW));
  memory.write(0, &item, sizeof(item));
  const LRESULT length = ask(list, LVM_GETITEMTEXTW, static_cast<WPARAM>(row),
                             reinterpret_cast<LPARAM>(memory.address()));
  std::wstring text(static_cast<std::size_t>(length), L'\0');
  memory.read(sizeof(LVITEMW), text.data(), text.size() * sizeof(wchar_t));
  return text;
}

int rowCount(HWND list) { return static_cast<int>(ask(list, LVM_GETITEMCOUNT)); }

void rowOf(Arguments arguments) {
  const HWND list = controlIn(arguments);
  const int rows = rowCount(list);
  int row = 0;
  while (row < rows && cellText(list, row, number(arguments[2])) != arguments[3]) ++row;
  print(std::to_wstring(row < rows ? row : -1));
}

void place(Arguments arguments) {
  RECT frame{};
  GetWindowRect(windowNamed(arguments[0]), &frame);
  std::wprintf(L"%ldx%ld+%ld+%ld\n", frame.right - frame.left, frame.bottom - frame.top, frame.left,
               frame.top);
}

/// The middle of a control in screen coordinates, for a simulated mouse.
void middle(Arguments arguments) {
  RECT frame{};
  GetWindowRect(controlIn(arguments), &frame);
  std::wprintf(L"%ld %ld\n", (frame.left + frame.right) / 2, (frame.top + frame.bottom) / 2);
}

struct Step {
  std::size_t arguments;
  void (*run)(Arguments);
};

const std::map<std::wstring, Step> kSteps = {
    {L"wait", {1, [](Arguments a) { windowNamed(a[0]); }}},
    {L"gone",
     {1, [](Arguments a) { waitUntil([&] { return !windowExists(a[0]); }, "a window to go"); }}},
    {L"exists", {1, [](Arguments a) { print(windowExists(a[0]) ? L"yes" : L"no"); }}},
    {L"click", {2, &click}},
    {L"press", {2, &press}},
    {L"choose", {3, &choose}},
    {L"choose-code", {3, &chooseCode}},
    {L"open", {2, [](Arguments a) { tell(controlIn(a), CB_SHOWDROPDOWN, TRUE); }}},
    {L"close-list", {2, [](Arguments a) { tell(controlIn(a), CB_SHOWDROPDOWN, FALSE); }}},
    {L"type", {3, &type}},
    {L"text", {2, [](Arguments a) { print(textOf(controlIn(a))); }}},
    {L"tab",
     {3,
      [](Arguments a) { tell(controlIn(a), TCM_SETCURFOCUS, static_cast<WPARAM>(number(a[2]))); }}},
    {L"header", {3, &clickHeader}},
    {L"select", {3, &select}},
    {L"double-click", {3, &doubleClick}},
    {L"rows", {2, [](Arguments a) { print(std::to_wstring(rowCount(controlIn(a)))); }}},
    {L"row-of", {4, &rowOf}},
    {L"cell", {4, [](Arguments a) { print(cellText(controlIn(a), number(a[2]), number(a[3]))); }}},
    {L"close", {1, [](Arguments a) { tell(windowNamed(a[0]), WM_SYSCOMMAND, SC_CLOSE); }}},
    {L"place", {1, &place}},
    {L"middle", {2, &middle}},
};

int run(Arguments arguments) {
  const auto step = arguments.empty() ? kSteps.end() : kSteps.find(arguments[0]);
  if (step == kSteps.end() || arguments.size() != step->second.arguments + 1) {
    std::fputs("drive: no such step, or the wrong number of arguments\n", stderr);
    return 2;
  }
  step->second.run(arguments.subspan(1));
  return 0;
}

}  // namespace
}  // namespace drive

int wmain(int argc, wchar_t** argv) {
  // Places are in pixels of the screen.
  SetProcessDPIAware();
  _setmode(_fileno(stdout), _O_U8TEXT);
  const std::vector<std::wstring> arguments(argv + 1, argv + argc);
  try {
    return drive::run(arguments);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "drive: %s\n", error.what());
    return 1;
  }
}
