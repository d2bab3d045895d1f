#include "ui/assignment/assignment_window.h"

#include <commctrl.h>

#include <utility>

#include "support/runtime_error.h"
#include "support/text.h"
#include "ui/workstation_list/view/workstation_list_window.h"
#include "ui/resource.h"
#include "ui/win32/module.h"

namespace tlpacscfg {

frmWorkstationSettings::frmWorkstationSettings(frmPACSList& list, std::shared_ptr<clsConfig> config)
    : Form(L"frmWorkstationSettings"), list_(list), config_(std::move(config)) {}

frmWorkstationSettings::~frmWorkstationSettings() { destroy(); }

void frmWorkstationSettings::showPACSWorkStation(const std::wstring& WorkStation,
                                                 std::int16_t configID) {
  workstation_ = WorkStation;
  configID_ = configID;
  if (!isCreated()) load(IDD_frmWorkstationSettings, list_.window());
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
  configurations_ = win32::ComboBox(item(IDC_frmWorkstationSettings_cmbPACSConfig));
  setPicture();
}

void frmWorkstationSettings::setPicture() {
  using Icon = UniqueHandle<HICON, &DestroyIcon>;
  const int width = GetSystemMetrics(SM_CXSMICON);
  const int height = GetSystemMetrics(SM_CYSMICON);
  const Icon icon(static_cast<HICON>(LoadImageW(win32::moduleInstance(), MAKEINTRESOURCEW(IDI_ok),
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
  if (!config_->m_colPACSConfig) raise(ErrorNumber::ObjectNotSet);
  configurations_.clear();
  configurations_.add(L"<None>", 0);
  int selected = configID_ == 0 ? 0 : -1;
  for (const auto& configuration : config_->m_colPACSConfig->ColPACSConfigs->items()) {
    const std::int16_t id = configuration->configID;
    if (id <= 0) continue;
    configurations_.add(decimal(id) + L" - " + configuration->Description, id);
    if (id == configID_) selected = configurations_.count() - 1;
  }
  configurations_.selectPosition(selected);
  configurations_.fitDroppedWidth();
  setText(IDC_frmWorkstationSettings_lblWorkstation, workstation_);
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
  const std::int16_t chosen = configurations_.selectedCode();
  if (!config_->m_colWorkstation) raise(ErrorNumber::ObjectNotSet);
  const colWorkstation& workstations = *config_->m_colWorkstation;
  const auto record = workstations.Item(
      workstations.GetItemNumber(text(IDC_frmWorkstationSettings_lblWorkstation)));
  if (!record) raise(ErrorNumber::ObjectNotSet);
  record->configID = chosen;
  list_.FillPCList();
  list_.SetItemFocus();
  askToClose();
}

void frmWorkstationSettings::askToClose() { ShowWindow(window(), SW_HIDE); }

}  // namespace tlpacscfg
