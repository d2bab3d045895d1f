#pragma once

#include <cstddef>
#include <iosfwd>

namespace tlpacscfg::test {

/// What this process holds of the system's resources.
struct Usage {
  int kernelHandles = 0;
  int gdiObjects = 0;
  int windows = 0;  ///< Children and message-only windows among them.
  int menusAndIcons = 0;
  int heapBlocks = 0;
  std::size_t heapBytes = 0;
  std::size_t committedBytes = 0;
  std::size_t workingSet = 0;
};

Usage usageNow();

std::ostream& operator<<(std::ostream& stream, const Usage& usage);

}  // namespace tlpacscfg::test
