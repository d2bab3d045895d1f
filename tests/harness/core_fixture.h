#pragma once

#include <gtest/gtest.h>

#include <deque>
#include <string>
#include <vector>

#include "data/host_settings.h"
#include "harness/probe.h"
#include "support/system.h"

namespace tlpacscfg::test {

/// A time stamp of the tests' clock, as the log and the rows show it.
inline constexpr const wchar_t* kNow = L"2026-01-05 09:08:07.065";
inline constexpr const wchar_t* kNowInRows = L"2026-01-05 09:08:07";
inline constexpr const wchar_t* kComputer = L"READ-01";
/// What tells offline copies of the database that they are out of date.
inline const std::wstring kMark =
    L"INSERT INTO System_offline_db_updates VALUES(-1, 3, GETDATE(), 0, NULL)";

/// Fresh module-wide state, an empty directory, and a system that shows nothing.
class CoreTest : public ::testing::Test {
 protected:
  CoreTest();
  ~CoreTest() override;

  /// The message boxes shown so far, and the answers to the next ones (else OK, or No).
  std::vector<system::Message> messages;
  std::deque<system::Answer> answers;

  /// Expects exactly one message box: system-modal, with an OK button, no icon and no title.
  void expectPlainBox(const std::wstring& text) const;

  /// Switches the log on.
  void logTo(const std::wstring& file, std::int16_t depth = 10);
  void logOn(std::int16_t depth = 10);
  /// The bytes of the log file; empty when there is none.
  std::string log() const;
  /// The bytes of one entry.
  static std::string debugLine(int depth, const std::wstring& message);
  static std::string errorBlock(const std::wstring& message);
};

/// A site's SQLite database with the data source TlTestSite.
class SiteTest : public CoreTest {
 protected:
  SiteTest();

  Probe site{L"DSN=TlTestSite;"};
  HostSettings config;

  void connect();
  /// Connects as connect() does and then empties the log.
  void connectSilently();

  void addWorkstation(const std::wstring& name, const std::wstring& flag2 = L"1");
  void assign(const std::wstring& name, const std::wstring& quotedValue);
  /// A row whose texts are empty and whose other columns are 0, except the given ones, written
  /// "column = value, ...".
  void addConfiguration(int id, const std::wstring& changes = L"");
};

/// Registers a data source with or without the value that names its database.
void registerDataSource(const std::wstring& name, const std::wstring& database);

/// The statements of a script: each ends in a semicolon; lines that begin with "--" are comments.
std::vector<std::wstring> statementsOfScript(const std::wstring& path);

}  // namespace tlpacscfg::test

namespace tlpacscfg::system {
void PrintTo(const Message& message, std::ostream* stream);
}
