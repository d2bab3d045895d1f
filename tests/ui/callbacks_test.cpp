#include <functional>
#include <new>

#include "harness/core_fixture.h"
#include "support/runtime_error.h"
#include "ui/resource.h"
#include "ui/win32/form.h"
#include "ui/win32/subclass.h"

/// Exceptions in callbacks of the system end in the default report.
namespace tlpacscfg::test {
namespace {

constexpr UINT kFail = WM_APP + 1;
constexpr UINT kAnswer = WM_APP + 2;
constexpr const wchar_t* kUnknownError =
    L"Run-time error '5':\r\nInvalid procedure call or argument";

class FailingForm : public win32::Form {
 public:
  FailingForm() : Form(L"frmFailing") {}
  ~FailingForm() override { destroy(); }

  std::function<void()> fail;

  bool onKey(const MSG&) override {
    fail();
    return false;
  }

 protected:
  void onTimer(UINT_PTR) override { fail(); }
  std::optional<INT_PTR> onMessage(UINT message, WPARAM, LPARAM) override {
    if (message == kFail) fail();
    return std::nullopt;
  }
};

class CallbacksTest : public CoreTest {
 protected:
  /// The exceptions: an error of the component, one of the library, and neither.
  const std::pair<std::function<void()>, std::wstring> failures[3] = {
      {[] { raise(ErrorNumber::DiskFull); }, L"Run-time error '61':\r\nDisk full"},
      {[] { throw std::bad_alloc(); }, L"Run-time error '5':\r\nstd::bad_alloc"},
      {[] { throw 42; }, kUnknownError},
  };

  void expectReports(const std::function<void(const std::function<void()>&)>& callback) {
    for (const auto& [failure, report] : failures) {
      messages.clear();
      callback(failure);
      expectPlainBox(report);
    }
  }
};

TEST_F(CallbacksTest, ADialogProcedureReportsEveryException) {
  FailingForm form;
  form.load(IDD_frmPACSList, nullptr);
  expectReports([&](const std::function<void()>& failure) {
    form.fail = failure;
    SendMessageW(form.window(), kFail, 0, 0);
  });
  expectReports([&](const std::function<void()>& failure) {
    form.fail = failure;
    SendMessageW(form.window(), WM_TIMER, 1, 0);
  });
}

TEST_F(CallbacksTest, TheKeyHookReportsEveryExceptionAndConsumesTheKey) {
  FailingForm form;
  form.load(IDD_frmPACSList, nullptr);
  expectReports([&](const std::function<void()>& failure) {
    form.fail = failure;
    ASSERT_TRUE(PostMessageW(form.window(), WM_KEYDOWN, VK_F5, 0));
    MSG message{};
    bool seen = false;
    while (PeekMessageW(&message, form.window(), 0, 0, PM_REMOVE)) {
      seen = seen || message.message == WM_KEYDOWN;
    }
    EXPECT_FALSE(seen);
  });
}

TEST_F(CallbacksTest, ASubclassProcedureReportsEveryExceptionAndConsumesTheMessage) {
  const HWND control = CreateWindowW(L"EDIT", L"", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr,
                                     GetModuleHandleW(nullptr), nullptr);
  ASSERT_NE(control, nullptr);
  std::function<void()> fail;
  win32::Subclass subclass;
  subclass.attach(control, [&](UINT message, WPARAM, LPARAM) -> std::optional<LRESULT> {
    if (message == WM_SETTEXT) fail();
    if (message == kAnswer) return 7;
    return std::nullopt;
  });
  expectReports([&](const std::function<void()>& failure) {
    fail = failure;
    EXPECT_EQ(SendMessageW(control, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(L"new")), 0);
  });
  EXPECT_EQ(GetWindowTextLengthW(control), 0);
  EXPECT_EQ(SendMessageW(control, kAnswer, 0, 0), 7);
  subclass.detach();
  DestroyWindow(control);
}

TEST_F(CallbacksTest, AFailureOfTheReportIsIgnored) {
  FailingForm form;
  form.load(IDD_frmPACSList, nullptr);
  int reports = 0;
  system::showMessage = [&](const system::Message&) -> system::Answer {
    ++reports;
    throw 42;
  };
  form.fail = [] { throw 43; };
  SendMessageW(form.window(), kFail, 0, 0);
  EXPECT_EQ(reports, 1);
}

}  // namespace
}  // namespace tlpacscfg::test
