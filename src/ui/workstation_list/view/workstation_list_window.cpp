#include "ui/workstation_list/view/workstation_list_window.h"

#include <algorithm>
#include <utility>

#include "support/scope_exit.h"
#include "ui/resource.h"
#include "ui/win32/module.h"
#include "ui/workstation_list/view/progress_window.h"

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

/// The number of rows that fit. With one more there is a scroll bar, and the third column is
/// narrowed for it.
constexpr std::size_t kDesignedRows = 24;
constexpr int kNarrowConfigurationTwips = 1950;

/// Shows the progress of a save while it exists. Input made meanwhile is discarded.
struct SaveProgress {
  explicit SaveProgress(HWND owner)
      : list(owner), window(owner, L"Saving the workstation assignments...") {}
  ~SaveProgress() {
    if (window.isVisible()) win32::dropInput(list);
  }
  SaveProgress(const SaveProgress&) = delete;
  SaveProgress& operator=(const SaveProgress&) = delete;

  HWND list;
  ProgressWindow window;
};

}  // namespace

frmPACSList::frmPACSList(std::shared_ptr<clsConfig> host, Callbacks callbacks)
    : Form(kName),
      editor_(std::move(host), [this] { return startProgress(); }),
      callbacks_(std::move(callbacks)) {}

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

  list_.attach(item(IDC_frmPACSList_lvwPACSList), editor_.rows, WorkstationRows::kName);
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
  // Rounding may leave the narrowed column a pixel short of the width of a scroll bar.
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
  RECT client{};
  GetClientRect(window(), &client);
  const SIZE designed = anchors_.designedSize();
  RECT workArea{};
  SystemParametersInfoW(SPI_GETWORKAREA, 0, &workArea, 0);
  const LONG wider = designed.cx - client.right + wanted.cx - (now.right - now.left);
  const LONG higher = designed.cy - client.bottom + wanted.cy - (now.bottom - now.top);
  const LONG width = std::min(frame.right - frame.left + wider, workArea.right - workArea.left);
  const LONG height = std::min(frame.bottom - frame.top + higher, workArea.bottom - workArea.top);
  const LONG left = workArea.left + (workArea.right - workArea.left - width) / 2;
  const LONG top = workArea.top + (workArea.bottom - workArea.top - height) / 2;
  SetWindowPos(window(), nullptr, left, top, width, height, SWP_NOZORDER | SWP_NOACTIVATE);
  minSize_ = {width * 2 / 3, height / 3};
  list_.stretchColumn(WorkstationRows::kRequestFile,
                      list_.columnWidth(WorkstationRows::kRequestFile));
}

void frmPACSList::onSize(int, int) { anchors_.apply(); }

void frmPACSList::onMinMaxInfo(MINMAXINFO& info) {
  if (minSize_.cx > 0) info.ptMinTrackSize = {minSize_.cx, minSize_.cy};
}

void frmPACSList::FillPCList() {
  editor_.filter = static_cast<WorkstationFilter>(filter_.selectedCode());
  if (editor_.FillPCList()) present();
}

void frmPACSList::present() {
  const std::size_t count = editor_.rows.rowCount();
  enable(IDC_frmPACSList_cmdEditWorkstation, count > 0);
  if (count > kDesignedRows) {
    list_.setColumnWidth(WorkstationRows::kConfiguration,
                         win32::pixelsFromTwips(kNarrowConfigurationTwips));
  }
  list_.refill();
  list_.showSortArrow(WorkstationRows::kName, true);
  presentSelection();
}

void frmPACSList::presentSelection() {
  if (editor_.selectedRow) list_.select(*editor_.selectedRow);
}

void frmPACSList::SetItemFocus() {
  readSelection();
  editor_.SetItemFocus();
  presentSelection();
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
      return closeAfter(&WorkstationListEditor::saveAssignments);
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
  readSelection();
  editor_.headerClicked(static_cast<std::size_t>(column));
  list_.showSortArrow(column, editor_.rows.sortOrder == kAscending);
  list_.redraw();
  // The selection belongs to the workstation, not to the position in the list.
  list_.clearSelection();
  presentSelection();
}

void frmPACSList::editConfiguration() {
  readSelection();
  callbacks_.editConfiguration(editor_.cmdEditConfig());
}

void frmPACSList::editWorkstation() {
  readSelection();
  const auto chosen = editor_.cmdEditWorkstation();
  if (chosen) callbacks_.editWorkstation(chosen->workstation, chosen->configID);
}

void frmPACSList::onClose() { closeAfter(&WorkstationListEditor::saveOrAbandon); }

void frmPACSList::closeAfter(bool (WorkstationListEditor::*save)()) {
  if (closing_) return;
  closing_ = true;
  const ScopeExit done([this] { closing_ = false; });
  if ((editor_.*save)() && callbacks_.closeEditors()) {
    destroy();
    editor_.unload();
  }
  if (!isCreated() || !editor_.isOutOfDate()) return;
  readSelection();
  if (editor_.refill()) present();
}

WorkstationListEditor::Progress frmPACSList::startProgress() const {
  return [shown = std::make_shared<SaveProgress>(window())](std::size_t done, std::size_t total) {
    shown->window.update(done, total);
  };
}

/// Whether the session may end: saves or asks about unsaved work first.
std::optional<INT_PTR> frmPACSList::onMessage(UINT message, WPARAM, LPARAM) {
  if (message != WM_QUERYENDSESSION) return std::nullopt;
  SetWindowLongPtrW(window(), DWLP_MSGRESULT, mayEnd() ? TRUE : FALSE);
  return TRUE;
}

bool frmPACSList::mayEnd() {
  if (closing_) return false;
  closing_ = true;
  const ScopeExit done([this] { closing_ = false; });
  return editor_.saveOrAbandon() && callbacks_.mayLeaveSettings();
}

}  // namespace tlpacscfg
