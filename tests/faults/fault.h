#pragma once

#include <memory>
#include <string>
#include <vector>

#include "odbc/connection.h"

namespace tlpacscfg::test {

enum class Fault {
  None,
  LogUnwritable,
  LogDiskFull,    ///< Needs /dev/full.
  Refused,        ///< The database refuses one row or one call.
  Unreadable,     ///< The database fails at one row that is read.
  BadValue,       ///< One row holds a value that does not convert.
  Locked,         ///< Another connection lets nobody read or write.
  WritingLocked,  ///< Another connection is about to write.
  CommitLocked,   ///< Another connection reads, which blocks a commit and nothing before it.
  DiskFull,
  ReadOnly,
  FileGone,  ///< Needs a system that moves a file in use.
};

/// False for what Windows does not let happen. Expected on Wine only.
bool isPossible(Fault fault);

const char* nameOf(Fault fault);

/// The faults of the test's database as a whole: Locked and those after it.
class DatabaseFault {
 public:
  DatabaseFault() = default;
  ~DatabaseFault() { end(); }
  DatabaseFault(const DatabaseFault&) = delete;
  DatabaseFault& operator=(const DatabaseFault&) = delete;

  /// `connection` is the component's. A lock that it already excludes is not taken.
  void begin(Fault fault, const std::shared_ptr<odbc::Connection>& connection);
  void end();

 private:
  void lock(const std::vector<std::wstring>& statements);
  void fillDisk() const;

  Fault fault_ = Fault::None;
  std::shared_ptr<odbc::Connection> connection_;
  std::shared_ptr<odbc::Connection> locker_;
};

/// Another program's connection to the test's database, which hardly waits for locks.
std::shared_ptr<odbc::Connection> anotherConnection();

}  // namespace tlpacscfg::test
