#include "ui/settings/view/settings_window.h"

#include <algorithm>
#include <cwctype>
#include <utility>

#include "support/scope_exit.h"
#include "ui/assignment/assignment_window.h"
#include "ui/workstation_list/view/workstation_list_window.h"
#include "ui/resource.h"

namespace tlpacscfg {
namespace {

constexpr UINT kRowChosen = WM_APP + 1;
constexpr UINT kRulesMilliseconds = 50;

/// A change of these governs other fields.
constexpr Control kGoverning[] = {
    Control::chkResponseEnabled,
    Control::chkAborted,
    Control::chkEnableContextPolling,
    Control::chkCloseDictation,
    Control::cmbPollingOption,
    Control::cmbVendorType,
    Control::cmbResponseType,
    Control::cmbXMLConfugrationFile,
    Control::optMultiAccessionHandlingOption_0,
    Control::optMultiAccessionHandlingOption_1,
    Control::optMultiAccessionHandlingOption_2,
};

bool governs(int controlId) {
  return std::any_of(std::begin(kGoverning), std::end(kGoverning),
                     [&](Control control) { return design(control).id == controlId; });
}

bool isDown(int virtualKey) { return GetKeyState(virtualKey) < 0; }

/// The place of the page whose caption has the letter as its mnemonic.
std::optional<std::size_t> pageOfMnemonic(wchar_t letter) {
  for (std::size_t i = 0; i < pages().size(); ++i) {
    const std::wstring_view caption = pages()[i].caption;
    const wchar_t mnemonic = caption[caption.find(L'&') + 1];
    if (std::towlower(mnemonic) == std::towlower(letter)) return i;
  }
  return std::nullopt;
}

}  // namespace

frmPACSSettings::frmPACSSettings(frmPACSList& list, std::shared_ptr<clsConfig> config)
    : Form(L"frmPACSSettings"),
      list_(list),
      editor_(std::move(config), {.present =
                                      [this] {
                                        present();
                                        presentInFront();
                                      },
                                  .refreshWorkstationList =
                                      [this] {
                                        list_.FillPCList();
                                        list_.SetItemFocus();
                                      },
                                  .refreshAssignmentDialog =
                                      [this] {
                                        frmWorkstationSettings& dialog = list_.assignmentDialog();
                                        if (dialog.isOpen()) dialog.LoadList();
                                      }}) {}

frmPACSSettings::~frmPACSSettings() { destroy(); }

void frmPACSSettings::ShowPACSSettings(std::int16_t configID) {
  const bool wasOpen = isOpen();
  if (!wasOpen) {
    editor_.load();
    load(IDD_frmPACSSettings, list_.window());
  }
  try {
    runSettled([&] { editor_.ShowPACSSettings(configID); });
  } catch (...) {
    if (!wasOpen) destroy();
    throw;
  }
  presentInFront();
}

void frmPACSSettings::presentInFront() {
  ShowWindow(window(), SW_SHOW);
  SetForegroundWindow(window());
  presentFocus();
}

bool frmPACSSettings::mayLeave() {
  bool mayLeave = !isOpen();
  if (isOpen()) runSettled([&] { mayLeave = editor_.mayLeave(); });
  return mayLeave;
}

void frmPACSSettings::askToClose() {
  bool close = false;
  runSettled([&] { close = editor_.btnExit(); });
  if (close) destroy();
}

void frmPACSSettings::onDestroyed() {
  Form::onDestroyed();
  timerRuns_ = false;
  chosenRow_.reset();
  editor_.unload();
  if (!list_.isCreated()) return;
  // The list gives the focus back to the control that had it.
  SetForegroundWindow(list_.window());
  SetActiveWindow(list_.window());
}

void frmPACSSettings::runCommand(const std::function<void()>& command) {
  if (busy_) return;
  busy_ = true;
  const ScopeExit done([this] { busy_ = false; });
  readControls();
  try {
    command();
  } catch (...) {
    present();
    throw;
  }
  present();
}

/// What was changed just before the command counts with all its consequences.
void frmPACSSettings::runSettled(const std::function<void()>& command) {
  takeChosenRow();
  runCommand([&] {
    settleRules();
    command();
  });
}

void frmPACSSettings::settleRules() {
  if (!timerRuns_) return;
  stopRulesTimer();
  editor_.TmrFieldChange();
}

void frmPACSSettings::onCommand(int controlId, int code) {
  if (busy_) {
    // What another program sends while a remote client is waited for has its turn afterwards.
    if (code == BN_CLICKED && InSendMessage()) {
      PostMessageW(window(), WM_COMMAND, static_cast<WPARAM>(controlId), 0);
    }
    return;
  }
  if (code != BN_CLICKED && code != CBN_SELCHANGE) return;
  switch (controlId) {
    case IDCANCEL:
      return askToClose();
    case IDC_frmPACSSettings_btnNew:
      return runSettled([this] { editor_.btnNew(); });
    case IDC_frmPACSSettings_btnSave:
      return runSettled([this] { editor_.btnSave(); });
    case IDC_frmPACSSettings_btnDelete:
      return runSettled([this] { editor_.btnDelete(); });
    case IDC_frmPACSSettings_btnExit:
      return askToClose();
    case IDC_frmPACSSettings_chkUserLogon:
      return runCommand([this] { editor_.chkUserLogonClicked(); });
    default:
      // The tab stop of a group of options goes with the selected one.
      updateTabStops();
      if (governs(controlId)) startRulesTimer();
  }
}

void frmPACSSettings::onTimer(UINT_PTR) {
  // A command waits for an answer; the timer comes again.
  if (busy_) return;
  stopRulesTimer();
  runCommand([this] { editor_.TmrFieldChange(); });
}

void frmPACSSettings::startRulesTimer() {
  if (timerRuns_) return;
  timerRuns_ =
      SetTimer(window(), IDC_frmPACSSettings_TmrFieldChange, kRulesMilliseconds, nullptr) != 0;
}

void frmPACSSettings::stopRulesTimer() {
  KillTimer(window(), IDC_frmPACSSettings_TmrFieldChange);
  timerRuns_ = false;
}

LRESULT frmPACSSettings::onNotify(NMHDR& header) {
  LRESULT result = 0;
  if (configurations_.answer(header, result)) return result;
  if (busy_) return 0;
  if (header.idFrom == IDC_frmPACSSettings_SSPACSOptions && header.code == TCN_SELCHANGE) {
    showPage(static_cast<std::size_t>(TabCtrl_GetCurSel(header.hwndFrom)));
  }
  if (header.idFrom != IDC_frmPACSSettings_lvwConfigs) return 0;
  if (header.code == LVN_ITEMCHANGED) {
    const auto& change = reinterpret_cast<const NMLISTVIEW&>(header);
    const bool selected = (change.uNewState & ~change.uOldState & LVIS_SELECTED) != 0;
    if (selected && change.iItem >= 0) chooseRow(change.iItem);
  } else if (header.code == NM_CLICK) {
    // A click on the selected row is a click on a row too.
    const int row = reinterpret_cast<const NMITEMACTIVATE&>(header).iItem;
    if (row >= 0 && configurations_.rowBeforeInput() == static_cast<std::size_t>(row)) {
      chooseRow(row);
    }
  }
  return 0;
}

/// The list is in the middle of its own work: the row is shown, and a question asked, afterwards.
void frmPACSSettings::chooseRow(int row) {
  chosenRow_ = static_cast<std::size_t>(row);
  PostMessageW(window(), kRowChosen, 0, 0);
}

void frmPACSSettings::takeChosenRow() {
  if (busy_ || !chosenRow_) return;
  const std::size_t row = *std::exchange(chosenRow_, std::nullopt);
  if (row >= editor_.rows.rowCount()) return;
  runCommand([&] {
    settleRules();
    editor_.rowClicked(row);
  });
}

std::optional<INT_PTR> frmPACSSettings::onMessage(UINT message, WPARAM, LPARAM) {
  if (message != kRowChosen) return std::nullopt;
  takeChosenRow();
  return TRUE;
}

bool frmPACSSettings::onKey(const MSG& message) {
  if (message.message == WM_SYSCHAR) {
    const auto page = pageOfMnemonic(static_cast<wchar_t>(message.wParam));
    if (!page) return false;
    showPage(*page);
    moveFocus(GetNextDlgTabItem(pages_[*page]->window(), nullptr, FALSE));
    return true;
  }
  if (message.message != WM_KEYDOWN || !isDown(VK_CONTROL)) return false;
  switch (message.wParam) {
    case VK_TAB:
      turnPage(isDown(VK_SHIFT) ? -1 : 1);
      return true;
    case VK_NEXT:
      turnPage(1);
      return true;
    case VK_PRIOR:
      turnPage(-1);
      return true;
    default:
      return false;
  }
}

void frmPACSSettings::turnPage(int step) {
  const bool focusInside = IsChild(pages_[page_]->window(), GetFocus()) != FALSE;
  const std::size_t count = pages_.size();
  showPage((page_ + count + static_cast<std::size_t>(step + static_cast<int>(count))) % count);
  if (focusInside) moveFocus(GetNextDlgTabItem(pages_[page_]->window(), nullptr, FALSE));
}

}  // namespace tlpacscfg
