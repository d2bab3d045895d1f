#include "faults/journey.h"

#include <cstdlib>
#include <filesystem>

#include "config/columns.h"
#include "data/database.h"
#include "data/mod_main.h"
#include "harness/scratch.h"
#include "log/log_support.h"
#include "support/runtime_error.h"
#include "support/text.h"

namespace tlpacscfg::test {
namespace {

constexpr const wchar_t* kFullDevice = L"/dev/full";

std::filesystem::path asPath(const std::wstring& path) { return toUtf16(path); }

/// Long texts by their length and hash.
std::wstring shortened(const std::wstring& text) {
  if (text.size() < 5000) return text;
  return decimal(text.size()) + L" characters: " + decimal(std::hash<std::wstring>()(text));
}

}  // namespace

const wchar_t* nameOf(Fault fault) {
  switch (fault) {
    case Fault::None:
      return L"no fault";
    case Fault::LogUnwritable:
      return L"log not writable";
    case Fault::LogDiskFull:
      return L"disk of the log full";
    case Fault::Refused:
      return L"row refused";
    case Fault::Unreadable:
      return L"row unreadable";
    case Fault::BadValue:
      return L"bad value";
    case Fault::Locked:
      return L"database locked";
    case Fault::WritingLocked:
      return L"writing locked";
    case Fault::CommitLocked:
      return L"commit locked";
    case Fault::DiskFull:
      return L"disk full";
    case Fault::ReadOnly:
      return L"database read-only";
    case Fault::FileGone:
      return L"database file gone";
  }
  return L"?";
}

Journey::Journey() {
  registerDataSource(L"TlImpatientSite", L"site");
  config.SQLDSN = L"TlImpatientSite";
  makeDirectory(scratchPath(L"directory"));
  system::localTime = [this] {
    if (!begun_ && linesLogged() >= firstLine_ - 1) begin();
    return system::LocalTime{2026, 1, 5, 9, 8, 7, 65};
  };
}

Journey::~Journey() { relent(); }

std::wstring Journey::go() {
  if (firstLine_ == 0 && !begun_) begin();
  try {
    return act();
  } catch (const RunTimeError& error) {
    return L"error " + decimal(error.number()) + L": " + error.description();
  }
}

void Journey::arrange(Fault fault, int step) {
  fault_ = fault;
  step_ = step;
  begun_ = false;
  switch (fault) {
    case Fault::LogUnwritable:
    case Fault::LogDiskFull:
      firstLine_ = step;
      break;
    case Fault::None:
    case Fault::Refused:
    case Fault::Unreadable:
    case Fault::BadValue:
      firstLine_ = 0;
      break;
    default:
      firstLine_ = lineOfCommand(step);
      break;
  }
  logOn();
  logFile_ = modLogSupport.g_strLogFile;
}

void Journey::begin() {
  begun_ = true;
  switch (fault_) {
    case Fault::None:
      break;
    case Fault::LogUnwritable:
      modLogSupport.g_strLogFile = scratchPath(L"directory");
      break;
    case Fault::LogDiskFull:
      modLogSupport.g_strLogFile = kFullDevice;
      break;
    case Fault::Refused:
      inflict(refusal(step_));
      break;
    case Fault::Unreadable:
      inflict(unreadableRow(step_));
      break;
    case Fault::BadValue:
      inflict(badValue(step_));
      break;
    case Fault::Locked:
      lock({L"BEGIN EXCLUSIVE"});
      break;
    case Fault::WritingLocked:
      lock({L"BEGIN IMMEDIATE"});
      break;
    case Fault::CommitLocked:
      lock({L"BEGIN", L"SELECT count(*) FROM Interface_PACS_cfg"});
      break;
    case Fault::DiskFull:
      fillDisk();
      break;
    case Fault::ReadOnly:
      modMain.g_conSql->query(L"PRAGMA query_only = 1");
      break;
    case Fault::FileGone:
      std::filesystem::rename(asPath(siteFile()), asPath(siteFile() + L".gone"));
      break;
  }
}

void Journey::relent() {
  begun_ = true;
  if (!logFile_.empty()) modLogSupport.g_strLogFile = logFile_;
  if (locker_) {
    locker_->query(L"ROLLBACK");
    locker_.reset();
  }
  if (fault_ == Fault::FileGone && fileExists(siteFile() + L".gone")) {
    std::filesystem::rename(asPath(siteFile() + L".gone"), asPath(siteFile()));
  }
  if (modMain.g_conSql && fault_ == Fault::ReadOnly)
    modMain.g_conSql->query(L"PRAGMA query_only = 0");
  if (modMain.g_conSql && fault_ == Fault::DiskFull)
    modMain.g_conSql->query(L"PRAGMA max_page_count = 1000000");
  if (!repair_.empty()) site.runAll(std::exchange(repair_, {}));
  fault_ = Fault::None;
}

void Journey::lock(const std::vector<std::wstring>& statements) {
  locker_ = anotherConnection();
  for (const std::wstring& statement : statements) locker_->query(statement);
}

void Journey::inflict(Damage damage) {
  site.runAll(damage.harm);
  repair_ = std::move(damage.repair);
}

void Journey::fillDisk() {
  const Table pages = modMain.g_conSql->query(L"PRAGMA page_count");
  modMain.g_conSql->query(L"PRAGMA max_page_count = " + std::wstring(*pages.at(0, 0)));
  for (int length = 2000; length > 0; length /= 2) {
    for (;;) {
      try {
        modMain.g_conSql->query(L"INSERT INTO System_offline_db_updates VALUES(-9, 3, '', 0, '" +
                                std::wstring(static_cast<std::size_t>(length), L'x') + L"')");
      } catch (const RunTimeError&) {
        break;
      }
    }
  }
}

int Journey::linesLogged() const {
  const std::string stamp = toUtf8(kNow);
  const std::string text = log();
  int lines = 0;
  for (std::size_t at = text.find(stamp); at != text.npos; at = text.find(stamp, at + 1)) ++lines;
  return lines;
}

SiteState Journey::siteState() const {
  std::wstring configuration;
  for (const Column& column : columns()) {
    configuration += (configuration.empty() ? L"quote(" : L" || ',' || quote(") +
                     std::wstring(column.name) + L")";
  }
  const ProbeRow state = site.rows(
      L"SELECT (SELECT group_concat(" + configuration +
      L", ';') FROM (SELECT * FROM Interface_PACS_cfg ORDER BY config_id)), (SELECT "
      L"group_concat(pc_name || '=' || key_value, ' ') FROM (SELECT * FROM System_workstation_cfg "
      L"ORDER BY pc_name)), (SELECT group_concat(pc_name || '=' || flag2, ' ') FROM (SELECT * FROM "
      L"System_pc_names ORDER BY pc_name)), (SELECT count(*) FROM System_offline_db_updates WHERE "
      L"user_id = -1)")[0];
  std::wstring rows;
  for (std::size_t i = 0; i < 3; ++i) rows += shortened(state[i].value_or(L"NULL")) + L"\n";
  return {rows, std::stoi(*state[3])};
}

Damage Journey::refuse(const std::wstring& event, const std::wstring& condition) {
  return {{L"CREATE TRIGGER refuse BEFORE " + event + L" WHEN " + condition +
           L" BEGIN SELECT RAISE(ABORT, 'refused'); END"},
          {L"DROP TRIGGER refuse"}};
}

Damage Journey::spoilReading(const std::wstring& table, const std::wstring& condition) {
  return {{L"ALTER TABLE " + table + L" RENAME TO kept",
           L"CREATE VIEW " + table + L" AS SELECT * FROM kept WHERE CASE WHEN " + condition +
               L" THEN abs(-9223372036854775807 - 1) ELSE 1 END"},
          {L"DROP VIEW " + table, L"ALTER TABLE kept RENAME TO " + table}};
}

std::shared_ptr<odbc::Connection> Journey::anotherConnection() const {
  return std::make_shared<odbc::Connection>(
      std::make_shared<odbc::Environment>(odbc::CursorLibrary::NotUsed, std::chrono::seconds(5)),
      L"TlTestSite", odbc::Prompt::Never, L"");
}

std::wstring Journey::siteFile() const {
  return platformPath(std::getenv("TL_SCRATCH") + std::string("/site.db"));
}

}  // namespace tlpacscfg::test
