#include "faults/matrix/scenario.h"

#include "data/direct_connections.h"
#include "data/mod_main.h"
#include "harness/scratch.h"
#include "log/log_support.h"
#include "support/runtime_error.h"
#include "support/text.h"

namespace tlpacscfg::test {

Scenario::Scenario() {
  registerDataSource(L"TlImpatientSite", siteFile());
  config.SQLDSN = L"TlImpatientSite";
  makeDirectory(scratchPath(L"directory"));
  // The component asks for the time just before it writes a line of its log.
  system::localTime = [this] {
    if (!began_ && linesLogged() >= firstLine_ - 1) begin();
    return system::LocalTime{2026, 1, 5, 9, 8, 7, 65};
  };
}

Scenario::~Scenario() { endFault(); }

std::wstring Scenario::run() {
  if (firstLine_ == 0 && !began_) begin();
  try {
    return act();
  } catch (const RunTimeError& error) {
    return L"error " + decimal(error.number()) + L": " + error.description();
  }
}

void Scenario::plan(Fault fault, int step) {
  fault_ = fault;
  step_ = step;
  began_ = false;
  if (fault == Fault::LogUnwritable || fault == Fault::LogDiskFull) {
    firstLine_ = step;
  } else {
    firstLine_ = fault < Fault::Locked ? 0 : lineOfCommand(step);
  }
  logOn();
  logFile_ = modLogSupport.g_strLogFile;
}

void Scenario::begin() {
  began_ = true;
  switch (fault_) {
    case Fault::None:
      break;
    case Fault::LogUnwritable:
      modLogSupport.g_strLogFile = scratchPath(L"directory");
      break;
    case Fault::LogDiskFull:
      modLogSupport.g_strLogFile = L"/dev/full";
      break;
    case Fault::Refused:
      damage(refusal(step_));
      break;
    case Fault::Unreadable:
      damage(unreadableRow(step_));
      break;
    case Fault::BadValue:
      damage(badValue(step_));
      break;
    default:
      databaseFault_.begin(fault_, modMain.g_conSql);
      break;
  }
}

void Scenario::endFault() {
  began_ = true;
  if (!logFile_.empty()) modLogSupport.g_strLogFile = logFile_;
  databaseFault_.end();
  if (!repair_.empty()) site.runAll(std::exchange(repair_, {}));
  fault_ = Fault::None;
}

void Scenario::damage(Damage damage) {
  site.runAll(damage.harm);
  repair_ = std::move(damage.repair);
}

int Scenario::linesLogged() const {
  const std::string stamp = toUtf8(kNow);
  const std::string text = log();
  int lines = 0;
  for (std::size_t at = text.find(stamp); at != text.npos; at = text.find(stamp, at + 1)) ++lines;
  return lines;
}

SiteState Scenario::siteState() const {
  return {
      site.text(L"SELECT * FROM Interface_PACS_cfg ORDER BY config_id") +
          site.text(L"SELECT * FROM System_workstation_cfg ORDER BY pc_name") +
          site.text(L"SELECT * FROM System_pc_names ORDER BY pc_name"),
      std::stoi(*site.value(L"SELECT count(*) FROM System_offline_db_updates WHERE user_id = -1"))};
}

void Scenario::noteWrites() const {
  std::vector<std::wstring> statements = {L"CREATE TABLE noted (event TEXT)"};
  for (const wchar_t* const table : {L"Interface_PACS_cfg", L"System_offline_db_updates",
                                     L"System_pc_names", L"System_workstation_cfg"}) {
    for (const wchar_t* const verb : {L"DELETE", L"INSERT", L"UPDATE"}) {
      const std::wstring event = std::wstring(verb) + L" " + table;
      statements.push_back(L"CREATE TRIGGER \"" + event + L"\" AFTER " + verb + L" ON " + table +
                           L" BEGIN INSERT INTO noted VALUES ('" + event + L"'); END");
    }
  }
  site.runAll(statements);
}

std::wstring Scenario::writes() const {
  return site
      .value(
          L"SELECT group_concat(many || ' ' || event, ', ') FROM (SELECT event, count(*) AS many "
          L"FROM noted GROUP BY event ORDER BY substr(event, 8), event)")
      .value_or(L"");
}

void Scenario::expectNoOpenTransaction() const {
  EXPECT_NO_THROW(Probe(L"DSN=TlImpatientSite;").run(kHarmlessChange));
}

Damage Scenario::refuse(const std::wstring& event, const std::wstring& condition) {
  return {{L"CREATE TRIGGER refuse BEFORE " + event + L" WHEN " + condition +
           L" BEGIN SELECT RAISE(ABORT, 'refused'); END"},
          {L"DROP TRIGGER refuse"}};
}

Damage Scenario::spoilReading(const std::wstring& table, const std::wstring& condition) {
  return {{L"ALTER TABLE " + table + L" RENAME TO kept",
           L"CREATE VIEW " + table + L" AS SELECT * FROM kept WHERE CASE WHEN " + condition +
               L" THEN abs(-9223372036854775807 - 1) ELSE 1 END"},
          {L"DROP VIEW " + table, L"ALTER TABLE kept RENAME TO " + table}};
}

}  // namespace tlpacscfg::test
