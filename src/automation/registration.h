#pragma once

#include <windows.h>

namespace tlpacscfg {

/// Enters the classes and the type library of comServer() into the registry. When anything fails,
/// nothing stays registered.
HRESULT registerServer();

/// Removes every key that registration made, but for those that the component for the other kind of
/// programs, 64-bit or 32-bit, needs while it is registered. Succeeds when there is none.
HRESULT unregisterServer();

}  // namespace tlpacscfg
