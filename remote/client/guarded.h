#pragma once

#include <windows.h>

#include <new>

namespace tlpacscfg::client {

/// The border to COM: no exception passes.
template <class Work>
HRESULT guarded(Work work) noexcept {
  try {
    return work();
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  } catch (...) {
    return E_UNEXPECTED;
  }
}

}  // namespace tlpacscfg::client
