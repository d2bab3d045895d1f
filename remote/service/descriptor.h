#pragma once

#include <unistd.h>

#include <utility>

namespace tlpacscfg::service {

/// Owns one file descriptor.
class Descriptor {
 public:
  explicit Descriptor(int descriptor) : descriptor_(descriptor) {}
  Descriptor(Descriptor&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
  Descriptor& operator=(Descriptor&&) = delete;
  ~Descriptor() { close(); }

  int get() const { return descriptor_; }

  void close() {
    const int open = std::exchange(descriptor_, -1);
    if (open >= 0) ::close(open);
  }

 private:
  int descriptor_;
};

}  // namespace tlpacscfg::service
