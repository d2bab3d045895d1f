#include "windows.h"

#include <cstddef>

namespace drive {
namespace {

constexpr DWORD kPollMilliseconds = 20;
constexpr ULONGLONG kPatienceMilliseconds = 120'000;

std::string narrow(const std::wstring& text) {
  const int length = static_cast<int>(text.size());
  std::string bytes(text.size() * 3, '\0');
  bytes.resize(static_cast<std::size_t>(
      WideCharToMultiByte(CP_UTF8, 0, text.data(), length, bytes.data(),
                          static_cast<int>(bytes.size()), nullptr, nullptr)));
  return bytes;
}

struct Search {
  const std::wstring* title = nullptr;
  int id = 0;
  HWND found = nullptr;
};

BOOL CALLBACK matchTitle(HWND window, LPARAM parameter) {
  auto& search = *reinterpret_cast<Search*>(parameter);
  if (!IsWindowVisible(window) || textOf(window) != *search.title) return TRUE;
  search.found = window;
  return FALSE;
}

BOOL CALLBACK matchId(HWND window, LPARAM parameter) {
  auto& search = *reinterpret_cast<Search*>(parameter);
  if (GetDlgCtrlID(window) != search.id) return TRUE;
  const bool visible = IsWindowVisible(window);
  if (visible || search.found == nullptr) search.found = window;
  return !visible;
}

HWND findWindow(const std::wstring& title) {
  Search search{.title = &title};
  EnumWindows(&matchTitle, reinterpret_cast<LPARAM>(&search));
  return search.found;
}

}  // namespace

void waitUntil(const std::function<bool()>& condition, const std::string& what) {
  const ULONGLONG end = GetTickCount64() + kPatienceMilliseconds;
  while (!condition()) {
    if (GetTickCount64() > end) throw Failure("waited in vain for " + what);
    Sleep(kPollMilliseconds);
  }
}

HWND windowNamed(const std::wstring& title) {
  HWND window = nullptr;
  waitUntil([&] { return (window = findWindow(title)) != nullptr; },
            "the window '" + narrow(title) + "'");
  return window;
}

bool windowExists(const std::wstring& title) { return findWindow(title) != nullptr; }

HWND controlOf(HWND window, int id) {
  HWND control = nullptr;
  waitUntil(
      [&] {
        Search search{.id = id};
        EnumChildWindows(window, &matchId, reinterpret_cast<LPARAM>(&search));
        control = search.found;
        return control != nullptr;
      },
      "control " + std::to_string(id));
  return control;
}

std::wstring textOf(HWND window) {
  std::wstring text(4096, L'\0');
  DWORD_PTR length = 0;
  if (SendMessageTimeoutW(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()),
                          SMTO_ABORTIFHUNG, 5000, &length) == 0) {
    return {};
  }
  text.resize(length);
  return text;
}

LRESULT ask(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  DWORD_PTR answer = 0;
  if (SendMessageTimeoutW(window, message, wParam, lParam, SMTO_NORMAL, kPatienceMilliseconds,
                          &answer) == 0) {
    throw Failure("the window gave no answer to message " + std::to_string(message));
  }
  return static_cast<LRESULT>(answer);
}

void tell(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (!SendNotifyMessageW(window, message, wParam, lParam)) throw Failure("the window is gone");
  // Sent messages keep their order and are handled by the loop of a message box too. A window that
  // the message destroyed does not answer.
  SendMessageTimeoutW(window, WM_NULL, 0, 0, SMTO_NORMAL, kPatienceMilliseconds, nullptr);
}

void notifyParent(HWND control, int code) {
  tell(GetParent(control), WM_COMMAND,
       MAKEWPARAM(static_cast<WORD>(GetDlgCtrlID(control)), static_cast<WORD>(code)),
       reinterpret_cast<LPARAM>(control));
}

SharedMemory::SharedMemory(HWND window, std::size_t bytes) {
  DWORD process = 0;
  GetWindowThreadProcessId(window, &process);
  process_ = OpenProcess(PROCESS_VM_OPERATION | PROCESS_VM_READ | PROCESS_VM_WRITE, FALSE, process);
  if (process_ == nullptr) throw Failure("the program cannot be opened");
  address_ = static_cast<std::byte*>(
      VirtualAllocEx(process_, nullptr, bytes, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE));
  if (address_ == nullptr) {
    CloseHandle(process_);
    throw Failure("the program gives no memory");
  }
}

SharedMemory::~SharedMemory() {
  VirtualFreeEx(process_, address_, 0, MEM_RELEASE);
  CloseHandle(process_);
}

void SharedMemory::write(std::size_t offset, const void* data, std::size_t bytes) const {
  if (!WriteProcessMemory(process_, address_ + offset, data, bytes, nullptr)) {
    throw Failure("the program's memory cannot be written");
  }
}

void SharedMemory::read(std::size_t offset, void* data, std::size_t bytes) const {
  if (!ReadProcessMemory(process_, address_ + offset, data, bytes, nullptr)) {
    throw Failure("the program's memory cannot be read");
  }
}

}  // namespace drive
