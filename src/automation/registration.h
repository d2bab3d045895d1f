#pragma once

#include <windows.h>

namespace tlpacscfg {

/// Enters the classes and the type library of comServer() into the registry. When anything fails,
/// nothing stays registered.
HRESULT registerServer();

/// Removes every key that registration made. Succeeds when there is none.
HRESULT unregisterServer();

}  // namespace tlpacscfg
