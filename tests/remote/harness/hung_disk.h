#pragma once

#include <atomic>
#include <string>
#include <thread>

namespace tlpacscfg::test {

/// A disk, mounted at a new directory, that is lost: no access to it returns, and a process that
/// waits for it cannot be killed. Mounting needs the rights of root.
class HungDisk {
 public:
  /// Throws std::runtime_error.
  explicit HungDisk(std::string directory);
  ~HungDisk();
  HungDisk(const HungDisk&) = delete;
  HungDisk& operator=(const HungDisk&) = delete;

  /// Every access fails from now on; those that wait end.
  void remove();

 private:
  void answerNothing();

  std::string directory_;
  int requests_;
  std::atomic<bool> removed_ = false;
  std::thread kernel_;
};

}  // namespace tlpacscfg::test
