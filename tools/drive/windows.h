#pragma once

#include <windows.h>

#include <cstddef>
#include <functional>
#include <stdexcept>
#include <string>

/// Finds windows of another program by caption and control id, and drives them by messages.
namespace drive {

struct Failure : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// Polls until the condition holds; throws Failure after a time limit.
void waitUntil(const std::function<bool()>& condition, const std::string& what);

/// Waits for the visible top-level window of that caption.
HWND windowNamed(const std::wstring& title);
bool windowExists(const std::wstring& title);

/// Waits for the control anywhere inside the window; prefers a visible one to a hidden one.
HWND controlOf(HWND window, int id);

std::wstring textOf(HWND window);

/// Sends a message without pointers and waits for the result.
LRESULT ask(HWND window, UINT message, WPARAM wParam = 0, LPARAM lParam = 0);

/// Sends a message and waits until it was handled or its handler shows a message box.
void tell(HWND window, UINT message, WPARAM wParam = 0, LPARAM lParam = 0);

/// Sends the control's parent the notification that the control would send.
void notifyParent(HWND control, int code);

/// Memory in the process that owns a window, for messages with pointers.
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
