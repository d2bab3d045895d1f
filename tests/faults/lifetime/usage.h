#pragma once

#include <cstddef>
#include <iosfwd>

namespace tlpacscfg::test {

/// The system resources in use by this process.
struct Usage {
  int kernelHandles = 0;
  int gdiObjects = 0;
  int windows = 0;  ///< Including children and message-only windows.
  int menusAndIcons = 0;
  int heapBlocks = 0;
  std::size_t heapBytes = 0;
  std::size_t committedBytes = 0;
  std::size_t workingSet = 0;
};

Usage usageNow();

std::ostream& operator<<(std::ostream& stream, const Usage& usage);

}  // namespace tlpacscfg::test
