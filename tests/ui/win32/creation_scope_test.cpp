#include "ui/win32/creation_scope.h"

#include <gtest/gtest.h>

#include "support/handle_win.h"

namespace tlpacscfg::win32::test {
namespace {

using Window = UniqueHandle<HWND, &DestroyWindow>;

Window newWindow() {
  return Window(CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 100, 100, nullptr, nullptr,
                                GetModuleHandleW(nullptr), nullptr));
}

DPI_AWARENESS awarenessOf(DPI_AWARENESS_CONTEXT context) {
  return GetAwarenessFromDpiAwarenessContext(context);
}

/// The awareness of a window that is created in a host of another awareness.
DPI_AWARENESS awarenessIn(DPI_AWARENESS_CONTEXT host) {
  const DPI_AWARENESS_CONTEXT before = SetThreadDpiAwarenessContext(host);
  const DPI_AWARENESS awareness = awarenessOf(GetThreadDpiAwarenessContext());
  Window window;
  {
    const CreationScope scope;
    window = newWindow();
  }
  EXPECT_EQ(awarenessOf(GetThreadDpiAwarenessContext()), awareness);
  SetThreadDpiAwarenessContext(before);
  return awarenessOf(GetWindowDpiAwarenessContext(window.get()));
}

TEST(CreationScopeTest, AWindowHasTheSizesOfTheSystemInAHostThatDrawsForEachMonitor) {
  EXPECT_EQ(awarenessIn(DPI_AWARENESS_CONTEXT_PER_MONITOR_AWARE), DPI_AWARENESS_SYSTEM_AWARE);
  EXPECT_EQ(awarenessIn(DPI_AWARENESS_CONTEXT_PER_MONITOR_AWARE_V2), DPI_AWARENESS_SYSTEM_AWARE);
}

TEST(CreationScopeTest, OtherHostsKeepTheirAwareness) {
  EXPECT_EQ(awarenessIn(DPI_AWARENESS_CONTEXT_UNAWARE), DPI_AWARENESS_UNAWARE);
  EXPECT_EQ(awarenessIn(DPI_AWARENESS_CONTEXT_SYSTEM_AWARE), DPI_AWARENESS_SYSTEM_AWARE);
}

TEST(CreationScopeTest, AWindowIsNotMirroredInAHostThatIs) {
  SetProcessDefaultLayout(LAYOUT_RTL);
  {
    const CreationScope scope;
    EXPECT_EQ(GetWindowLongW(newWindow().get(), GWL_EXSTYLE) & WS_EX_LAYOUTRTL, 0);
  }
  EXPECT_NE(GetWindowLongW(newWindow().get(), GWL_EXSTYLE) & WS_EX_LAYOUTRTL, 0);
  SetProcessDefaultLayout(0);
}

}  // namespace
}  // namespace tlpacscfg::win32::test
