#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "host/host_object.h"
#include "support/handle_win.h"
#include "ui/assignment/editor/assignment_editor.h"
#include "ui/win32/accessible_names.h"
#include "ui/win32/combo_box.h"
#include "ui/win32/form.h"
#include "ui/win32/tooltips.h"

namespace tlpacscfg {

/// The dialog that assigns a configuration to one workstation. The assignment is written when the
/// list window closes.
class frmWorkstationSettings : public win32::Form {
 public:
  struct Callbacks {
    std::function<HWND()> owner;
    std::function<void()> refreshWorkstationList;
  };

  /// `owner` is called when the dialog is shown for the first time.
  frmWorkstationSettings(std::shared_ptr<clsConfig> host, Callbacks callbacks);
  ~frmWorkstationSettings() override;

  /// One dialog serves all workstations: if already shown, it switches to this one.
  void showPACSWorkStation(const std::wstring& WorkStation, std::int16_t configID);

  /// Refills the list of configurations. A configuration that was deleted has no selected entry.
  void LoadList();

  /// True from being shown until it is hidden.
  bool isOpen() const { return isVisible(); }

  /// Hides the dialog without a change.
  void askToClose();

 private:
  using ImageList = UniqueHandle<HIMAGELIST, &ImageList_Destroy>;

  void onInit() override;
  void onCommand(int controlId, int code) override;
  void onClose() override { askToClose(); }

  void setPicture();
  void cmdOK();

  Callbacks callbacks_;
  AssignmentEditor editor_;
  win32::ComboBox configurations_;
  win32::Tooltips tooltips_;
  win32::AccessibleNames names_;
  ImageList picture_;
};

}  // namespace tlpacscfg
