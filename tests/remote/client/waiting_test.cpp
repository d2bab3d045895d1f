#include <atomic>
#include <chrono>
#include <functional>
#include <optional>
#include <thread>

#include "remote/client/raw_client_test.h"
#include "remote/harness/scripted_service.h"

/// What the host's thread handles while a call of the client waits.
namespace tlpacscfg::test {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int kSeconds = 10;
constexpr UINT kSent = WM_APP + 1;
constexpr LRESULT kReceived = 4711;

/// A window of the host that counts what it receives.
class HostWindow {
 public:
  HostWindow() {
    WNDCLASSW type{};
    type.lpfnWndProc = &procedure;
    type.hInstance = GetModuleHandleW(nullptr);
    type.lpszClassName = L"TlWaitingHost";
    RegisterClassW(&type);
    window_ = CreateWindowW(type.lpszClassName, L"", WS_POPUP | WS_VISIBLE, 10, 10, 100, 100,
                            nullptr, nullptr, type.hInstance, nullptr);
    EXPECT_NE(window_, nullptr);
    SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  }
  ~HostWindow() {
    DestroyWindow(window_);
    UnregisterClassW(L"TlWaitingHost", GetModuleHandleW(nullptr));
  }
  HostWindow(const HostWindow&) = delete;
  HostWindow& operator=(const HostWindow&) = delete;

  HWND handle() const { return window_; }

  /// Dispatches the queued messages; the exit code on WM_QUIT.
  static std::optional<WPARAM> handleMessages() {
    MSG message{};
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
      if (message.message == WM_QUIT) return message.wParam;
      DispatchMessageW(&message);
    }
    return std::nullopt;
  }

  std::atomic<int> painted = 0;
  std::atomic<int> posted = 0;
  bool finishesPainting = true;

 private:
  static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* const self = reinterpret_cast<HostWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (self == nullptr) return DefWindowProcW(window, message, wParam, lParam);
    switch (message) {
      case WM_PAINT:
        if (self->finishesPainting) ValidateRect(window, nullptr);
        ++self->painted;
        return 0;
      case WM_COMMAND:
      case WM_KEYDOWN:
      case WM_LBUTTONDOWN:
      case WM_TIMER:
        ++self->posted;
        return 0;
      case kSent:
        return kReceived;
      default:
        return DefWindowProcW(window, message, wParam, lParam);
    }
  }

  HWND window_ = nullptr;
};

class WaitingTest : public RawClientTest {
 protected:
  HostWindow window;

  WaitingTest() { HostWindow::handleMessages(); }

  /// Executes a statement on a service that answers when the work of another thread is done, which
  /// begins as soon as the call waits. Must succeed before the time is over.
  void executeDuring(const std::function<void()>& work) {
    ScriptedService slow({kConnects, {Treatment::AnswerWhenTold, "{}"}});
    ASSERT_TRUE(connectTo(slow.port(), kSeconds).truth());
    std::thread other([&] {
      // Answered by the thread that waits, in the call.
      DWORD_PTR answer = 0;
      SendMessageTimeoutW(window.handle(), kSent, 0, 0, SMTO_NORMAL, 2 * kSeconds * 1000, &answer);
      EXPECT_EQ(answer, static_cast<DWORD_PTR>(kReceived));
      work();
      slow.answerNow();
    });
    EXPECT_TRUE(client.call(L"SQLExecuteText", {L"Talora", L"DELETE from x"}).truth()) << "in time";
    inCall = false;
    other.join();
  }

  /// Returns no later than the call.
  void awaitInCall(const std::function<bool()>& condition) {
    while (inCall && !condition()) pauseBriefly();
  }

  std::atomic<bool> inCall = true;
};

TEST_F(WaitingTest, TheHostsWindowsArePaintedAgainAndAgain) {
  int duringTheCall = 0;
  executeDuring([&] {
    for (int i = 0; i < 3; ++i) {
      const int before = window.painted;
      InvalidateRect(window.handle(), nullptr, TRUE);
      awaitInCall([&] { return window.painted > before; });
      duringTheCall += window.painted > before && inCall;
    }
  });
  EXPECT_EQ(duringTheCall, 3);
}

TEST_F(WaitingTest, WhatWasToBePaintedBeforeTheCallIsPaintedInIt) {
  ScriptedService slow({kConnects, {Treatment::AnswerWhenTold, "{}"}});
  ASSERT_TRUE(connectTo(slow.port(), kSeconds).truth());
  InvalidateRect(window.handle(), nullptr, TRUE);
  // The host knows it: no new message wakes the wait.
  EXPECT_NE(LOWORD(GetQueueStatus(QS_PAINT)), 0);
  const int before = window.painted;
  bool painted = false;
  std::thread other([&] {
    awaitInCall([&] { return window.painted > before; });
    painted = window.painted > before && inCall;
    slow.answerNow();
  });
  EXPECT_TRUE(client.call(L"SQLExecuteText", {L"Talora", L"DELETE from x"}).truth());
  inCall = false;
  other.join();
  EXPECT_TRUE(painted);
}

TEST_F(WaitingTest, CommandsKeysMouseAndTimersWaitUntilTheCallIsOver) {
  PostMessageW(window.handle(), WM_COMMAND, 1, 0);
  SetTimer(window.handle(), 1, USER_TIMER_MINIMUM, nullptr);
  int during = -1;
  executeDuring([&] {
    PostMessageW(window.handle(), WM_COMMAND, 2, 0);
    PostMessageW(window.handle(), WM_KEYDOWN, VK_RETURN, 0);
    PostMessageW(window.handle(), WM_LBUTTONDOWN, 0, 0);
    PostMessageW(window.handle(), WM_TIMER, 7, 0);
    // Painted after they have arrived: the queue was looked at.
    const int before = window.painted;
    InvalidateRect(window.handle(), nullptr, TRUE);
    awaitInCall([&] { return window.painted > before; });
    during = window.posted;
  });
  KillTimer(window.handle(), 1);
  EXPECT_EQ(during, 0);
  EXPECT_EQ(window.posted, 0);
  EXPECT_EQ(HostWindow::handleMessages(), std::nullopt);
  EXPECT_GE(window.posted, 5);
}

TEST_F(WaitingTest, TheEndOfTheHostsProgramIsStillThereAfterTheCall) {
  PostQuitMessage(12);
  executeDuring([] {});
  EXPECT_EQ(HostWindow::handleMessages(), std::optional<WPARAM>(12));
  const DWORD hostsThread = GetCurrentThreadId();
  inCall = true;
  executeDuring([&] { PostThreadMessageW(hostsThread, WM_QUIT, 13, 0); });
  EXPECT_EQ(HostWindow::handleMessages(), std::optional<WPARAM>(13));
}

TEST_F(WaitingTest, AWindowThatNeverFinishesItsPaintingDoesNotProlongTheWait) {
  // Only the time-out ends this request.
  set(L"Transport", L"https");
  const ScriptedService stuck({{Treatment::HalfHandshake}});
  window.finishesPainting = false;
  InvalidateRect(window.handle(), nullptr, TRUE);
  const auto start = Clock::now();
  EXPECT_FALSE(connectTo(stuck.port(), 2).truth());
  EXPECT_LT(Clock::now() - start, std::chrono::seconds(4));
  EXPECT_EQ(error(), L"The service did not answer in time.");
  EXPECT_GT(window.painted, 1);
  window.finishesPainting = true;
  ValidateRect(window.handle(), nullptr);
}

}  // namespace
}  // namespace tlpacscfg::test
