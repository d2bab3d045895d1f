#include "ui/workstation_list/view/workstation_list_window.h"

#include <algorithm>
#include <utility>

#include "host/site_access.h"
#include "log/log_support.h"
#include "support/system.h"
#include "support/scope_exit.h"
#include "support/text.h"
#include "ui/assignment/assignment_window.h"
#include "ui/workstation_list/view/progress_window.h"
#include "ui/resource.h"
#include "ui/settings/view/settings_window.h"
#include "ui/win32/module.h"

namespace tlpacscfg {
namespace {

struct ColumnDesign {
  const wchar_t* header;
  int twips;
};

constexpr ColumnDesign kColumns[] = {
    {L"Workstation", 0},      {L"Workstation", 1440},
    {L"Configuration", 2200}, {L"Request File Location", 3500},
    {L"ConfigID", 0},
};

/// So many rows fit; one more brings a scroll bar, for which the third column makes room.
constexpr std::size_t kDesignedRows = 24;
constexpr int kNarrowConfigurationTwips = 1950;

constexpr WORD columnNumber(WorkstationRows::Column column) {
  return static_cast<WORD>(column + 1);
}

}  // namespace

frmPACSList::frmPACSList(std::shared_ptr<clsConfig> config)
    : Form(kName),
      config_(std::move(config)),
      settings_(std::make_unique<frmPACSSettings>(*this, config_)),
      assignment_(std::make_unique<frmWorkstationSettings>(*this, config_)) {}

frmPACSList::~frmPACSList() { destroy(); }

void frmPACSList::Show() {
  load(IDD_frmPACSList, nullptr);
  win32::SetFormTopMost(window(), true);
  BringToFront();
  ShowWindow(window(), SW_SHOW);
  SetFocus(item(IDC_frmPACSList_lvwPACSList));
}

void frmPACSList::BringToFront() const { win32::ForceForegroundWindow(window()); }

void frmPACSList::onInit() {
  tooltips_.attach(window());
  tooltips_.set(item(IDC_frmPACSList_btnOk), L"Close the Workstation List");
  tooltips_.set(item(IDC_frmPACSList_cmdEditConfig), L"Edit, delete or add configurations");
  tooltips_.set(item(IDC_frmPACSList_cmdEditWorkstation),
                L"Assign a configuration to a workstation");

  list_.attach(item(IDC_frmPACSList_lvwPACSList), rows_, WorkstationRows::kName);
  addColumns();
  fitToDesignedRows();

  filter_ = win32::ComboBox(item(IDC_frmPACSList_cboPCList));
  for (const FilterEntry& entry : kFilterEntries) {
    filter_.add(entry.text, static_cast<std::int16_t>(entry.filter));
  }
  filter_.selectPosition(0);
  FillPCList();
}

void frmPACSList::addColumns() {
  for (const ColumnDesign& column : kColumns) {
    list_.addColumn(column.header, win32::pixelsFromTwips(column.twips));
  }
}

void frmPACSList::fitToDesignedRows() {
  const HWND list = item(IDC_frmPACSList_lvwPACSList);
  RECT now{};
  GetWindowRect(list, &now);
  SIZE wanted = list_.sizeForRows(static_cast<int>(kDesignedRows));
  // What the narrowed column gives up may fall short of a scroll bar by a rounded pixel.
  const int givenUp = list_.columnWidth(WorkstationRows::kConfiguration) -
                      win32::pixelsFromTwips(kNarrowConfigurationTwips);
  wanted.cx += std::max(GetSystemMetrics(SM_CXVSCROLL) - givenUp, 0);

  using enum win32::Anchors::Edges;
  anchors_.attach(window());
  anchors_.add(IDC_frmPACSList_cboPCList, kLeft | kTop | kRight);
  anchors_.add(IDC_frmPACSList_lvwPACSList, kLeft | kTop | kRight | kBottom);
  anchors_.add(IDC_frmPACSList_cmdEditConfig, kLeft | kBottom);
  anchors_.add(IDC_frmPACSList_cmdEditWorkstation, kLeft | kBottom);
  anchors_.add(IDC_frmPACSList_btnOk, kRight | kBottom);

  RECT frame{};
  GetWindowRect(window(), &frame);
  const int wider = static_cast<int>(wanted.cx - (now.right - now.left));
  const int higher = static_cast<int>(wanted.cy - (now.bottom - now.top));
  RECT workArea{};
  SystemParametersInfoW(SPI_GETWORKAREA, 0, &workArea, 0);
  const int width = std::min(static_cast<int>(frame.right - frame.left) + wider,
                             static_cast<int>(workArea.right - workArea.left));
  const int height = std::min(static_cast<int>(frame.bottom - frame.top) + higher,
                              static_cast<int>(workArea.bottom - workArea.top));
  const int left = workArea.left + (workArea.right - workArea.left - width) / 2;
  const int top = workArea.top + (workArea.bottom - workArea.top - height) / 2;
  SetWindowPos(window(), nullptr, left, top, width, height, SWP_NOZORDER | SWP_NOACTIVATE);
  smallest_ = {width * 2 / 3, height / 3};
  list_.stretchColumn(WorkstationRows::kRequestFile,
                      list_.columnWidth(WorkstationRows::kRequestFile));
}

void frmPACSList::onSize(int, int) { anchors_.apply(); }

void frmPACSList::onMinMaxInfo(MINMAXINFO& info) {
  if (smallest_.cx > 0) info.ptMinTrackSize = {smallest_.cx, smallest_.cy};
}

void frmPACSList::FillPCList() {
  try {
    const SiteAccess access(*config_);
    SetWorkstationsList(static_cast<WorkstationFilter>(filter_.selectedCode()));
    rows_.sortOrder = kDescending;
    SortListView(rows_, columnNumber(WorkstationRows::kName),
                 static_cast<std::int16_t>(SortType::Text));
    list_.refill();
    list_.showSortArrow(WorkstationRows::kName, true);
    SetCurrentWorkstation();
  } catch (...) {
    logFailure(L"The workstation list was not filled", describeCurrent());
    system::showMessage({.text = L"PACS interface configuration could not be loaded.  Please "
                                 L"contact Brannock & Company for technical support.",
                         .title = L"Corvane Search Configurations"});
  }
}

void frmPACSList::SetWorkstationsList(WorkstationFilter filter) {
  const std::shared_ptr<colWorkstation> workstations = config_->m_colWorkstation;
  const std::shared_ptr<colPACSConfiguration> configurations = config_->m_colPACSConfig;
  if (!workstations || !configurations) raise(ErrorNumber::ObjectNotSet);
  rows_.fill(*workstations, *configurations, filter);
  enable(IDC_frmPACSList_cmdEditWorkstation, rows_.rowCount() > 0);
  if (rows_.rowCount() > kDesignedRows) {
    list_.setColumnWidth(WorkstationRows::kConfiguration,
                         win32::pixelsFromTwips(kNarrowConfigurationTwips));
  }
}

void frmPACSList::SetCurrentWorkstation() {
  localComputer_ = system::computerName();
  if (rows_.rowCount() == 0) return;
  list_.select(rows_.rowOf(localComputer_).value_or(0));
}

void frmPACSList::SetItemFocus() {
  const std::optional<std::size_t> row = rows_.rowOf(chosenWorkstation_);
  if (row) list_.select(*row);
}

std::wstring frmPACSList::ReplaceNull(const std::optional<std::wstring>& value) {
  return value.value_or(L"N/A");
}

void frmPACSList::onCommand(int controlId, int code) {
  if (controlId == IDC_frmPACSList_cboPCList) {
    if (code == CBN_SELCHANGE) FillPCList();
    return;
  }
  if (code != BN_CLICKED) return;
  switch (controlId) {
    case IDC_frmPACSList_cmdEditConfig:
      return editConfiguration();
    case IDC_frmPACSList_cmdEditWorkstation:
      return editWorkstation();
    case IDC_frmPACSList_btnOk:
      return closeAfter(&frmPACSList::saveAssignments);
    case IDCANCEL:
      return onClose();
    default:
      break;
  }
}

LRESULT frmPACSList::onNotify(NMHDR& header) {
  LRESULT result = 0;
  if (list_.answer(header, result)) return result;
  if (header.idFrom != IDC_frmPACSList_lvwPACSList) return 0;
  if (header.code == LVN_COLUMNCLICK) {
    sortByHeader(reinterpret_cast<const NMLISTVIEW&>(header).iSubItem);
  } else if (header.code == NM_DBLCLK &&
             reinterpret_cast<const NMITEMACTIVATE&>(header).iItem >= 0) {
    editWorkstation();
  }
  return 0;
}

void frmPACSList::sortByHeader(int column) {
  const std::optional<std::size_t> selected = list_.selectedRow();
  const std::wstring name(selected ? rows_.cell(*selected, WorkstationRows::kName) : L"");
  if (column == WorkstationRows::kConfiguration) {
    SortListView(rows_, columnNumber(WorkstationRows::kConfigID),
                 static_cast<std::int16_t>(SortType::WholeNumber));
  } else {
    SortListView(rows_, static_cast<std::int16_t>(column + 1),
                 static_cast<std::int16_t>(SortType::Text));
  }
  list_.showSortArrow(column, rows_.sortOrder == kAscending);
  list_.redraw();
  // The selection belongs to the workstation, not to the place in the list.
  if (selected) selectRowOf(name);
}

void frmPACSList::selectRowOf(const std::wstring& name) {
  list_.clearSelection();
  const std::optional<std::size_t> row = rows_.rowOf(name);
  if (row) list_.select(*row);
}

void frmPACSList::editConfiguration() {
  chosenWorkstation_ = L"0";
  std::int16_t configID = 0;
  if (const std::optional<std::size_t> row = list_.selectedRow()) {
    chosenWorkstation_ = rows_.cell(*row, WorkstationRows::kName);
    configID = configIDOf(*row);
  }
  settings_->ShowPACSSettings(configID);
}

void frmPACSList::editWorkstation() {
  const std::optional<std::size_t> row = list_.selectedRow();
  if (!row) return;
  chosenWorkstation_ = rows_.cell(*row, WorkstationRows::kName);
  assignment_->showPACSWorkStation(chosenWorkstation_, configIDOf(*row));
}

/// Of the workstation itself: a row that could not be refilled may be out of date.
std::int16_t frmPACSList::configIDOf(std::size_t row) const {
  const std::shared_ptr<colWorkstation> workstations = config_->m_colWorkstation;
  const auto workstation =
      workstations ? workstations->ColWorkStations->find(rows_.cell(row, WorkstationRows::kName))
                   : nullptr;
  return workstation ? workstation->configID : rows_.configIDOf(row);
}

void frmPACSList::onClose() { closeAfter(&frmPACSList::saveOrGiveUp); }

void frmPACSList::closeAfter(bool (frmPACSList::*save)()) {
  if (closing_) return;
  closing_ = true;
  const ScopeExit done([this] { closing_ = false; });
  if ((this->*save)()) closeEditorsAndUnload();
  if (isCreated() && isOutOfDate()) refillAsItWas();
}

/// Without this way out a database that refuses the assignments would hold the host for ever.
bool frmPACSList::saveOrGiveUp() {
  try {
    return saveAssignments();
  } catch (...) {
    win32::reportRunTimeError(describeCurrent());
    return closeWithoutSaving();
  }
}

bool frmPACSList::closeWithoutSaving() {
  return system::showMessage({.text = L"The workstation assignments could not be saved. Close "
                                      L"without saving them?",
                              .buttons = system::Buttons::YesNo,
                              .defaultAnswer = system::Answer::No}) == system::Answer::Yes;
}

/// False when the administrator stays to settle what somebody else has assigned.
bool frmPACSList::saveAssignments() {
  // A host may put another collection in its place while a question waits.
  const std::shared_ptr<colWorkstation> workstations = config_->m_colWorkstation;
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

/// Whether a row shows another configuration than its workstation has by now.
bool frmPACSList::isOutOfDate() const {
  for (std::size_t row = 0; row < rows_.rowCount(); ++row) {
    if (rows_.configIDOf(row) != configIDOf(row)) return true;
  }
  return false;
}

/// With what somebody else assigned meanwhile; the selected workstation stays the same.
void frmPACSList::refillAsItWas() {
  const std::optional<std::size_t> selected = list_.selectedRow();
  const std::wstring name(selected ? rows_.cell(*selected, WorkstationRows::kName) : L"");
  FillPCList();
  if (selected && rows_.rowOf(name)) list_.select(*rows_.rowOf(name));
}

std::vector<AssignmentConflict> frmPACSList::saveShowingProgress(
    const colWorkstation& workstations, const std::vector<AssignmentConflict>& overruled) {
  const SiteAccess access(*config_);
  ProgressWindow progress(window(), L"Saving the workstation assignments...");
  const ScopeExit forgetInput([&] {
    if (progress.isVisible()) win32::dropInput(window());
  });
  return tlpacscfg::saveAssignments(workstations, overruled,
                                    [&](std::size_t done, std::size_t total) {
                                      try {
                                        progress.update(done, total);
                                      } catch (...) {
                                        // It is shown for the user's sake only.
                                      }
                                    });
}

system::Answer frmPACSList::askWhoseAssignments(
    const std::vector<AssignmentConflict>& conflicts) const {
  const std::shared_ptr<colPACSConfiguration> known = config_->m_colPACSConfig;
  return system::showMessage({.text = conflictQuestion(conflicts, known.get()),
                              .buttons = system::Buttons::YesNoCancel,
                              .defaultAnswer = system::Answer::Cancel});
}

void frmPACSList::closeEditorsAndUnload() {
  if (settings_->isOpen()) settings_->askToClose();
  if (assignment_->isOpen()) assignment_->askToClose();
  if (settings_->isOpen() || assignment_->isOpen()) return;
  destroy();
  config_->ConfigLoaded = false;
}

/// The session ends, perhaps: what is not saved is saved or asked about while there is time.
std::optional<INT_PTR> frmPACSList::onMessage(UINT message, WPARAM, LPARAM) {
  if (message != WM_QUERYENDSESSION) return std::nullopt;
  SetWindowLongPtrW(window(), DWLP_MSGRESULT, mayEnd() ? TRUE : FALSE);
  return TRUE;
}

bool frmPACSList::mayEnd() {
  if (closing_) return false;
  closing_ = true;
  const ScopeExit done([this] { closing_ = false; });
  return saveOrGiveUp() && settings_->mayLeave();
}

}  // namespace tlpacscfg
