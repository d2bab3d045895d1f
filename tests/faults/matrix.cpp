#include "faults/matrix.h"

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
          .journey = &loading,
          .result = L"True",
          .memory = L"initialised, 4 and 3",
          .steps = {.lines = 1, .rowsRead = 6, .commands = 1},
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
          }),
          .exemptions = {{DiskFull, "Nothing is written."}, {ReadOnly, "Nothing is written."}}};
}

/// A record's row and, in a command of its own, the mark.
Chart savingChart(const char* name, JourneyFactory journey) {
  return {.name = name,
          .journey = journey,
          .result = L"0",
          .memory = L"existing",
          .steps = {.lines = 4, .rowsWritten = 2, .commands = 2},
          .cells = all({
              each(kOfLines, {None, 1, 2, kError, kNoBox, kOld, L"existing"}),
              each(kOfLines, {None, 3, 4, L"0", kNoBox, kNoMark, L"existing"}),
              {{Refused, 1, 1, kError, kNoBox, kOld, L"existing"},
               {Refused, 2, 2, L"0", kNoBox, kNoMark, L"existing"}},
              each(kOfCommands, {None, 1, 1, kError, kNoBox, kOld, L"existing"}),
              each(kOfCommands, {None, 2, 2, L"0", kNoBox, kNoMark, L"existing"}),
          })};
}

/// A fault that goes on behind a record's mark, which is ignored, stops the next record.
Chart savingThreeChart() {
  const std::wstring memory = L"4 records";
  const Cell cells[] = {
      {None, 0, 0, kError, kNoBox, kOld, memory},
      {None, 0, 0, kError, kNoBox, L"1", memory},
      {None, 0, 0, kError, kNoBox, L"1, marks: 1", memory},
      {None, 0, 0, kError, kNoBox, L"2, marks: 1", memory},
      {None, 0, 0, kError, kNoBox, L"2, marks: 2", memory},
      {None, 0, 0, L"done", kNoBox, L"new, marks: 2", memory},
  };
  Cells chart;
  for (int command = 1; command <= 6; ++command) {
    Cell cell = cells[command - 1];
    cell.firstStep = cell.lastStep = command;
    add(chart, each(kOfCommands, cell));
    cell.firstStep = 2 * command - 1;
    cell.lastStep = 2 * command;
    add(chart, each(kOfLines, cell));
    if (command % 2 == 0) continue;
    cell.firstStep = cell.lastStep = (command + 1) / 2;
    add(chart, each({Refused}, cell));
  }
  return {.name = "save three configurations",
          .journey = &savingThreeConfigurations,
          .result = L"done",
          .memory = memory,
          .steps = {.lines = 12, .rowsWritten = 3, .commands = 6},
          .cells = chart};
}

Chart deletingChart() {
  const std::wstring box =
      L"Error Deleting configID = 2 from the DB. \r\n"
      L"Error = {number} Error Description = {description}";
  return {.name = "delete a configuration",
          .journey = &deleting,
          .result = L"done",
          .memory = L"gone",
          .steps = {.lines = 2, .rowsWritten = 2, .commands = 2},
          .cells = all({
              each(kOfLines, {None, 1, 2, L"done", kNoBox, kNoMark, L"gone"}),
              {{Refused, 1, 1, L"done", box, kOld, L"held"},
               {Refused, 2, 2, L"done", kNoBox, kNoMark, L"gone"},
               // The statement commits itself, and the driver adds a code.
               {CommitLocked, 1, 1, L"done", box + L" (5)", kOld, L"held"},
               // To delete takes no room.
               {DiskFull, 1, 1, L"done", kNoBox, kNoMark, L"gone"}},
              each({Locked, WritingLocked, ReadOnly, FileGone},
                   {None, 1, 1, L"done", box, kOld, L"held"}),
              each(kOfCommands, {None, 2, 2, L"done", kNoBox, kNoMark, L"gone"}),
          })};
}

/// `stored` is what the workstations before the failing batch amount to.
Cells batchCells(int batch, int workstations, const std::wstring& stored) {
  const Cell cell{None, batch, batch, kError, kNoBox, stored, L"assigned"};
  Cell line = cell;
  line.firstStep = 2 * batch - 1;
  line.lastStep = 2 * batch;
  Cell row = cell;
  row.firstStep = 2 * 100 * (batch - 1) + 1;
  row.lastStep = 2 * std::min(100 * batch, workstations);
  return all({each(kOfLines, line), each({Refused}, row),
              each({Locked, WritingLocked, CommitLocked, ReadOnly, FileGone}, cell)});
}

/// The mark, in the command behind the batches.
Cells markCells(int batches, int rows) {
  const int mark = batches + 1;
  const Cell cell{None, mark, mark, L"done", kNoBox, kNoMark, L"assigned"};
  Cell line = cell;
  line.firstStep = 2 * mark - 1;
  line.lastStep = 2 * mark;
  Cell row = cell;
  row.firstStep = row.lastStep = rows + 1;
  return all({each(kOfLines, line), each({Refused}, row),
              each({Locked, WritingLocked, CommitLocked, ReadOnly, FileGone}, cell)});
}

Chart assigningChart(const char* name, JourneyFactory journey, int workstations,
                     const std::vector<std::wstring>& storedBeforeBatch) {
  const auto batches = static_cast<int>(storedBeforeBatch.size());
  Cells cells = markCells(batches, 2 * workstations);
  for (int batch = 1; batch <= batches; ++batch) {
    add(cells,
        batchCells(batch, workstations, storedBeforeBatch[static_cast<std::size_t>(batch - 1)]));
  }
  return {.name = name,
          .journey = journey,
          .result = L"done",
          .memory = L"assigned",
          .steps = {.lines = 2 * batches + 2,
                    .rowsWritten = 2 * workstations + 1,
                    .commands = batches + 1},
          .cells = cells,
          .exemptions = {{DiskFull, "Rows that take each other's place may find room."}}};
}

/// New rows need room for certain.
Chart assigningFirstChart() {
  const auto full = [](int command, const std::wstring& stored) {
    return Cell{DiskFull, command, command, kError, kNoBox, stored, L"assigned"};
  };
  std::vector<Exemption> exemptions;
  for (const Fault fault :
       {LogUnwritable, LogDiskFull, Locked, WritingLocked, CommitLocked, ReadOnly, FileGone}) {
    exemptions.push_back({fault, "As with rows that are replaced."});
  }
  return {.name = "assign 250 workstations for the first time",
          .journey = &assigningFirst<250>,
          .result = L"done",
          .memory = L"assigned",
          .steps = {.lines = 8, .commands = 4},
          .cells = {full(1, kOld),
                    full(2, L"100 x 2"),
                    full(3, L"200 x 2"),
                    {DiskFull, 4, 4, L"done", kNoBox, kNoMark, L"assigned"}},
          .exemptions = exemptions};
}

Chart testingChart() {
  return {.name = "test the connection",
          .journey = &testingConnection,
          .result = L"True",
          .memory = L"connected",
          .steps = {.commands = 1},
          // The statement asks for the time, not for what is in the files.
          .cells = each(kOfCommands, {None, 1, 1, L"True", kNoBox, kOld, L"connected"})};
}

Chart numberingChart() {
  return {.name = "number a configuration",
          .journey = &numbering,
          .result = L"4",
          .memory = L"4",
          .steps = {.lines = 1, .rowsRead = 3, .commands = 1},
          .cells = all({
              each(kOfLines, {None, 1, 1, kError, kNoBox, kOld, L"0"}),
              {{Unreadable, 1, 3, L"1", kNoBox, kOld, L"1"},
               // Text sorts behind all numbers.
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
      savingChart("insert a configuration", &inserting),
      savingChart("update a configuration", &updating),
      savingThreeChart(),
      deletingChart(),
      assigningChart("assign 1 workstation", &assigning<1>, 1, {kOld}),
      assigningChart("assign 100 workstations", &assigning<100>, 100, {kOld}),
      assigningChart("assign 101 workstations", &assigning<101>, 101, {kOld, L"100 x 2, 1 x 1"}),
      assigningChart("assign 250 workstations", &assigning<250>, 250,
                     {kOld, L"100 x 2, 150 x 1", L"200 x 2, 50 x 1"}),
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
