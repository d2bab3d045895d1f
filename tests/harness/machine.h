#pragma once

#include <string>

/// What differs between the machines on which the tests run.
namespace tlpacscfg::test {

/// Whether Windows itself runs this program, and not Wine or Linux. An expectation for the others
/// is marked "Expected on Wine only".
bool onWindows();

/// Leaves the test, also from the constructor of its fixture. It counts as skipped, never as
/// passed.
[[noreturn]] void leaveOut(const std::string& reason);

/// Leaves the test when there is no such ODBC driver.
void needDriver(const std::wstring& name);

/// The name of the ODBC driver for SQLite on this machine.
std::wstring sqliteDriver();

}  // namespace tlpacscfg::test
