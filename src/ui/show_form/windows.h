#pragma once

#include <memory>

#include "ui/assignment/view/assignment_window.h"
#include "ui/settings/view/settings_window.h"
#include "ui/workstation_list/view/workstation_list_window.h"

namespace tlpacscfg {

/// The three windows of one object, which do not know each other, and what each tells the others.
class Windows {
 public:
  explicit Windows(std::shared_ptr<clsConfig> host);

 private:
  void refreshWorkstationList();
  bool closeEditors();

  frmPACSSettings settings_;
  frmWorkstationSettings assignment_;

 public:
  /// It owns the others' windows, so it goes first.
  frmPACSList list;
};

}  // namespace tlpacscfg
