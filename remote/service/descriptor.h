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
  ~Descriptor() {
    if (descriptor_ >= 0) ::close(descriptor_);
  }

  int get() const { return descriptor_; }

 private:
  int descriptor_;
};

}  // namespace tlpacscfg::service
