#pragma once

#include <cstddef>
#include <string>

namespace tlpacscfg {

/// Overwrites memory with zeros; the compiler cannot remove the call.
void wipeMemory(void* memory, std::size_t size);

/// Overwrites the whole buffer of the text and empties it. Buffers that the text freed when it grew
/// are not reached.
void wipe(std::wstring& text);

}  // namespace tlpacscfg
