#pragma once

#include <cstddef>
#include <string>

namespace tlpacscfg {

/// Overwrites memory with zeros, also where it is not read any more.
void wipeMemory(void* memory, std::size_t size);

/// Overwrites all that the text's memory holds and leaves the text empty. Memory that the text
/// gave back as it grew is out of reach.
void wipe(std::wstring& text);

}  // namespace tlpacscfg
