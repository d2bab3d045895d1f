#include "harness/machine.h"

#ifdef _WIN32
#include <windows.h>
#endif
#include <gtest/gtest.h>
#include <sql.h>
#include <sqlext.h>

#include <cstdint>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <set>
#include <thread>

#include "support/text.h"

namespace tlpacscfg::test {
namespace {

std::set<std::wstring> installedDrivers() {
  std::set<std::wstring> names;
  SQLHENV environment = SQL_NULL_HENV;
  SQLAllocHandle(SQL_HANDLE_ENV, SQL_NULL_HANDLE, &environment);
  const auto version = static_cast<std::uintptr_t>(SQL_OV_ODBC3);
  SQLSetEnvAttr(environment, SQL_ATTR_ODBC_VERSION, reinterpret_cast<SQLPOINTER>(version), 0);
  SQLWCHAR name[256] = {};
  SQLWCHAR attributes[1024] = {};
  SQLSMALLINT length = 0;
  SQLUSMALLINT direction = SQL_FETCH_FIRST;
  while (SQL_SUCCEEDED(
      SQLDriversW(environment, direction, name, 256, &length, attributes, 1024, &length))) {
    names.insert(fromUtf16(reinterpret_cast<const char16_t*>(name)));
    direction = SQL_FETCH_NEXT;
  }
  SQLFreeHandle(SQL_HANDLE_ENV, environment);
  return names;
}

bool isInstalled(const std::wstring& driver) {
  static const std::set<std::wstring> drivers = installedDrivers();
  return drivers.contains(driver);
}

/// The number of tests left out for each reason. Prints them when the program ends.
struct LeftOut : std::map<std::string, int> {
  LeftOut() = default;
  LeftOut(const LeftOut&) = delete;
  LeftOut& operator=(const LeftOut&) = delete;
  ~LeftOut() {
    for (const auto& [reason, count] : *this) {
      std::printf("Not run: %d tests, %s\n", count, reason.c_str());
    }
  }
};

#ifdef _WIN32
/// Ends a program that hangs on a machine where nobody else watches it.
const bool kTimeIsLimited = [] {
  const char* const seconds = std::getenv("TL_TIME_LIMIT");
  if (seconds == nullptr) return false;
  std::thread([limit = std::chrono::seconds(std::atoi(seconds))] {
    std::this_thread::sleep_for(limit);
    std::puts("The time limit is over.");
    std::fflush(stdout);
    TerminateProcess(GetCurrentProcess(), 124);
  }).detach();
  return true;
}();
#endif

}  // namespace

bool onWindows() {
#ifdef _WIN32
  return GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") == nullptr;
#else
  return false;
#endif
}

void leaveOut(const std::string& reason) {
  static LeftOut leftOut;
  ++leftOut[reason];
  [&] { GTEST_SKIP() << reason; }();
  // The framework takes this exception for a result that is reported already.
  throw ::testing::AssertionException(
      {::testing::TestPartResult::kSkip, __FILE__, __LINE__, reason.c_str()});
}

void needDriver(const std::wstring& name) {
  if (!isInstalled(name)) leaveOut("driver missing: " + toUtf8(name));
}

std::wstring sqliteDriver() { return onWindows() ? L"SQLite3 ODBC Driver" : L"SQLite3"; }

}  // namespace tlpacscfg::test
