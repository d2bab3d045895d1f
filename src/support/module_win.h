#pragma once

#include <windows.h>

extern "C" IMAGE_DOS_HEADER __ImageBase;

namespace tlpacscfg {

/// The module that holds this code: the DLL itself, not the program that loaded it.
inline HINSTANCE moduleInstance() { return reinterpret_cast<HINSTANCE>(&__ImageBase); }

}  // namespace tlpacscfg
