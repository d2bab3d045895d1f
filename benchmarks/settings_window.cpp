#include <windows.h>
#include <commctrl.h>

#include <optional>
#include <stdexcept>

#include "benchmarks/measurements.h"
#include "benchmarks/measuring.h"
#include "support/text.h"
#include "ui/resource.h"
#include "ui/show_form/windows.h"

namespace tlpacscfg::bench {
namespace {

struct Search {
  int controlId;
  HWND found = nullptr;
};

BOOL CALLBACK visit(HWND window, LPARAM parameter) {
  auto& search = *reinterpret_cast<Search*>(parameter);
  if (GetDlgCtrlID(window) == search.controlId) search.found = window;
  return search.found == nullptr;
}

BOOL CALLBACK visitTopLevel(HWND window, LPARAM parameter) {
  EnumChildWindows(window, &visit, parameter);
  return reinterpret_cast<Search*>(parameter)->found == nullptr;
}

/// A control of any window of this thread, on any page.
HWND control(int controlId) {
  Search search{controlId};
  EnumThreadWindows(GetCurrentThreadId(), &visitTopLevel, reinterpret_cast<LPARAM>(&search));
  return search.found;
}

void click(int controlId) {
  const HWND button = control(controlId);
  if (button == nullptr) throw std::runtime_error("A button is missing.");
  SendMessageW(button, BM_CLICK, 0, 0);
}

void processMessages() {
  MSG message;
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
}

/// The settings window with the list window that opened it.
class SettingsWindow {
 public:
  explicit SettingsWindow(const std::shared_ptr<clsConfig>& config) : windows_(config) {
    windows_.list.Show();
    processMessages();
  }
  ~SettingsWindow() {
    if (control(IDC_frmPACSSettings_btnExit) != nullptr) click(IDC_frmPACSSettings_btnExit);
    windows_.list.destroy();
  }
  SettingsWindow(const SettingsWindow&) = delete;
  SettingsWindow& operator=(const SettingsWindow&) = delete;

  static void open() {
    click(IDC_frmPACSList_cmdEditConfig);
    processMessages();
    if (control(IDC_frmPACSSettings_btnExit) == nullptr) {
      throw std::runtime_error("The settings window did not open.");
    }
  }

  static void turnTo(int row) {
    const HWND list = control(IDC_frmPACSSettings_lvwConfigs);
    ListView_SetItemState(list, row, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
    processMessages();
  }

  static void describe(const std::wstring& text) {
    SetWindowTextW(control(IDC_frmPACSSettings_txtDescription), text.c_str());
    processMessages();
  }

  static void save() {
    click(IDC_frmPACSSettings_btnSave);
    processMessages();
  }

 private:
  Windows windows_;
};

void measureOpening(const Site& site, const std::shared_ptr<clsConfig>& config,
                    const std::shared_ptr<clsConfig>& smallest) {
  std::optional<SettingsWindow> window;
  const auto opening = [&window](const std::shared_ptr<clsConfig>& of) {
    return Timed{&SettingsWindow::open, [&window, &of] {
                   window.reset();
                   window.emplace(of);
                 }};
  };
  compare("opening-settings", site.workstations, site.repetitions, opening(config),
          opening(smallest));
}

}  // namespace

void measureSettingsWindow(const Site& site, const Site& smallest) {
  const std::shared_ptr<clsConfig> few = initialised(smallest);
  const std::shared_ptr<clsConfig> config = initialised(site);
  measureOpening(site, config, few);

  SettingsWindow window(config);
  SettingsWindow::open();
  int row = 0;
  measure("turning", site.workstations, site.repetitions,
          {[&row] { SettingsWindow::turnTo(++row); }});
  int edits = 0;
  measure("saving-configuration", site.workstations, site.repetitions,
          {&SettingsWindow::save,
           [&edits] { SettingsWindow::describe(L"Edited " + decimal(++edits)); }});
  disconnect();
}

}  // namespace tlpacscfg::bench
