#include "faults/matrix/matrix.h"

#include <algorithm>
#include <iterator>

#include "support/text.h"

namespace tlpacscfg::test {
namespace {

using enum Fault;
using Cells = std::vector<Cell>;
using Faults = std::initializer_list<Fault>;

const std::wstring kError = L"error {number}: {description}";
const std::wstring kNoBox;
const std::wstring kOld = L"old";
const std::wstring kOneMark = L"1 INSERT System_offline_db_updates";
const std::wstring kNoMark = L"new, marks: 0";

constexpr Faults kOfLines = {LogUnwritable, LogDiskFull};
constexpr Faults kOfCommands = {Locked, WritingLocked, CommitLocked, DiskFull, ReadOnly, FileGone};

/// The same cell for several faults.
Cells each(Faults faults, Cell cell) {
  Cells cells;
  for (const Fault fault : faults) {
    cell.fault = fault;
    cells.push_back(cell);
  }
  return cells;
}

void add(Cells& cells, const Cells& more) {
  std::copy(more.begin(), more.end(), std::back_inserter(cells));
}

Cells all(std::initializer_list<Cells> parts) {
  Cells cells;
  for (const Cells& part : parts) add(cells, part);
  return cells;
}

Chart loadingChart() {
  const std::wstring box = L"Error {number} Error Desc {description}";
  return {.name = "Init",
          .scenario = &loading,
          .result = L"True",
          .memory = L"initialised, 4 and 3",
          .lines = 1,
          .calls = "SELECT SELECT",
          .cells = all({
              each(kOfLines, {None, 1, 1, L"False", kNoBox, kOld, L"not initialised"}),
              {{Unreadable, 1, 3, L"False", kNoBox, kOld, L"not initialised, 0"},
               {Unreadable, 4, 6, L"True", box, kOld, L"initialised, 4 and 0"},
               {BadValue, 1, 1, L"False", kNoBox, kOld, L"not initialised, 1"},
               {BadValue, 2, 2, L"False", kNoBox, kOld, L"not initialised, 2"},
               {BadValue, 3, 3, L"False", kNoBox, kOld, L"not initialised, 3"},
               {BadValue, 4, 4, L"True", box, kOld, L"initialised, 4 and 0"},
               {BadValue, 5, 5, L"True", box, kOld, L"initialised, 4 and 1"},
               {BadValue, 6, 6, L"True", box, kOld, L"initialised, 4 and 2"},
               {Locked, 1, 1, L"False", kNoBox, kOld, L"not initialised, 0"},
               {WritingLocked, 1, 1, L"True", kNoBox, kOld, L"initialised, 4 and 3"},
               {CommitLocked, 1, 1, L"True", kNoBox, kOld, L"initialised, 4 and 3"},
               {FileGone, 1, 1, L"False", kNoBox, kOld, L"not initialised, 0"}},
          })};
}

/// A record's row and, in a transaction of its own, the mark.
Chart savingChart(const char* name, ScenarioFactory scenario, const std::string& verb) {
  return {.name = name,
          .scenario = scenario,
          .result = L"0",
          .memory = L"existing",
          .lines = 4,
          .calls = verb + " commit INSERT commit",
          .writes = L"1 " + fromUtf8(verb) + L" Interface_PACS_cfg, " + kOneMark,
          .cells = all({
              each(kOfLines, {None, 1, 2, kError, kNoBox, kOld, L"existing"}),
              each(kOfLines, {None, 3, 4, L"0", kNoBox, kNoMark, L"existing"}),
              {{Refused, 1, 1, kError, kNoBox, kOld, L"existing"},
               {Refused, 2, 2, L"0", kNoBox, kNoMark, L"existing"}},
              each(kOfCommands, {None, 1, 1, kError, kNoBox, kOld, L"existing"}),
              each(kOfCommands, {None, 2, 2, L"0", kNoBox, kNoMark, L"existing"}),
          })};
}

/// A fault that lasts from a record's mark, whose failure is ignored, to the next record stops that
/// one. Other faults of a record are those of saving one.
Chart savingThreeChart() {
  const std::wstring memory = L"4 records";
  Cells cells;
  const auto record = [&](int number, const std::wstring& stored) {
    const Cell cell{None, number, number, kError, kNoBox, stored, memory};
    add(cells, each({Refused}, cell));
  };
  const auto command = [&](int number, const std::wstring& result, const std::wstring& stored) {
    const Cell cell{None, number, number, result, kNoBox, stored, memory};
    add(cells, each({Locked}, cell));
    Cell line = cell;
    line.firstStep = 2 * number - 1;
    line.lastStep = 2 * number;
    add(cells, each({LogUnwritable}, line));
  };
  record(1, kOld);
  record(2, L"1, marks: 1");
  record(3, L"2, marks: 2");
  command(1, kError, kOld);
  command(2, kError, L"1");
  command(3, kError, L"1, marks: 1");
  command(4, kError, L"2, marks: 1");
  command(5, kError, L"2, marks: 2");
  command(6, L"done", L"new, marks: 2");
  return {.name = "save three configurations",
          .scenario = &savingThreeConfigurations,
          .result = L"done",
          .memory = memory,
          .lines = 12,
          .calls =
              "UPDATE commit INSERT commit UPDATE commit INSERT commit UPDATE commit INSERT "
              "commit",
          .writes = L"3 UPDATE Interface_PACS_cfg, 3 INSERT System_offline_db_updates",
          .cells = cells};
}

Chart deletingChart() {
  const std::wstring box =
      L"Error Deleting configID = 2 from the DB. \r\n"
      L"Error = {number} Error Description = {description}";
  return {.name = "delete a configuration",
          .scenario = &deleting,
          .result = L"done",
          .memory = L"gone",
          .lines = 2,
          .calls = "DELETE INSERT commit",
          .writes = L"1 DELETE Interface_PACS_cfg, " + kOneMark,
          .cells = all({
              each(kOfLines, {None, 1, 2, L"done", kNoBox, kNoMark, L"gone"}),
              {{Refused, 1, 1, L"done", box, kOld, L"held"},
               {Refused, 2, 2, L"done", kNoBox, kNoMark, L"gone"},
               // The statement commits itself, and the driver adds a code.
               {CommitLocked, 1, 1, L"done", box + L" (5)", kOld, L"held"},
               // A deletion needs no room.
               {DiskFull, 1, 1, L"done", kNoBox, kNoMark, L"gone"}},
              each({Locked, WritingLocked, ReadOnly, FileGone},
                   {None, 1, 1, L"done", box, kOld, L"held"}),
              each(kOfCommands, {None, 2, 2, L"done", kNoBox, kNoMark, L"gone"}),
          })};
}

/// The calls of two batches and the mark.
std::string assigningCalls() {
  std::string hundred;
  for (int i = 0; i < 100; ++i) hundred += "DELETE INSERT ";
  return hundred + "commit DELETE INSERT commit INSERT commit";
}

/// Each of 101 workstations is a deleted and an inserted row: 200 in the first batch, two in the
/// second, then the mark. A full disk is left out: rows that replace each other may find room.
Chart assigningChart() {
  const std::wstring memory = L"assigned";
  const std::wstring hundred = L"100 x 2, 1 x 1";
  static constexpr Faults faults = {Locked, WritingLocked, CommitLocked, ReadOnly, FileGone};
  return {.name = "assign 101 workstations",
          .scenario = &assigning,
          .result = L"done",
          .memory = memory,
          .lines = 6,
          .calls = assigningCalls(),
          .writes = kOneMark +
                    L", 101 DELETE System_workstation_cfg, 101 INSERT "
                    L"System_workstation_cfg",
          .cells = all({
              each(kOfLines, {None, 1, 2, kError, kNoBox, kOld, memory}),
              each(kOfLines, {None, 3, 4, kError, kNoBox, hundred, memory}),
              each(kOfLines, {None, 5, 6, L"done", kNoBox, kNoMark, memory}),
              {{Refused, 1, 200, kError, kNoBox, kOld, memory},
               {Refused, 201, 202, kError, kNoBox, hundred, memory},
               {Refused, 203, 203, L"done", kNoBox, kNoMark, memory}},
              each(faults, {None, 1, 1, kError, kNoBox, kOld, memory}),
              each(faults, {None, 2, 2, kError, kNoBox, hundred, memory}),
              each(faults, {None, 3, 3, L"done", kNoBox, kNoMark, memory}),
          })};
}

/// New rows need room for certain. All other faults are those of rows that are replaced.
Chart assigningFirstChart() {
  return {.name = "assign 101 workstations for the first time",
          .scenario = &assigningFirst,
          .result = L"done",
          .memory = L"assigned",
          .lines = 6,
          .calls = assigningCalls(),
          .writes = kOneMark + L", 101 INSERT System_workstation_cfg",
          .cells = {{DiskFull, 1, 1, kError, kNoBox, kOld, L"assigned"},
                    {DiskFull, 3, 3, L"done", kNoBox, kNoMark, L"assigned"}}};
}

Chart testingChart() {
  return {.name = "test the connection",
          .scenario = &testingConnection,
          .result = L"True",
          .memory = L"connected",
          .lines = 0,
          .calls = "SELECT",
          // The statement asks for the time, not for what is in the files.
          .cells = each(kOfCommands, {None, 1, 1, L"True", kNoBox, kOld, L"connected"})};
}

Chart numberingChart() {
  return {.name = "number a configuration",
          .scenario = &numbering,
          .result = L"4",
          .memory = L"4",
          .lines = 1,
          .calls = "SELECT",
          .cells = all({
              each(kOfLines, {None, 1, 1, kError, kNoBox, kOld, L"0"}),
              {{Unreadable, 1, 3, L"1", kNoBox, kOld, L"1"},
               // Text sorts after all numbers.
               {BadValue, 1, 2, L"4", kNoBox, kOld, L"4"},
               {BadValue, 3, 3, L"3", kNoBox, kOld, L"3"},
               {Locked, 1, 1, L"1", kNoBox, kOld, L"1"}},
              each({WritingLocked, CommitLocked, DiskFull, ReadOnly, FileGone},
                   {None, 1, 1, L"4", kNoBox, kOld, L"4"}),
          })};
}

}  // namespace

const std::vector<Chart>& matrix() {
  static const std::vector<Chart> charts = {
      loadingChart(),
      savingChart("insert a configuration", &inserting, "INSERT"),
      savingChart("update a configuration", &updating, "UPDATE"),
      savingThreeChart(),
      deletingChart(),
      assigningChart(),
      assigningFirstChart(),
      testingChart(),
      numberingChart(),
  };
  return charts;
}

ErrorOfFault errorOf(Fault fault) {
  switch (fault) {
    case LogUnwritable:
      return {L"75", L"Path/File access error"};
    case LogDiskFull:
      return {L"61", L"Disk full"};
    case Refused:
      return {L"40002", L"HY000: [SQLite]refused (19)"};
    case Unreadable:
      return {L"40002", L"HY000: [SQLite]integer overflow (1)"};
    case BadValue:
      return {L"13", L"Type mismatch"};
    case Locked:
    case WritingLocked:
      return {L"40002", L"HY000: [SQLite]database is locked (5)"};
    case CommitLocked:
      return {L"40002", L"HY000: [SQLite]database is locked"};
    case DiskFull:
      return {L"40002", L"HY000: [SQLite]database or disk is full (13)"};
    case ReadOnly:
    case FileGone:
      return {L"40002", L"HY000: [SQLite]attempt to write a readonly database (8)"};
    case None:
      break;
  }
  return {};
}

}  // namespace tlpacscfg::test
