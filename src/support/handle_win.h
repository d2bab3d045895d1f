#pragma once

#include <windows.h>

#include <utility>

namespace tlpacscfg {

/// Owns one handle of the system.
template <class Handle, auto Close, Handle Invalid = Handle{}>
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
  explicit operator bool() const { return handle_ != Invalid; }
  Handle release() { return std::exchange(handle_, Invalid); }
  void reset(Handle handle = Invalid) {
    if (handle_ != Invalid) Close(handle_);
    handle_ = handle;
  }

 private:
  Handle handle_ = Invalid;
};

/// Owns a file handle, whose null value is INVALID_HANDLE_VALUE, which cannot be a template
/// argument.
class FileHandle {
 public:
  explicit FileHandle(HANDLE handle) : handle_(handle) {}
  ~FileHandle() {
    if (*this) CloseHandle(handle_);
  }
  FileHandle(const FileHandle&) = delete;
  FileHandle& operator=(const FileHandle&) = delete;

  HANDLE get() const { return handle_; }
  explicit operator bool() const { return handle_ != INVALID_HANDLE_VALUE; }

 private:
  HANDLE handle_;
};

}  // namespace tlpacscfg
