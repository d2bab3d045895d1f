#pragma once

#include <windows.h>

namespace tlpacscfg {

/// Enters the classes and the type library into the registry. What fails leaves nothing behind.
HRESULT registerComponent();

/// Removes every key that registration made. Succeeds when there is none.
HRESULT unregisterComponent();

}  // namespace tlpacscfg
