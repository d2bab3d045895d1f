#pragma once

#include <unknwn.h>

#include <utility>

namespace tlpacscfg {

/// Owns one reference to a COM object.
template <class Interface>
class ComPtr {
 public:
  ComPtr() = default;
  ComPtr(std::nullptr_t) {}
  ComPtr(const ComPtr& other) : ComPtr(sharing(other.pointer_)) {}
  ComPtr(ComPtr&& other) noexcept : pointer_(other.detach()) {}
  ComPtr& operator=(ComPtr other) noexcept {
    std::swap(pointer_, other.pointer_);
    return *this;
  }
  ~ComPtr() {
    if (pointer_) pointer_->Release();
  }

  /// Takes ownership of a reference.
  static ComPtr owning(Interface* pointer) {
    ComPtr result;
    result.pointer_ = pointer;
    return result;
  }

  /// Adds a reference.
  static ComPtr sharing(Interface* pointer) {
    if (pointer) pointer->AddRef();
    return owning(pointer);
  }

  Interface* get() const { return pointer_; }
  Interface* operator->() const { return pointer_; }
  explicit operator bool() const { return pointer_ != nullptr; }

  /// Transfers ownership to the caller.
  Interface* detach() { return std::exchange(pointer_, nullptr); }

  /// For an output parameter; the reference held so far is released.
  Interface** out() {
    *this = ComPtr();
    return &pointer_;
  }

  /// Null when the object does not offer the interface.
  template <class Other>
  ComPtr<Other> query() const {
    ComPtr<Other> other;
    if (pointer_) {
      pointer_->QueryInterface(__uuidof(Other), reinterpret_cast<void**>(other.out()));
    }
    return other;
  }

 private:
  Interface* pointer_ = nullptr;
};

}  // namespace tlpacscfg
