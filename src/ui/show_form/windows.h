#pragma once

#include <memory>

#include "ui/assignment/view/assignment_window.h"
#include "ui/settings/view/settings_window.h"
#include "ui/workstation_list/view/workstation_list_window.h"

namespace tlpacscfg {

/// The three windows of one object and the connections between them.
class Windows {
 public:
  explicit Windows(const std::shared_ptr<clsConfig>& host);

 private:
  void refreshWorkstationList();
  bool closeEditors();

  frmPACSSettings settings_;
  frmWorkstationSettings assignment_;

 public:
  /// Owns the windows of the others, so it is destroyed first.
  frmPACSList list;
};

}  // namespace tlpacscfg
