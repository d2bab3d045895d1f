#include "ui/assignment/editor/assignment_editor.h"

#include <utility>

#include "support/runtime_error.h"

namespace tlpacscfg {

AssignmentEditor::AssignmentEditor(std::shared_ptr<clsConfig> host) : host_(std::move(host)) {}

void AssignmentEditor::turnTo(const std::wstring& workstation, std::int16_t configID) {
  workstation_ = workstation;
  configID_ = configID;
}

void AssignmentEditor::LoadList() {
  if (!host_->m_colPACSConfig) raise(ErrorNumber::ObjectNotSet);
  choices_ = configurationChoices(*host_->m_colPACSConfig);
}

void AssignmentEditor::assign(std::int16_t configID) {
  if (!host_->m_colWorkstation) raise(ErrorNumber::ObjectNotSet);
  const colWorkstation& workstations = *host_->m_colWorkstation;
  const auto record = workstations.Item(workstations.GetItemNumber(workstation_));
  if (!record) raise(ErrorNumber::ObjectNotSet);
  record->configID = configID;
}

}  // namespace tlpacscfg
