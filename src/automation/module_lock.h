#pragma once

namespace tlpacscfg {

/// Keep the DLL loaded, and nothing else.
void lockServer();
void unlockServer();
bool serverIsLocked();

}  // namespace tlpacscfg
