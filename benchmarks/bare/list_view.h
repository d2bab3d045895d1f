#pragma once

#include <windows.h>

#include <array>
#include <string>
#include <vector>

#include "support/handle_win.h"

namespace tlpacscfg::bench::bare {

using Row = std::array<std::wstring, 5>;

/// A visible window with nothing but a list view that keeps its texts itself.
class ListView {
 public:
  /// `size` is that of the list.
  explicit ListView(SIZE size);

  void clear();
  /// Puts the rows in one by one, drawing them once at the end.
  void fill(const std::vector<Row>& rows);

 private:
  UniqueHandle<HWND, &DestroyWindow> window_;
  HWND list_ = nullptr;
};

}  // namespace tlpacscfg::bench::bare
