#include "ui/window_fixture.h"

#include <exception>
#include <thread>

#include "data/direct_connections.h"
#include "ui/show_form/show_form.h"

namespace tlpacscfg::test {

WindowTest::WindowTest() { config_->settings->SQLDSN = L"TlTestSite"; }

WindowTest::~WindowTest() { DisconnectDatabase(); }

void WindowTest::initialise() { ASSERT_TRUE(config_->Init()); }

std::uint8_t showListWhile(const std::shared_ptr<clsConfig>& config,
                           const std::function<void(HWND)>& script) {
  const DWORD windowThread = GetCurrentThreadId();
  std::string failure;
  std::thread driver([&] {
    try {
      script(windowNamed(kListTitle));
    } catch (const std::exception& error) {
      failure = error.what();
    }
    if (isShown(kListTitle)) {
      if (failure.empty()) failure = "the script left the list window open";
      // Answers every message box so that the window closes.
      system::showMessage = [](const system::Message& message) {
        const bool lists = message.buttons == system::Buttons::YesNo;
        return lists ? system::Answer::Yes : system::Answer::No;
      };
      PostThreadMessageW(windowThread, WM_QUIT, 0, 0);
    }
  });
  const std::uint8_t result = ShowForm(config);
  driver.join();
  if (!failure.empty()) {
    MSG message;
    PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE);
    ADD_FAILURE() << failure;
  }
  return result;
}

}  // namespace tlpacscfg::test
