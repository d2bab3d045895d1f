#pragma once

#include <windows.h>

#include <oleauto.h>

#include <functional>
#include <string>

#include "com/host_object.h"
#include "harness/core_fixture.h"

namespace tlpacscfg::test {

inline constexpr const wchar_t* kConfig = L"TLPACSCFG.clsConfig";
inline constexpr const wchar_t* kRegistry = L"TLPACSCFG.brnkregs";

std::wstring componentPath();

/// A host's thread, with the component loaded and registered.
class HostThread {
 public:
  HostThread();
  ~HostThread();
  HostThread(const HostThread&) = delete;
  HostThread& operator=(const HostThread&) = delete;

  HMODULE component() const { return component_; }
  /// An exported function without arguments.
  HRESULT callExport(const char* name) const;
  bool mayUnload() const { return callExport("DllCanUnloadNow") == S_OK; }

 private:
  HMODULE component_;
};

/// A host without a database.
class ComTest : public ::testing::Test {
 protected:
  HostThread host;
};

/// A host on the site's database.
class ComSiteTest : public SiteTest {
 protected:
  HostThread host;

  /// A configuration object whose Init succeeded.
  HostObject initialised();
};

/// Expects the classic run-time error, with the component as its source.
void expectError(const Outcome& outcome, int number, const std::wstring& description);

/// Expects that COM itself refuses the call, with a description for GetErrorInfo.
void expectRefused(const Outcome& outcome, HRESULT result, const std::wstring& description);

/// A new enumerator of a collection's items.
ComPtr<IEnumVARIANT> enumeratorOf(const HostObject& collection);

/// Runs the work while another thread closes the first message box of this process with its OK
/// button, and returns the text of that box; fails the test when none appeared.
std::wstring textOfBoxShownBy(const std::function<void()>& work);

/// Runs the work while another thread closes the window with that title as soon as it exists and
/// `timeHasCome` is true; fails the test when no such window appeared.
void closeWindowShownBy(
    const std::wstring& title, const std::function<void()>& work,
    const std::function<bool()>& timeHasCome = [] { return true; });

}  // namespace tlpacscfg::test
