#include "ui/real_input.h"

#include <stdexcept>
#include <vector>

#include "ui/window_driver.h"

namespace tlpacscfg::test::real_input {
namespace {

INPUT keyInput(WORD virtualKey, DWORD flags) {
  INPUT input{};
  input.type = INPUT_KEYBOARD;
  input.ki.wVk = virtualKey;
  input.ki.wScan = static_cast<WORD>(MapVirtualKeyW(virtualKey, MAPVK_VK_TO_VSC));
  input.ki.dwFlags = flags;
  return input;
}

INPUT characterInput(wchar_t character, DWORD flags) {
  INPUT input{};
  input.type = INPUT_KEYBOARD;
  input.ki.wScan = character;
  input.ki.dwFlags = KEYEVENTF_UNICODE | flags;
  return input;
}

INPUT mouseInput(DWORD flags, POINT at = {}) {
  INPUT input{};
  input.type = INPUT_MOUSE;
  input.mi.dwFlags = flags;
  if ((flags & MOUSEEVENTF_MOVE) != 0) {
    constexpr int kWholeScreen = 65536;
    input.mi.dx = MulDiv(at.x, kWholeScreen, GetSystemMetrics(SM_CXSCREEN)) + 1;
    input.mi.dy = MulDiv(at.y, kWholeScreen, GetSystemMetrics(SM_CYSCREEN)) + 1;
  }
  return input;
}

void send(std::vector<INPUT> inputs) {
  const auto count = static_cast<UINT>(inputs.size());
  if (SendInput(count, inputs.data(), sizeof(INPUT)) != count) {
    throw std::runtime_error("the input was not taken");
  }
}

void moveTo(HWND control, POINT at) {
  ClientToScreen(control, &at);
  send({mouseInput(MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE, at)});
}

void pressMouse() { send({mouseInput(MOUSEEVENTF_LEFTDOWN), mouseInput(MOUSEEVENTF_LEFTUP)}); }

}  // namespace

void bringToFront(HWND window) {
  waitUntil(
      [&] {
        if (GetForegroundWindow() == window) return true;
        SetForegroundWindow(window);
        return false;
      },
      "the window in front");
}

void keys(std::initializer_list<WORD> virtualKeys) {
  std::vector<INPUT> inputs;
  for (const WORD each : virtualKeys) inputs.push_back(keyInput(each, 0));
  for (auto each = std::rbegin(virtualKeys); each != std::rend(virtualKeys); ++each) {
    inputs.push_back(keyInput(*each, KEYEVENTF_KEYUP));
  }
  send(std::move(inputs));
}

void key(WORD virtualKey) { keys({virtualKey}); }

void mnemonic(wchar_t letter) { keys({VK_MENU, static_cast<WORD>(letter)}); }

void write(const std::wstring& text) {
  for (const wchar_t character : text) {
    send({characterInput(character, 0), characterInput(character, KEYEVENTF_KEYUP)});
  }
}

void clickOn(HWND control) {
  RECT client{};
  GetClientRect(control, &client);
  clickAt(control, {client.right / 2, client.bottom / 2});
}

void clickAt(HWND control, POINT at) {
  moveTo(control, at);
  pressMouse();
}

void doubleClickAt(HWND control, POINT at) {
  moveTo(control, at);
  pressMouse();
  pressMouse();
}

}  // namespace tlpacscfg::test::real_input
