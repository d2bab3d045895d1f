#include <windows.h>

#include "support/secret.h"

namespace tlpacscfg {

void wipeMemory(void* memory, std::size_t size) { SecureZeroMemory(memory, size); }

}  // namespace tlpacscfg
