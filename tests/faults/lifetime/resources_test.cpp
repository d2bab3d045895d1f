#include <windows.h>

#include <sql.h>
#include <sqlext.h>

#include <cstdlib>
#include <exception>
#include <iostream>
#include <string>
#include <thread>
#include <vector>

#include "com/com_fixture.h"
#include "faults/lifetime/hook_count.h"
#include "faults/lifetime/usage.h"
#include "ui/resource.h"
#include "ui/window_driver.h"

namespace tlpacscfg::test {
namespace {

constexpr const wchar_t* kList = L"Workstation List";
constexpr const wchar_t* kSettings = L"Corvane Expert Integration Settings";
constexpr const wchar_t* kAssignment = L"Workstation Setting";

BOOL CALLBACK countLabel(HWND window, LPARAM count) {
  wchar_t name[16] = {};
  GetClassNameW(window, name, 16);
  if (std::wstring_view(name) == L"Static") ++*reinterpret_cast<int*>(count);
  return TRUE;
}

int labelsIn(HWND window) {
  int count = 0;
  EnumChildWindows(window, &countLabel, reinterpret_cast<LPARAM>(&count));
  return count;
}

/// A host that opens and closes the component's windows.
class ResourcesTest : public ComSiteTest {
 protected:
  ResourcesTest() {
    // Configurations that the window reads back unchanged, so that closing it asks nothing.
    for (int id = 1; id <= 2; ++id) {
      addConfiguration(id, L"pacs_request_password = 1, flag10 = 11");
    }
    addWorkstation(L"PC-1");
    assign(L"PC-1", L"'2'");
  }

  /// Runs ShowForm while another thread does the script with the list window's handle and closes
  /// that window.
  void show(const HostObject& component, const std::function<void(HWND)>& script) {
    const DWORD thread = GetCurrentThreadId();
    std::string failure;
    std::thread user([&] {
      try {
        const HWND list = windowNamed(kList);
        script(list);
        click(list, IDC_frmPACSList_btnOk);
      } catch (const std::exception& error) {
        failure = error.what();
        PostThreadMessageW(thread, WM_QUIT, 0, 0);
      }
    });
    EXPECT_EQ(component.call(L"ShowForm").number(), 0);
    user.join();
    ASSERT_EQ(failure, "");
  }
};

/// New windows get the themed common controls of the component's manifest while it exists.
class ComponentControls {
 public:
  explicit ComponentControls(HMODULE component) {
    ACTCTXW request{};
    request.cbSize = sizeof(request);
    request.dwFlags = ACTCTX_FLAG_RESOURCE_NAME_VALID | ACTCTX_FLAG_HMODULE_VALID;
    request.hModule = component;
    request.lpResourceName = MAKEINTRESOURCEW(2);
    context_ = CreateActCtxW(&request);
    EXPECT_TRUE(ActivateActCtx(context_, &cookie_));
  }
  ~ComponentControls() {
    DeactivateActCtx(0, cookie_);
    ReleaseActCtx(context_);
  }
  ComponentControls(const ComponentControls&) = delete;
  ComponentControls& operator=(const ComponentControls&) = delete;

 private:
  HANDLE context_ = INVALID_HANDLE_VALUE;
  ULONG_PTR cookie_ = 0;
};

/// Wine leaks a block of memory for each label; that is not counted as growth.
int blocksKeptByOneLabel(HMODULE component) {
  const ComponentControls controls(component);
  const auto makeLabels = [] {
    const HFONT font = CreateFontW(-11, 0, 0, 0, FW_NORMAL, 0, 0, 0, DEFAULT_CHARSET, 0, 0, 0, 0,
                                   L"MS Shell Dlg 2");
    const HWND parent = CreateWindowW(L"STATIC", L"", WS_OVERLAPPEDWINDOW, 0, 0, 100, 100, nullptr,
                                      nullptr, nullptr, nullptr);
    for (int i = 0; i < 100; ++i) {
      const HWND label =
          CreateWindowW(L"STATIC", L"", WS_CHILD, 0, 0, 10, 10, parent, nullptr, nullptr, nullptr);
      SendMessageW(label, WM_SETFONT, reinterpret_cast<WPARAM>(font), 0);
    }
    DestroyWindow(parent);
    DeleteObject(font);
  };
  makeLabels();
  const int before = usageNow().heapBlocks;
  makeLabels();
  return (usageNow().heapBlocks - before + 50) / 100;
}

/// Whether the driver manager, called without the component, keeps memory of each query: Wine's own
/// does, unixODBC does not. What the component keeps cannot be told from it then.
bool driverManagerKeepsMemory() {
  SQLHENV environment = SQL_NULL_HENV;
  SQLHDBC connection = SQL_NULL_HDBC;
  SQLAllocHandle(SQL_HANDLE_ENV, SQL_NULL_HANDLE, &environment);
  SQLSetEnvAttr(environment, SQL_ATTR_ODBC_VERSION, reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC3), 0);
  SQLAllocHandle(SQL_HANDLE_DBC, environment, &connection);
  std::wstring source = L"DSN=TlTestSite", query = L"SELECT 1, 2";
  EXPECT_TRUE(SQL_SUCCEEDED(SQLDriverConnectW(connection, nullptr, source.data(), SQL_NTS, nullptr,
                                              0, nullptr, SQL_DRIVER_NOPROMPT)));
  // As many rows at a time as the component: small blocks are not counted one by one.
  constexpr std::size_t kRows = 2000;
  std::vector<SQLINTEGER> first(kRows), second(kRows);
  std::vector<SQLLEN> lengths(kRows);
  const auto read = [&](int times) {
    for (int i = 0; i < times; ++i) {
      SQLHSTMT statement = SQL_NULL_HSTMT;
      SQLAllocHandle(SQL_HANDLE_STMT, connection, &statement);
      SQLExecDirectW(statement, query.data(), SQL_NTS);
      SQLSetStmtAttrW(statement, SQL_ATTR_ROW_ARRAY_SIZE, reinterpret_cast<SQLPOINTER>(kRows), 0);
      SQLBindCol(statement, 1, SQL_C_LONG, first.data(), 0, lengths.data());
      SQLBindCol(statement, 2, SQL_C_LONG, second.data(), 0, lengths.data());
      EXPECT_TRUE(SQL_SUCCEEDED(SQLFetch(statement)));
      EXPECT_EQ(second[0], 2);
      SQLFreeHandle(SQL_HANDLE_STMT, statement);
    }
  };
  read(10);
  constexpr int kQueries = 100;
  const std::size_t before = usageNow().heapBytes;
  read(kQueries);
  const std::size_t after = usageNow().heapBytes;
  SQLDisconnect(connection);
  SQLFreeHandle(SQL_HANDLE_DBC, connection);
  SQLFreeHandle(SQL_HANDLE_ENV, environment);
  return after > before + kQueries * kRows;
}

/// The number of repetitions; TL_OPENINGS sets it.
const int kTimes = [] {
  const char* const times = std::getenv("TL_OPENINGS");
  return times == nullptr ? 100 : std::stoi(times);
}();

void expectNoGrowth(const Usage& before, const Usage& after, int systemBlocks = 0) {
  std::cout << "before: " << before << "\nafter:  " << after << '\n';
  // What the system caches does not grow with the repetitions; a leak in every third one is found.
  constexpr int kCached = 25;
  const int few = kCached + kTimes / 40;
  const std::size_t bytes = 64U * static_cast<unsigned>(kTimes);
  const std::size_t pages = 4096U * static_cast<unsigned>(kTimes);
  // The working set depends on the system.
  constexpr std::size_t kResident = 16 * 1024 * 1024;
  EXPECT_LE(after.kernelHandles, before.kernelHandles + few);
  EXPECT_LE(after.gdiObjects, before.gdiObjects + few);
  EXPECT_EQ(after.windows, before.windows);
  EXPECT_LE(after.menusAndIcons, before.menusAndIcons + few);
  EXPECT_LE(after.workingSet, before.workingSet + kResident);
  static const bool isHidden = driverManagerKeepsMemory();
  if (isHidden) return;
  EXPECT_LE(after.heapBlocks, before.heapBlocks + systemBlocks + few);
  EXPECT_LE(after.heapBytes, before.heapBytes + 32U * static_cast<unsigned>(systemBlocks) + bytes);
  EXPECT_LE(after.committedBytes, before.committedBytes + pages);
}

constexpr int kWarmUp = 50;

TEST_F(ResourcesTest, OpeningTheListWindowLeaksNothing) {
  const HookCount hooks(host.component());
  const HostObject component = initialised();
  int labels = 0;
  const auto open = [&] { show(component, [&](HWND list) { labels = labelsIn(list); }); };
  for (int i = 0; i < kWarmUp; ++i) open();
  const Usage before = usageNow();
  for (int i = 0; i < kTimes; ++i) open();
  const Usage after = usageNow();
  expectNoGrowth(before, after, labels * kTimes * blocksKeptByOneLabel(host.component()));
  EXPECT_EQ(HookCount::now(), 0);
  EXPECT_GE(HookCount::ever(), kTimes);
}

TEST_F(ResourcesTest, OpeningTheSettingsWindowLeaksNothing) {
  const HookCount hooks(host.component());
  const HostObject component = initialised();
  int labels = 0;
  show(component, [&](HWND list) {
    const auto open = [&] {
      click(list, IDC_frmPACSList_cmdEditConfig);
      const HWND settings = windowNamed(kSettings);
      labels = labelsIn(settings);
      click(settings, IDC_frmPACSSettings_btnExit);
      waitUntil([&] { return !IsWindow(settings); }, "the settings window closes");
    };
    for (int i = 0; i < kWarmUp; ++i) open();
    const Usage before = usageNow();
    for (int i = 0; i < kTimes; ++i) open();
    const Usage after = usageNow();
    expectNoGrowth(before, after, labels * kTimes * blocksKeptByOneLabel(host.component()));
  });
  EXPECT_EQ(HookCount::now(), 0);
}

TEST_F(ResourcesTest, OpeningTheAssignmentDialogLeaksNothing) {
  const HookCount hooks(host.component());
  const HostObject component = initialised();
  show(component, [&](HWND list) {
    const auto open = [&] {
      click(list, IDC_frmPACSList_cmdEditWorkstation);
      const HWND dialog = windowNamed(kAssignment);
      click(dialog, IDC_frmWorkstationSettings_cmdOK);
      waitUntil([] { return !isShown(kAssignment); }, "the dialog closes");
    };
    for (int i = 0; i < kWarmUp; ++i) open();
    const Usage before = usageNow();
    for (int i = 0; i < kTimes; ++i) open();
    expectNoGrowth(before, usageNow());
  });
  EXPECT_EQ(HookCount::now(), 0);
}

TEST_F(ResourcesTest, ObjectsLeakNothing) {
  const auto create = [](int count) {
    for (int i = 0; i < count; ++i) {
      const HostObject component = HostObject::create(kConfig);
      component.put(L"User_ID", i);
    }
  };
  create(kWarmUp);
  const Usage before = usageNow();
  create(10 * kTimes);
  expectNoGrowth(before, usageNow());
  EXPECT_TRUE(host.mayUnload());
}

TEST_F(ResourcesTest, InitialisationsLeakNothing) {
  const auto initialise = [&](int count) {
    for (int i = 0; i < count; ++i) initialised();
  };
  initialise(kWarmUp);
  const Usage before = usageNow();
  initialise(kTimes);
  expectNoGrowth(before, usageNow());
  EXPECT_TRUE(host.mayUnload());
}

}  // namespace
}  // namespace tlpacscfg::test
