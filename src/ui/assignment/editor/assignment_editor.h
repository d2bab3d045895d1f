#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "host/config.h"
#include "ui/assignment/values/configuration_choices.h"

namespace tlpacscfg {

/// What the assignment dialog does, without the window.
class AssignmentEditor {
 public:
  explicit AssignmentEditor(std::shared_ptr<clsConfig> host);

  void turnTo(const std::wstring& workstation, std::int16_t configID);
  /// Takes the choices anew from the host's configurations.
  void LoadList();
  /// Assigns the configuration, 0 for none. It is written when the workstation list closes.
  void assign(std::int16_t configID);

  const std::wstring& workstation() const { return workstation_; }
  const std::vector<ConfigurationChoice>& choices() const { return choices_; }
  /// The place of the workstation's configuration among the choices; -1 when it is gone.
  int position() const { return positionOf(choices_, configID_); }

 private:
  std::shared_ptr<clsConfig> host_;
  std::wstring workstation_;
  std::int16_t configID_ = 0;
  std::vector<ConfigurationChoice> choices_;
};

}  // namespace tlpacscfg
