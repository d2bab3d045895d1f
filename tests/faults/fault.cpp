#include "faults/fault.h"

#include <filesystem>
#include <utility>

#include "harness/machine.h"
#include "harness/scratch.h"
#include "support/runtime_error.h"
#include "support/text.h"

namespace tlpacscfg::test {
namespace {

std::wstring movedFile() { return siteFile() + L".gone"; }

/// Paths in the wide characters of Linux are not the system's own.
void move(const std::wstring& from, const std::wstring& to) {
  std::filesystem::rename(toUtf16(from), toUtf16(to));
}

}  // namespace

bool isPossible(Fault fault) {
  return !onWindows() || (fault != Fault::FileGone && fault != Fault::LogDiskFull);
}

const char* nameOf(Fault fault) {
  switch (fault) {
    case Fault::None:
      return "no fault";
    case Fault::LogUnwritable:
      return "log not writable";
    case Fault::LogDiskFull:
      return "disk of the log full";
    case Fault::Refused:
      return "refused";
    case Fault::Unreadable:
      return "row unreadable";
    case Fault::BadValue:
      return "bad value";
    case Fault::Locked:
      return "locked";
    case Fault::WritingLocked:
      return "writing locked";
    case Fault::CommitLocked:
      return "commit locked";
    case Fault::DiskFull:
      return "disk full";
    case Fault::ReadOnly:
      return "read-only";
    case Fault::FileGone:
      return "file gone";
  }
  return "?";
}

void DatabaseFault::begin(Fault fault, const std::shared_ptr<odbc::Connection>& connection) {
  fault_ = fault;
  connection_ = connection;
  switch (fault) {
    case Fault::Locked:
      return lock({L"BEGIN EXCLUSIVE"});
    case Fault::WritingLocked:
      return lock({L"BEGIN IMMEDIATE"});
    case Fault::CommitLocked:
      return lock({L"BEGIN", L"SELECT count(*) FROM Interface_PACS_cfg"});
    case Fault::DiskFull:
      return fillDisk();
    case Fault::ReadOnly:
      connection_->query(L"PRAGMA query_only = 1");
      return;
    case Fault::FileGone:
      return move(siteFile(), movedFile());
    default:
      throw std::invalid_argument(nameOf(fault));
  }
}

void DatabaseFault::end() {
  // Closing the connection undoes its transaction.
  locker_.reset();
  const auto connection = std::exchange(connection_, nullptr);
  const Fault fault = std::exchange(fault_, Fault::None);
  if (fault == Fault::FileGone) move(movedFile(), siteFile());
  if (!connection || connection->isLost()) return;
  if (fault == Fault::ReadOnly) connection->query(L"PRAGMA query_only = 0");
  if (fault == Fault::DiskFull) connection->query(L"PRAGMA max_page_count = 1000000");
}

void DatabaseFault::lock(const std::vector<std::wstring>& statements) {
  locker_ = anotherConnection();
  try {
    for (const std::wstring& statement : statements) locker_->query(statement);
  } catch (const RunTimeError&) {
    locker_.reset();
  }
}

void DatabaseFault::fillDisk() const {
  const Table pages = connection_->query(L"PRAGMA page_count");
  connection_->query(L"PRAGMA max_page_count = " + std::wstring(*pages.at(0, 0)));
  for (std::size_t length = 2000; length > 0; length /= 2) {
    try {
      for (;;) {
        connection_->query(L"INSERT INTO System_offline_db_updates VALUES(-9, 3, '', 0, '" +
                           std::wstring(length, L'x') + L"')");
      }
    } catch (const RunTimeError&) {
      // As many of this length as there is room for.
    }
  }
}

std::shared_ptr<odbc::Connection> anotherConnection() {
  return std::make_shared<odbc::Connection>(
      std::make_shared<odbc::Environment>(odbc::CursorLibrary::NotUsed, std::chrono::seconds(5)),
      L"TlImpatientSite", odbc::Prompt::Never, L"");
}

}  // namespace tlpacscfg::test
