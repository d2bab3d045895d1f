#include <string.h>

#include "support/secret.h"

namespace tlpacscfg {

void wipeMemory(void* memory, std::size_t size) { explicit_bzero(memory, size); }

}  // namespace tlpacscfg
