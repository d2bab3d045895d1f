#include <windows.h>

#include <stdexcept>

#include "benchmarks/bare/odbc.h"
#include "benchmarks/collector.h"
#include "benchmarks/measurements.h"
#include "benchmarks/measuring.h"
#include "support/text.h"
#include "ui/workstation_list/view/workstation_list_window.h"
#include "ui/resource.h"

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

/// A control of any window of this thread, on whatever page.
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

void draw() {
  MSG message;
  while (PeekMessageW(&message, nullptr, WM_PAINT, WM_PAINT, PM_REMOVE)) {
    DispatchMessageW(&message);
  }
}

void open() {
  click(IDC_frmPACSList_cmdEditConfig);
  draw();
  if (control(IDC_frmPACSSettings_btnExit) == nullptr) {
    throw std::runtime_error("The settings window did not open.");
  }
}

void close() {
  if (control(IDC_frmPACSSettings_btnExit) != nullptr) click(IDC_frmPACSSettings_btnExit);
}

/// The statement that saves one configuration, without the mark that follows.
std::wstring savingStatement(const clsConfig& config) {
  return textsExecutedBy([&] { config.m_colPACSConfig->Item(2)->SaveConfiguration(); }).front();
}

}  // namespace

void measureSettingsWindow(const Site& site, int repetitions) {
  const std::shared_ptr<clsConfig> config = initialised(site);
  frmPACSList window(config);
  window.Show();
  for (int i = 0; i < repetitions; ++i) {
    close();
    record("opening-settings", site.workstations, Series::Component, secondsOf(open));
  }

  const std::wstring update = savingStatement(*config);
  bare::Connection connection(site.connectString());
  int edits = 0;
  compare("saving-configuration", site, repetitions,
          {[] {
             click(IDC_frmPACSSettings_btnSave);
             draw();
           },
           [&] {
             const std::wstring description = L"Edited " + decimal(++edits);
             SetWindowTextW(control(IDC_frmPACSSettings_txtDescription), description.c_str());
           }},
          {[&] { connection.execute(update); }});
  close();
  window.destroy();
  disconnect();
}

}  // namespace tlpacscfg::bench
