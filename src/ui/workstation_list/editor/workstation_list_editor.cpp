#include "ui/workstation_list/editor/workstation_list_editor.h"

#include <utility>

#include "host/site_access.h"
#include "log/log_support.h"
#include "support/runtime_error.h"
#include "ui/workstation_list/values/assignment_question.h"

namespace tlpacscfg {
namespace {

constexpr std::int16_t columnNumber(std::size_t column) {
  return static_cast<std::int16_t>(column + 1);
}

/// Without this question the window, and so the host, could never be closed while the database
/// refuses the assignments.
bool askToCloseWithoutSaving() {
  return system::showMessage({.text = L"The workstation assignments could not be saved. Close "
                                      L"without saving them?",
                              .buttons = system::Buttons::YesNo,
                              .defaultAnswer = system::Answer::No}) == system::Answer::Yes;
}

}  // namespace

WorkstationListEditor::WorkstationListEditor(std::shared_ptr<clsConfig> host,
                                             StartProgress startProgress)
    : host_(std::move(host)), startProgress_(std::move(startProgress)) {}

bool WorkstationListEditor::FillPCList() {
  try {
    const SiteAccess access(*host_);
    const std::shared_ptr<colWorkstation> workstations = host_->m_colWorkstation;
    const std::shared_ptr<colPACSConfiguration> configurations = host_->m_colPACSConfig;
    if (!workstations || !configurations) raise(ErrorNumber::ObjectNotSet);
    rows.fill(*workstations, *configurations, filter);
    rows.sortOrder = kDescending;
    SortListView(rows, columnNumber(WorkstationRows::kName),
                 static_cast<std::int16_t>(SortType::Text));
    selectedRow.reset();
    if (rows.rowCount() > 0) selectedRow = rows.rowOf(system::computerName()).value_or(0);
    return true;
  } catch (...) {
    logFailure(L"The workstation list was not filled", describeCurrent());
    system::showMessage({.text = L"PACS interface configuration could not be loaded.  Please "
                                 L"contact Brannock & Company for technical support.",
                         .title = L"Corvane Search Configurations"});
    return false;
  }
}

void WorkstationListEditor::SetItemFocus() {
  if (const auto row = rows.rowOf(chosenWorkstation_)) selectedRow = row;
}

void WorkstationListEditor::headerClicked(std::size_t column) {
  const std::wstring name = selectedName();
  const bool byNumber = column == WorkstationRows::kConfiguration;
  SortListView(rows, columnNumber(byNumber ? WorkstationRows::kConfigID : column),
               static_cast<std::int16_t>(byNumber ? SortType::WholeNumber : SortType::Text));
  if (selectedRow) selectedRow = rows.rowOf(name);
}

std::int16_t WorkstationListEditor::cmdEditConfig() {
  chosenWorkstation_ = selectedRow ? selectedName() : L"0";
  return selectedRow ? configIDOf(*selectedRow) : std::int16_t{0};
}

std::optional<WorkstationListEditor::Assignment> WorkstationListEditor::cmdEditWorkstation() {
  if (!selectedRow) return std::nullopt;
  chosenWorkstation_ = selectedName();
  return Assignment{chosenWorkstation_, configIDOf(*selectedRow)};
}

std::wstring WorkstationListEditor::selectedName() const {
  return std::wstring(selectedRow ? rows.cell(*selectedRow, WorkstationRows::kName) : L"");
}

/// From the workstation itself, because the row may be out of date.
std::int16_t WorkstationListEditor::configIDOf(std::size_t row) const {
  const std::shared_ptr<colWorkstation> workstations = host_->m_colWorkstation;
  const auto workstation =
      workstations ? workstations->ColWorkStations->find(rows.cell(row, WorkstationRows::kName))
                   : nullptr;
  return workstation ? WorkstationRows::assignedID(workstation->configID) : rows.configIDOf(row);
}

bool WorkstationListEditor::saveAssignments() {
  // A host may replace the collection while a question is open.
  const std::shared_ptr<colWorkstation> workstations = host_->m_colWorkstation;
  if (!workstations) raise(ErrorNumber::ObjectNotSet);
  std::vector<AssignmentConflict> overruled;
  for (;;) {
    const auto conflicts = saveShowingProgress(*workstations, overruled);
    if (conflicts.empty()) return true;
    switch (askWhoseAssignments(conflicts)) {
      case system::Answer::Yes:
        overruled.insert(overruled.end(), conflicts.begin(), conflicts.end());
        break;
      case system::Answer::No:
        for (const AssignmentConflict& conflict : conflicts) yieldTo(conflict, *workstations);
        break;
      default:
        return false;
    }
  }
}

bool WorkstationListEditor::saveOrAbandon() {
  try {
    return saveAssignments();
  } catch (...) {
    system::reportRunTimeError(describeCurrent());
    return askToCloseWithoutSaving();
  }
}

bool WorkstationListEditor::isOutOfDate() const {
  for (std::size_t row = 0; row < rows.rowCount(); ++row) {
    if (rows.configIDOf(row) != configIDOf(row)) return true;
  }
  return false;
}

bool WorkstationListEditor::refill() {
  const std::wstring name = selectedName();
  const bool wasSelected = selectedRow.has_value();
  if (!FillPCList()) return false;
  const auto row = rows.rowOf(name);
  if (wasSelected && row) selectedRow = row;
  return true;
}

std::vector<AssignmentConflict> WorkstationListEditor::saveShowingProgress(
    const colWorkstation& workstations, const std::vector<AssignmentConflict>& overruled) {
  const SiteAccess access(*host_);
  const Progress progress = startProgress_();
  return tlpacscfg::saveAssignments(workstations, overruled,
                                    [&](std::size_t done, std::size_t total) {
                                      try {
                                        progress(done, total);
                                      } catch (...) {
                                        // Only informs the user.
                                      }
                                    });
}

system::Answer WorkstationListEditor::askWhoseAssignments(
    const std::vector<AssignmentConflict>& conflicts) const {
  const std::shared_ptr<colPACSConfiguration> known = host_->m_colPACSConfig;
  return system::showMessage({.text = conflictQuestion(conflicts, known.get()),
                              .buttons = system::Buttons::YesNoCancel,
                              .defaultAnswer = system::Answer::Cancel});
}

}  // namespace tlpacscfg
