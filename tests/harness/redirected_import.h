#pragma once

#include <windows.h>

namespace tlpacscfg::test {

/// While it lives, calls that a module makes of an imported function go to another function.
class RedirectedImport {
 public:
  template <class Function>
  RedirectedImport(HMODULE module, const char* name, Function* function)
      : RedirectedImport(module, name, reinterpret_cast<ULONG_PTR>(function)) {}
  ~RedirectedImport() { write(original_); }
  RedirectedImport(const RedirectedImport&) = delete;
  RedirectedImport& operator=(const RedirectedImport&) = delete;

 private:
  /// Throws std::runtime_error when the module does not import the function.
  RedirectedImport(HMODULE module, const char* name, ULONG_PTR function);
  void write(ULONG_PTR function) const;

  ULONG_PTR* const entry_;
  const ULONG_PTR original_;
};

}  // namespace tlpacscfg::test
