#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "host/host_object.h"
#include "ui/assignment/values/configuration_choices.h"

namespace tlpacscfg {

/// The logic of the assignment dialog, without the window.
class AssignmentEditor {
 public:
  explicit AssignmentEditor(std::shared_ptr<clsConfig> host);

  void turnTo(const std::wstring& workstation, std::int16_t configID);
  /// Reads the choices again from the host's configurations.
  void LoadList();
  /// Assigns the configuration, 0 for none. It is written when the workstation list closes.
  void assign(std::int16_t configID);

  const std::wstring& workstation() const { return workstation_; }
  const std::vector<ConfigurationChoice>& choices() const { return choices_; }
  /// The index of the workstation's configuration among the choices; -1 if it no longer exists.
  int position() const { return positionOf(choices_, configID_); }

 private:
  std::shared_ptr<clsConfig> host_;
  std::wstring workstation_;
  std::int16_t configID_ = 0;
  std::vector<ConfigurationChoice> choices_;
};

}  // namespace tlpacscfg
