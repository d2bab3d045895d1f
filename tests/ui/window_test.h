#pragma once

#include <functional>
#include <memory>

#include "host/config.h"
#include "harness/core_test.h"
#include "ui/resource.h"
#include "ui/window_driver.h"

namespace tlpacscfg::test {

inline constexpr const wchar_t* kListTitle = L"Workstation List";

/// Shows the list window and returns what ShowForm does, while another thread runs the script with
/// the list window's handle. A script that fails, or that leaves the window open, ends it.
std::uint8_t showListWhile(const std::shared_ptr<clsConfig>& config,
                           const std::function<void(HWND)>& script);

/// The component's windows on the site's database, on the test's own thread.
class WindowTest : public SiteTest {
 protected:
  WindowTest();
  ~WindowTest() override;

  std::shared_ptr<clsConfig> config_ = std::make_shared<clsConfig>();

  /// Init on the data source, which must succeed.
  void initialise();

  std::uint8_t showWhile(const std::function<void(HWND)>& script) {
    return showListWhile(config_, script);
  }
};

}  // namespace tlpacscfg::test
