#pragma once

#include <windows.h>

#include <array>
#include <cstddef>
#include <string>
#include <vector>

#include "support/handle_win.h"

namespace tlpacscfg::bench::bare {

using Row = std::array<std::wstring, 5>;

/// A visible window that contains only a virtual list view over given texts.
class ListView {
 public:
  ListView(SIZE size, const std::vector<Row>& rows);
  ListView(const ListView&) = delete;
  ListView& operator=(const ListView&) = delete;

  /// Sorts the rows by the column as Windows sorts names, selects the row of that name, and draws.
  void fill(std::size_t column, const std::wstring& selected);

 private:
  static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

  const std::vector<Row>& rows_;
  std::vector<std::size_t> order_;
  UniqueHandle<HWND, &DestroyWindow> window_;
  HWND list_ = nullptr;
};

}  // namespace tlpacscfg::bench::bare
