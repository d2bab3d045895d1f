#include "com/com_fixture.h"

#include <objbase.h>

#include <atomic>
#include <chrono>
#include <thread>

#include "harness/scratch.h"
#include "support/text.h"

namespace tlpacscfg::test {
namespace {

constexpr int kMessageTextId = 0xFFFF;

struct Search {
  std::function<bool(HWND)> isWanted;
  HWND found = nullptr;
};

BOOL CALLBACK examine(HWND window, LPARAM parameter) {
  auto& search = *reinterpret_cast<Search*>(parameter);
  DWORD process = 0;
  GetWindowThreadProcessId(window, &process);
  if (process == GetCurrentProcessId() && IsWindowVisible(window) && search.isWanted(window)) {
    search.found = window;
  }
  return search.found == nullptr;
}

/// A visible window of this process.
HWND findWindow(std::function<bool(HWND)> isWanted) {
  Search search{.isWanted = std::move(isWanted)};
  EnumWindows(examine, reinterpret_cast<LPARAM>(&search));
  return search.found;
}

bool isMessageBox(HWND window) {
  wchar_t name[16] = {};
  GetClassNameW(window, name, 16);
  return std::wstring_view(name) == L"#32770" && GetDlgItem(window, kMessageTextId) &&
         GetDlgItem(window, IDOK);
}

std::wstring textOf(HWND window) {
  wchar_t text[1024] = {};
  GetWindowTextW(window, text, 1024);
  return text;
}

/// Runs the work while another thread waits for the window and handles it until it is gone.
/// False when the work ended before the window was there.
bool handleWindowDuring(const std::function<void()>& work,
                        const std::function<bool(HWND)>& isWanted,
                        const std::function<void(HWND)>& handle) {
  std::atomic<bool> finished = false;
  bool handled = false;
  std::thread user([&] {
    HWND window = nullptr;
    while (!finished) {
      if (!window && (window = findWindow(isWanted)) != nullptr) {
        handle(window);
        handled = true;
      }
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
  });
  work();
  finished = true;
  user.join();
  return handled;
}

}  // namespace

std::wstring componentPath() { return builtPath(L"TLPACSCFG.dll"); }

HostThread::HostThread() : component_(LoadLibraryW(componentPath().c_str())) {
  EXPECT_NE(component_, nullptr) << "error " << GetLastError();
  EXPECT_EQ(nameOf(callExport("DllRegisterServer")), "S_OK");
  EXPECT_EQ(nameOf(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)), "S_OK");
}

HostThread::~HostThread() {
  CoUninitialize();
  FreeLibrary(component_);
}

HRESULT HostThread::callExport(const char* name) const {
  const auto function = reinterpret_cast<HRESULT(STDMETHODCALLTYPE*)()>(
      reinterpret_cast<void*>(GetProcAddress(component_, name)));
  return function ? function() : E_FAIL;
}

HostObject ComSiteTest::initialised() {
  HostObject object = HostObject::create(kConfig);
  object.put(L"SQLDSN", L"TlTestSite");
  EXPECT_TRUE(object.call(L"Init").truth());
  return object;
}

void expectError(const Outcome& outcome, int number, const std::wstring& description) {
  EXPECT_EQ(nameOf(outcome.result), "DISP_E_EXCEPTION");
  EXPECT_EQ(static_cast<std::uint32_t>(outcome.scode),
            0x800A0000U | static_cast<std::uint32_t>(number));
  EXPECT_EQ(outcome.source, L"TLPACSCFG");
  EXPECT_EQ(outcome.description, description);
  EXPECT_EQ(outcome.errorInfo, description);
}

void expectRefused(const Outcome& outcome, HRESULT result, const std::wstring& description) {
  EXPECT_EQ(nameOf(outcome.result), nameOf(result));
  EXPECT_EQ(outcome.errorInfo, description);
}

ComPtr<IEnumVARIANT> enumeratorOf(const HostObject& collection) {
  const Outcome outcome =
      collection.invoke(DISPID_NEWENUM, DISPATCH_METHOD | DISPATCH_PROPERTYGET, {});
  EXPECT_EQ(nameOf(outcome.result), "S_OK");
  EXPECT_EQ(outcome.type(), VT_UNKNOWN);
  return ComPtr<IUnknown>::sharing(outcome.value.get().punkVal).query<IEnumVARIANT>();
}

std::wstring textOfBoxShownBy(const std::function<void()>& work) {
  std::wstring text;
  EXPECT_TRUE(handleWindowDuring(work, isMessageBox, [&](HWND box) {
    text = textOf(GetDlgItem(box, kMessageTextId));
    PostMessageW(box, WM_COMMAND, IDOK, reinterpret_cast<LPARAM>(GetDlgItem(box, IDOK)));
  })) << "no message box appeared";
  return text;
}

void closeWindowShownBy(const std::wstring& title, const std::function<void()>& work,
                        const std::function<bool()>& timeHasCome) {
  EXPECT_TRUE(handleWindowDuring(
      work, [&](HWND window) { return timeHasCome() && textOf(window) == title; },
      [](HWND window) { PostMessageW(window, WM_CLOSE, 0, 0); }))
      << "no window appeared";
}

}  // namespace tlpacscfg::test
