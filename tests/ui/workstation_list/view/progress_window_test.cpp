#include "ui/workstation_list/view/progress_window.h"

#include <windows.h>
#include <commctrl.h>

#include <gtest/gtest.h>

#include <thread>

#include "support/handle_win.h"
#include "ui/accessible_names.h"
#include "ui/resource.h"
#include "ui/win32/subclass.h"
#include "ui/window_driver.h"

namespace tlpacscfg::test {
namespace {

using std::chrono::milliseconds;

constexpr UINT kPosted = WM_APP + 1;
constexpr UINT kSent = WM_APP + 2;

class ProgressWindowTest : public testing::Test {
 protected:
  ProgressWindowTest() {
    owner_ = Window(CreateWindowExW(WS_EX_TOPMOST, L"STATIC", L"owner", WS_POPUP | WS_VISIBLE, 0, 0,
                                    300, 200, nullptr, nullptr, nullptr, nullptr));
    SetActiveWindow(owner_.get());
    SetFocus(owner_.get());
    received_.attach(owner_.get(), [this](UINT message, WPARAM, LPARAM) {
      messages_.push_back(message);
      return std::optional<LRESULT>();
    });
  }

  ~ProgressWindowTest() override {
    MSG message;
    PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE);
  }

  ProgressWindow makeWindow() {
    return ProgressWindow(owner_.get(), L"Saving the assignments", [this] { return now_; });
  }

  void updateAfter(ProgressWindow& window, milliseconds time, std::size_t done) {
    now_ += time;
    window.update(done, 40);
  }

  bool received(UINT message) const {
    return std::find(messages_.begin(), messages_.end(), message) != messages_.end();
  }

  static std::wstring text(const ProgressWindow& window, int id) {
    return textOf(controlOf(window.window(), id));
  }

  using Window = UniqueHandle<HWND, &DestroyWindow>;

  Window owner_;
  win32::Subclass received_;
  std::vector<UINT> messages_;
  std::chrono::steady_clock::time_point now_;
};

TEST_F(ProgressWindowTest, TheBarIsNamedByTheTextAboveIt) {
  ProgressWindow window = makeWindow();
  updateAfter(window, milliseconds(1001), 1);
  const std::vector<ControlFacts> facts = factsOf(window.window(), RecordedAnnotations());
  EXPECT_TRUE(nameProblems({facts}).empty());
  EXPECT_EQ(accessibleName(facts, 1), L"Saving the assignments");
}

TEST_F(ProgressWindowTest, AppearsWhenTheWorkHasLastedForMoreThanASecond) {
  ProgressWindow window = makeWindow();
  updateAfter(window, milliseconds(0), 1);
  updateAfter(window, milliseconds(1000), 2);
  EXPECT_EQ(window.window(), nullptr);
  updateAfter(window, milliseconds(1), 3);
  EXPECT_TRUE(IsWindowVisible(window.window()));
}

TEST_F(ProgressWindowTest, ShowsItsTextTheBarAndTheCount) {
  ProgressWindow window = makeWindow();
  updateAfter(window, milliseconds(1001), 10);
  EXPECT_EQ(text(window, IDC_progress_text), L"Saving the assignments");
  EXPECT_EQ(text(window, IDC_progress_count), L"10 of 40");
  const HWND bar = controlOf(window.window(), IDC_progress_bar);
  PBRANGE range{};
  SendMessageW(bar, PBM_GETRANGE, FALSE, reinterpret_cast<LPARAM>(&range));
  EXPECT_EQ(range.iLow, 0);
  EXPECT_EQ(range.iHigh, 40);
  EXPECT_EQ(SendMessageW(bar, PBM_GETPOS, 0, 0), 10);
  updateAfter(window, milliseconds(101), 30);
  EXPECT_EQ(text(window, IDC_progress_count), L"30 of 40");
  EXPECT_EQ(SendMessageW(bar, PBM_GETPOS, 0, 0), 30);
}

TEST_F(ProgressWindowTest, ManyShortStepsPaintItRarely) {
  ProgressWindow window = makeWindow();
  updateAfter(window, milliseconds(1001), 10);
  for (std::size_t done = 11; done < 40; ++done) updateAfter(window, milliseconds(3), done);
  EXPECT_EQ(text(window, IDC_progress_count), L"10 of 40");
  updateAfter(window, milliseconds(14), 40);
  EXPECT_EQ(text(window, IDC_progress_count), L"40 of 40");
}

TEST_F(ProgressWindowTest, CannotBeClosed) {
  ProgressWindow window = makeWindow();
  updateAfter(window, milliseconds(1001), 10);
  SendMessageW(window.window(), WM_CLOSE, 0, 0);
  SendMessageW(window.window(), WM_SYSCOMMAND, SC_CLOSE, 0);
  SendMessageW(window.window(), WM_COMMAND, IDCANCEL, 0);
  EXPECT_TRUE(IsWindowVisible(window.window()));
  EXPECT_EQ(GetWindowLongW(window.window(), GWL_STYLE) & WS_SYSMENU, 0);
}

TEST_F(ProgressWindowTest, IsDestroyedWithItsObject) {
  HWND shown = nullptr;
  {
    ProgressWindow window = makeWindow();
    updateAfter(window, milliseconds(1001), 10);
    shown = window.window();
  }
  EXPECT_FALSE(IsWindow(shown));
  EXPECT_EQ(GetFocus(), owner_.get());
}

TEST_F(ProgressWindowTest, TakesNoFocusAndDisablesNothing) {
  ProgressWindow window = makeWindow();
  updateAfter(window, milliseconds(1001), 10);
  EXPECT_EQ(GetFocus(), owner_.get());
  EXPECT_EQ(GetActiveWindow(), owner_.get());
  SetFocus(window.window());
  EXPECT_EQ(GetFocus(), owner_.get());
  EXPECT_TRUE(IsWindowEnabled(owner_.get()));
}

TEST_F(ProgressWindowTest, IsTopmostWhenItsOwnerIs) {
  ProgressWindow window = makeWindow();
  updateAfter(window, milliseconds(1001), 10);
  EXPECT_EQ(GetWindow(window.window(), GW_OWNER), owner_.get());
  EXPECT_NE(GetWindowLongW(window.window(), GWL_EXSTYLE) & WS_EX_TOPMOST, 0);
  ProgressWindow alone(nullptr, L"", [this] { return now_; });
  updateAfter(alone, milliseconds(1001), 10);
  EXPECT_EQ(GetWindowLongW(alone.window(), GWL_EXSTYLE) & WS_EX_TOPMOST, 0);
}

TEST_F(ProgressWindowTest, LetsWindowsPaintButNoCommandStart) {
  ProgressWindow window = makeWindow();
  updateAfter(window, milliseconds(1001), 10);
  PostMessageW(owner_.get(), kPosted, 0, 0);
  PostMessageW(owner_.get(), WM_KEYDOWN, VK_RETURN, 1);
  PostMessageW(owner_.get(), WM_COMMAND, IDOK, 0);
  PostThreadMessageW(GetCurrentThreadId(), WM_QUIT, 0, 0);
  SetTimer(owner_.get(), 1, USER_TIMER_MINIMUM, nullptr);
  waitUntil([] { return HIWORD(GetQueueStatus(QS_TIMER)) != 0; }, "the timer is due");
  InvalidateRect(owner_.get(), nullptr, TRUE);
  messages_.clear();
  updateAfter(window, milliseconds(101), 20);
  KillTimer(owner_.get(), 1);
  EXPECT_TRUE(received(WM_PAINT));
  EXPECT_FALSE(GetUpdateRect(window.window(), nullptr, FALSE));
  for (const UINT message : {kPosted, UINT{WM_KEYDOWN}, UINT{WM_COMMAND}, UINT{WM_TIMER}}) {
    EXPECT_FALSE(received(message)) << message;
  }
  // The messages are kept until the work is done.
  MSG message{};
  EXPECT_TRUE(PeekMessageW(&message, owner_.get(), kPosted, kPosted, PM_REMOVE));
  EXPECT_TRUE(PeekMessageW(&message, owner_.get(), WM_KEYDOWN, WM_KEYDOWN, PM_REMOVE));
  EXPECT_TRUE(PeekMessageW(&message, owner_.get(), WM_COMMAND, WM_COMMAND, PM_REMOVE));
}

TEST_F(ProgressWindowTest, AnswersMessagesFromOtherThreads) {
  ProgressWindow window = makeWindow();
  updateAfter(window, milliseconds(1001), 10);
  std::thread sender([this] { SendMessageW(owner_.get(), kSent, 0, 0); });
  waitUntil([] { return HIWORD(GetQueueStatus(QS_SENDMESSAGE)) != 0; }, "the message is sent");
  EXPECT_FALSE(received(kSent));
  updateAfter(window, milliseconds(101), 20);
  EXPECT_TRUE(received(kSent));
  sender.join();
}

TEST_F(ProgressWindowTest, AWindowThatNeverValidatesItselfDoesNotBlockTheWork) {
  win32::Subclass stubborn;
  stubborn.attach(owner_.get(), [](UINT message, WPARAM, LPARAM) {
    return message == WM_PAINT ? std::optional<LRESULT>(0) : std::nullopt;
  });
  ProgressWindow window = makeWindow();
  updateAfter(window, milliseconds(1001), 10);
  InvalidateRect(owner_.get(), nullptr, TRUE);
  updateAfter(window, milliseconds(101), 20);
  EXPECT_EQ(text(window, IDC_progress_count), L"20 of 40");
}

}  // namespace
}  // namespace tlpacscfg::test
