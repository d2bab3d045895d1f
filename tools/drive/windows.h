#pragma once

#include <windows.h>

#include <cstddef>
#include <functional>
#include <stdexcept>
#include <string>

/// Windows of another program: found by caption and control id, asked and driven by messages.
namespace drive {

struct Failure : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// Asks again and again until the answer is yes; throws Failure when it never is.
void waitUntil(const std::function<bool()>& condition, const std::string& what);

/// The visible top-level window of that caption, waited for.
HWND windowNamed(const std::wstring& title);
bool windowExists(const std::wstring& title);

/// The control anywhere inside the window, waited for; a visible one before a hidden one.
HWND controlOf(HWND window, int id);

std::wstring textOf(HWND window);

/// Sends a message that needs no memory of ours, and waits for the answer.
LRESULT ask(HWND window, UINT message, WPARAM wParam = 0, LPARAM lParam = 0);

/// Sends a message and waits until it was handled, or until its handling has brought up a message
/// box.
void tell(HWND window, UINT message, WPARAM wParam = 0, LPARAM lParam = 0);

/// Tells the control's parent what the control would tell it itself.
void notifyParent(HWND control, int code);

/// Memory inside the program that owns a window, for messages that carry pointers.
class SharedMemory {
 public:
  SharedMemory(HWND window, std::size_t bytes);
  ~SharedMemory();
  SharedMemory(const SharedMemory&) = delete;
  SharedMemory& operator=(const SharedMemory&) = delete;

  std::byte* address() const { return address_; }
  void write(std::size_t offset, const void* data, std::size_t bytes) const;
  void read(std::size_t offset, void* data, std::size_t bytes) const;

 private:
  HANDLE process_ = nullptr;
  std::byte* address_ = nullptr;
};

}  // namespace drive
