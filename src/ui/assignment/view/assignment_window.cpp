#include "ui/assignment/view/assignment_window.h"

#include <commctrl.h>

#include <utility>

#include "support/module_win.h"
#include "ui/resource.h"

namespace tlpacscfg {

frmWorkstationSettings::frmWorkstationSettings(std::shared_ptr<clsConfig> host, Callbacks callbacks)
    : Form(L"frmWorkstationSettings"), callbacks_(std::move(callbacks)), editor_(std::move(host)) {}

frmWorkstationSettings::~frmWorkstationSettings() { destroy(); }

void frmWorkstationSettings::showPACSWorkStation(const std::wstring& WorkStation,
                                                 std::int16_t configID) {
  editor_.turnTo(WorkStation, configID);
  if (!isCreated()) load(IDD_frmWorkstationSettings, callbacks_.owner());
  LoadList();
  ShowWindow(window(), SW_SHOW);
  win32::SetFormTopMost(window(), true);
  SetForegroundWindow(window());
  SetFocus(item(IDC_frmWorkstationSettings_cmbPACSConfig));
}

void frmWorkstationSettings::onInit() {
  tooltips_.attach(window());
  tooltips_.set(item(IDC_frmWorkstationSettings_cmbPACSConfig),
                L"A list of configurations that can be assigned to the workstation");
  tooltips_.set(item(IDC_frmWorkstationSettings_cmdOK), L"Save changes and exit");
  names_.attach(window());
  names_.setGroup(item(IDC_frmWorkstationSettings_SSPanel1), L"Assignment");
  configurations_ = win32::ComboBox(item(IDC_frmWorkstationSettings_cmbPACSConfig));
  setPicture();
}

void frmWorkstationSettings::setPicture() {
  using Icon = UniqueHandle<HICON, &DestroyIcon>;
  const int width = GetSystemMetrics(SM_CXSMICON);
  const int height = GetSystemMetrics(SM_CYSMICON);
  const Icon icon(static_cast<HICON>(LoadImageW(moduleInstance(), MAKEINTRESOURCEW(IDI_ok),
                                                IMAGE_ICON, width, height, LR_DEFAULTCOLOR)));
  picture_ = ImageList(ImageList_Create(width, height, ILC_COLOR32 | ILC_MASK, 1, 0));
  ImageList_AddIcon(picture_.get(), icon.get());
  BUTTON_IMAGELIST image{};
  image.himl = picture_.get();
  image.margin.left = width / 2;
  image.uAlign = BUTTON_IMAGELIST_ALIGN_LEFT;
  SendMessageW(item(IDC_frmWorkstationSettings_cmdOK), BCM_SETIMAGELIST, 0,
               reinterpret_cast<LPARAM>(&image));
}

void frmWorkstationSettings::LoadList() {
  editor_.LoadList();
  configurations_.clear();
  for (const ConfigurationChoice& choice : editor_.choices()) {
    configurations_.add(choice.text, choice.configID);
  }
  configurations_.selectPosition(editor_.position());
  configurations_.fitDroppedWidth();
  setText(IDC_frmWorkstationSettings_lblWorkstation, editor_.workstation());
}

void frmWorkstationSettings::onCommand(int controlId, int code) {
  if (code != BN_CLICKED) return;
  if (controlId == IDC_frmWorkstationSettings_cmdOK) {
    cmdOK();
  } else if (controlId == IDCANCEL) {
    onClose();
  }
}

void frmWorkstationSettings::cmdOK() {
  editor_.assign(configurations_.selectedCode());
  callbacks_.refreshWorkstationList();
  askToClose();
}

void frmWorkstationSettings::askToClose() { ShowWindow(window(), SW_HIDE); }

}  // namespace tlpacscfg
