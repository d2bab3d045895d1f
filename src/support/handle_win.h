#pragma once

#include <windows.h>

#include <cstdint>
#include <utility>

namespace tlpacscfg {

/// Owns one handle of the system. `Null` is the number of the handle that stands for none.
template <class Handle, auto Close, std::intptr_t Null = 0>
class UniqueHandle {
 public:
  UniqueHandle() = default;
  explicit UniqueHandle(Handle handle) : handle_(handle) {}
  UniqueHandle(UniqueHandle&& other) noexcept : handle_(other.release()) {}
  UniqueHandle& operator=(UniqueHandle&& other) noexcept {
    if (this != &other) reset(other.release());
    return *this;
  }
  ~UniqueHandle() { reset(); }

  Handle get() const { return handle_; }
  explicit operator bool() const { return handle_ != null(); }
  Handle release() { return std::exchange(handle_, null()); }
  void reset(Handle handle = null()) {
    if (handle_ != null()) Close(handle_);
    handle_ = handle;
  }

 private:
  static Handle null() { return reinterpret_cast<Handle>(Null); }

  Handle handle_ = null();
};

/// The number of INVALID_HANDLE_VALUE, which cannot be a template argument itself.
inline constexpr std::intptr_t kInvalidHandle = -1;

using FileHandle = UniqueHandle<HANDLE, &CloseHandle, kInvalidHandle>;

}  // namespace tlpacscfg
