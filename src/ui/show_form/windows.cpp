#include "ui/show_form/windows.h"

namespace tlpacscfg {

Windows::Windows(const std::shared_ptr<clsConfig>& host)
    : settings_(host, {.owner = [this] { return list.window(); },
                       .refreshWorkstationList = [this] { refreshWorkstationList(); },
                       .refreshAssignmentDialog =
                           [this] {
                             if (assignment_.isOpen()) assignment_.LoadList();
                           }}),
      assignment_(host, {.owner = [this] { return list.window(); },
                         .refreshWorkstationList = [this] { refreshWorkstationList(); }}),
      list(host, {.editConfiguration =
                      [this](std::int16_t configID) { settings_.ShowPACSSettings(configID); },
                  .editWorkstation =
                      [this](const std::wstring& workstation, std::int16_t configID) {
                        assignment_.showPACSWorkStation(workstation, configID);
                      },
                  .closeEditors = [this] { return closeEditors(); },
                  .mayLeaveSettings = [this] { return settings_.mayLeave(); }}) {}

void Windows::refreshWorkstationList() {
  list.FillPCList();
  list.SetItemFocus();
}

bool Windows::closeEditors() {
  if (settings_.isOpen()) settings_.askToClose();
  if (assignment_.isOpen()) assignment_.askToClose();
  return !settings_.isOpen() && !assignment_.isOpen();
}

}  // namespace tlpacscfg
