#pragma once

#include <gtest/gtest.h>

#include <string>

#include "support/registry.h"

namespace tlpacscfg::test {

/// A key that no other test uses and that is deleted with the object.
class RegistryKey {
 public:
  explicit RegistryKey(registry::Root root) : RegistryKey(root, freshPath()) {}
  RegistryKey(registry::Root root, std::wstring path) : root_(root), path_(std::move(path)) {}
  ~RegistryKey() { registry::deleteKey(root_, path_); }
  RegistryKey(const RegistryKey&) = delete;
  RegistryKey& operator=(const RegistryKey&) = delete;

  const std::wstring& path() const { return path_; }
  void create() const { ASSERT_TRUE(registry::createKey(root_, path_)); }

 private:
  static std::wstring freshPath() {
    // A test's own directory has a name that no other running test has.
    const std::string scratch = std::getenv("TL_SCRATCH");
    const std::string name = scratch.substr(scratch.find_last_of("/\\") + 1);
    return L"SOFTWARE\\TlTest-" + std::wstring(name.begin(), name.end());
  }

  registry::Root root_;
  std::wstring path_;
};

}  // namespace tlpacscfg::test
