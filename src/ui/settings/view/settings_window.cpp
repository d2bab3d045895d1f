#include "ui/settings/view/settings_window.h"

#include <algorithm>
#include <cwctype>
#include <utility>

#include "support/scope_exit.h"
#include "ui/resource.h"
#include "ui/settings/values/settings_rules.h"
#include "ui/settings/view/control_ids.h"

namespace tlpacscfg {
namespace {

constexpr UINT kRowChosen = WM_APP + 1;
constexpr UINT kRulesMilliseconds = 50;

bool governs(int controlId) {
  return std::ranges::find(governingControls(), controlId, &idOf) != governingControls().end();
}

bool isDown(int virtualKey) { return GetKeyState(virtualKey) < 0; }

/// The index of the page whose caption has the letter as its mnemonic.
std::optional<std::size_t> pageOfMnemonic(wchar_t letter) {
  for (std::size_t i = 0; i < pages().size(); ++i) {
    const std::wstring_view caption = pages()[i].caption;
    const wchar_t mnemonic = caption[caption.find(L'&') + 1];
    if (std::towlower(mnemonic) == std::towlower(letter)) return i;
  }
  return std::nullopt;
}

}  // namespace

frmPACSSettings::frmPACSSettings(std::shared_ptr<clsConfig> host, Callbacks callbacks)
    : Form(L"frmPACSSettings"),
      owner_(std::move(callbacks.owner)),
      editor_(std::move(host),
              {.present =
                   [this] {
                     present();
                     presentInFront();
                   },
               .refreshWorkstationList = std::move(callbacks.refreshWorkstationList),
               .refreshAssignmentDialog = std::move(callbacks.refreshAssignmentDialog)}) {}

frmPACSSettings::~frmPACSSettings() { destroy(); }

void frmPACSSettings::ShowPACSSettings(std::int16_t configID) {
  const bool wasOpen = isOpen();
  if (!wasOpen) {
    editor_.load();
    load(IDD_frmPACSSettings, owner_());
  }
  try {
    runWithRulesApplied([&] { editor_.ShowPACSSettings(configID); });
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
  if (isOpen()) runWithRulesApplied([&] { mayLeave = editor_.mayLeave(); });
  return mayLeave;
}

void frmPACSSettings::askToClose() {
  bool close = false;
  runWithRulesApplied([&] { close = editor_.btnExit(); });
  if (close) destroy();
}

void frmPACSSettings::onDestroyed() {
  Form::onDestroyed();
  timerRuns_ = false;
  chosenRow_.reset();
  editor_.unload();
  const HWND owner = owner_();
  if (!owner) return;
  // The owner restores the focus to the control that had it.
  SetForegroundWindow(owner);
  SetActiveWindow(owner);
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

/// Applies the rules of a change made just before the command first.
void frmPACSSettings::runWithRulesApplied(const std::function<void()>& command) {
  takeChosenRow();
  runCommand([&] {
    applyPendingRules();
    command();
  });
}

void frmPACSSettings::applyPendingRules() {
  if (!timerRuns_) return;
  stopRulesTimer();
  editor_.TmrFieldChange();
}

void frmPACSSettings::onCommand(int controlId, int code) {
  if (busy_) {
    // A click that another program sends during a remote call is handled afterwards.
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
      return runWithRulesApplied([this] { editor_.btnNew(); });
    case IDC_frmPACSSettings_btnSave:
      return runWithRulesApplied([this] { editor_.btnSave(); });
    case IDC_frmPACSSettings_btnDelete:
      return runWithRulesApplied([this] { editor_.btnDelete(); });
    case IDC_frmPACSSettings_btnExit:
      return askToClose();
    case IDC_frmPACSSettings_chkUserLogon:
      return runCommand([this] { editor_.chkUserLogonClicked(); });
    default:
      // The tab stop of a group of options follows the selected one.
      updateTabStops();
      if (governs(controlId)) startRulesTimer();
  }
}

void frmPACSSettings::onTimer(UINT_PTR) {
  // The timer continues while a command waits for an answer.
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

/// The list is processing the click: the row is shown, and a question asked, afterwards.
void frmPACSSettings::chooseRow(int row) {
  chosenRow_ = static_cast<std::size_t>(row);
  PostMessageW(window(), kRowChosen, 0, 0);
}

void frmPACSSettings::takeChosenRow() {
  if (busy_ || !chosenRow_) return;
  const std::size_t row = *std::exchange(chosenRow_, std::nullopt);
  if (row >= editor_.rows.rowCount()) return;
  runCommand([&] {
    applyPendingRules();
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
