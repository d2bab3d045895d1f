#pragma once

#include <functional>
#include <memory>

#include "harness/core_fixture.h"
#include "host/host_object.h"
#include "ui/resource.h"
#include "ui/window_driver.h"

namespace tlpacscfg::test {

inline constexpr const wchar_t* kListTitle = L"Workstation List";

/// Shows the list window while another thread runs the script with its handle, and returns the
/// result of ShowForm. The window is closed if the script fails or leaves it open.
std::uint8_t showListWhile(const std::shared_ptr<clsConfig>& config,
                           const std::function<void(HWND)>& script);

/// The component's windows on the site's database, on the test's own thread.
class WindowTest : public SiteTest {
 protected:
  WindowTest();
  ~WindowTest() override;

  std::shared_ptr<clsConfig> config_ = std::make_shared<clsConfig>();

  /// Expects Init on the data source to succeed.
  void initialise();

  std::uint8_t showWhile(const std::function<void(HWND)>& script) {
    return showListWhile(config_, script);
  }
};

}  // namespace tlpacscfg::test
