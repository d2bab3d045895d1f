#include "ui/model/settings_editor.h"

#include <utility>

#include "data/database.h"
#include "support/doors.h"
#include "support/runtime_error.h"
#include "ui/model/settings_binding.h"
#include "ui/model/settings_files.h"
#include "ui/model/settings_rules.h"
#include "ui/model/settings_validation.h"

namespace tlpacscfg {
namespace {

constexpr std::int16_t kDefaultConfiguration = 1;

void notice(const std::wstring& text) { doors::showMessage({.text = text}); }

doors::Answer ask(const std::wstring& question, doors::Buttons buttons) {
  return doors::showMessage({.text = question, .buttons = buttons});
}

}  // namespace

SettingsEditor::SettingsEditor(std::shared_ptr<clsConfig> config, Surroundings surroundings)
    : config_(std::move(config)), surroundings_(std::move(surroundings)) {}

void SettingsEditor::load() {
  configurations_ = config_->m_colPACSConfig ? config_->m_colPACSConfig->deepCopy()
                                             : std::make_shared<colPACSConfiguration>();
  form = SettingsForm(promptXmlFiles());
  fillList();
  firstTabWanted = true;
}

void SettingsEditor::unload() {
  configurations_.reset();
  rows.clear();
  selectedRow.reset();
  deleteEnabled = true;
  newConfiguration_ = false;
  currentID_ = 0;
}

void SettingsEditor::ShowPACSSettings(std::int16_t configID) {
  const std::int16_t wanted = configID == 0 ? kDefaultConfiguration : configID;
  // A configuration that is gone shows nothing new: the one on the screen stays the current one.
  const bool oneIsShown = currentID_ > 0 && recordOf(currentID_);
  if (!oneIsShown || recordOf(wanted)) currentID_ = wanted;
  if (configurations_->GetNextConfigID() > 1) {
    show(wanted);
    selectCurrent();
  } else {
    InitControls();
  }
  rulesWanted = true;
  descriptionFocusWanted = !newConfiguration_;
}

void SettingsEditor::InitControls() {
  clearToDefaults(form);
  newConfiguration_ = true;
  selectedRow.reset();
  firstTabWanted = true;
  // The new values govern other fields, as if they had been chosen one by one.
  rulesWanted = true;
}

void SettingsEditor::show(std::int16_t configID) {
  if (!recordOf(configID)) return;
  currentID_ = configID;
  newConfiguration_ = false;
  configurations_->SetCurrentConfig(configID);
  form[Control::txtDescription].enabled = configID != kDefaultConfiguration;
  const auto message = showRecord(form, *configurations_->CurrentPACSConfig);
  rulesWanted = true;
  if (message) notice(*message);
}

colPACSConfiguration::Pointer SettingsEditor::recordOf(std::int16_t configID) const {
  return configurations_->Item(configurations_->GetItemNumber(configID));
}

void SettingsEditor::fillList() {
  rows.fill(*configurations_);
  rowsChanged = true;
  selectedRow.reset();
}

void SettingsEditor::selectCurrent() {
  selectedRow = rows.rowOfKey(ConfigurationRows::keyOf(currentID_));
}

/// A new configuration has no row.
void SettingsEditor::selectEdited() {
  if (newConfiguration_) {
    selectedRow.reset();
  } else {
    selectCurrent();
  }
}

void SettingsEditor::handOver() {
  config_->m_colPACSConfig = configurations_->deepCopy();
  surroundings_.refreshWorkstationList();
}

void SettingsEditor::saveNew() {
  const auto record = std::make_shared<clsPACSConfiguration>();
  record->configID = configurations_->GetNextConfigID();
  if (recordOf(record->configID)) raise(ErrorNumber::DuplicateKey);
  readBack(form, *record);
  record->ExistingConfig = kFalse;
  requireExecution([&] { record->SaveConfiguration(); });
  newConfiguration_ = false;
  currentID_ = record->configID;
  configurations_->AddCurrenttoCollection(record);
}

void SettingsEditor::saveExisting() {
  const auto record = recordOf(currentID_);
  if (!record) raise(ErrorNumber::ObjectNotSet);
  if (PACSValueTheSame(form, *record)) return;
  const clsPACSConfiguration before = *record;
  readBack(form, *record);
  record->ExistingConfig = kTrue;
  record->Changed = kTrue;
  try {
    requireExecution([&] { record->SaveConfiguration(); });
  } catch (...) {
    // What was not stored still counts as a change, so that it can be saved once more.
    *record = before;
    throw;
  }
}

void SettingsEditor::save() {
  if (newConfiguration_) {
    saveNew();
  } else {
    saveExisting();
  }
  handOver();
}

void SettingsEditor::remove(std::int16_t configID) {
  const auto before = configurations_->deepCopy();
  try {
    requireExecution([&] { configurations_->RemoveConfig(configID); });
  } catch (...) {
    // What was not deleted is still there, at its place.
    configurations_ = before;
    configurations_->SetCurrentConfig(currentID_);
    throw;
  }
}

bool SettingsEditor::validate() {
  const Validation result = ValidData(form, *configurations_, currentID_);
  if (result.resetPort) form[Control::txtPort].text = L"0";
  for (const std::wstring& message : result.messages) notice(message);
  return result.messages.empty();
}

void SettingsEditor::btnSave() {
  if (!validate()) return;
  save();
  fillList();
  selectCurrent();
  deleteEnabled = true;
}

bool SettingsEditor::CheckForSave(std::int16_t configID) {
  if (configID <= 0 && !newConfiguration_) return true;
  const auto record = recordOf(configID);
  if (!newConfiguration_ && (!record || PACSValueTheSame(form, *record))) return true;
  doors::Answer answer = doors::Answer::No;
  if (!newConfiguration_) {
    answer =
        ask(L"Configuration has not been saved. Would you like to save the current "
            L"configuration before continuing?",
            doors::Buttons::YesNoCancel);
  } else if (!isBlank(form)) {
    answer =
        ask(L"You have not saved the new configuration. Would you like to save the "
            L"configuration before continuing?",
            doors::Buttons::YesNoCancel);
  }
  switch (answer) {
    case doors::Answer::Yes:
      return saveAndGoOn();
    case doors::Answer::No:
      newConfiguration_ = false;
      deleteEnabled = true;
      return true;
    default:
      selectEdited();
      return false;
  }
}

bool SettingsEditor::saveAndGoOn() {
  try {
    if (!validate()) {
      selectEdited();
      return false;
    }
    save();
  } catch (const std::exception&) {
    selectEdited();
    throw;
  }
  const auto chosen = selectedRow ? std::optional(rows.key(*selectedRow)) : std::nullopt;
  fillList();
  if (chosen) selectedRow = rows.rowOfKey(*chosen);
  deleteEnabled = true;
  newConfiguration_ = false;
  return true;
}

void SettingsEditor::btnNew() {
  if (!CheckForSave(currentID_)) return;
  if (!newConfiguration_) {
    InitControls();
    form[Control::txtDescription].enabled = true;
    descriptionFocusWanted = true;
  }
  deleteEnabled = false;
  currentID_ = 0;
}

void SettingsEditor::btnDelete() {
  if (rows.rowCount() == 0) return;
  if (rows.rowCount() == 1 || !selectedRow || *selectedRow == 0) {
    return notice(L"You are not permitted to delete the 'Default Configuration'.");
  }
  const std::int16_t configID = ConfigurationRows::configIDOfKey(rows.key(*selectedRow));
  if (config_->m_colWorkstation && config_->m_colWorkstation->CheckforAttachedWS(configID)) {
    return notice(
        L"This configuration is currently being used by at least one workstation. Please reassign "
        L"the workstation to another configuration and then attempt to delete again.");
  }
  if (ask(L"Are you sure you want to delete this configuration?", doors::Buttons::YesNo) !=
      doors::Answer::Yes) {
    return;
  }
  remove(configID);
  fillList();
  if (rows.rowCount() > 0) {
    selectedRow = 0;
    show(ConfigurationRows::configIDOfKey(rows.key(0)));
  } else {
    InitControls();
  }
  descriptionFocusWanted = true;
  handOver();
  surroundings_.refreshAssignmentDialog();
}

bool SettingsEditor::btnExit() {
  if (!CheckForSave(currentID_)) return false;
  handOver();
  return true;
}

void SettingsEditor::rowClicked(std::size_t row) {
  const std::wstring key = rows.key(row);
  selectedRow = row;
  if (!CheckForSave(currentID_)) return;
  show(ConfigurationRows::configIDOfKey(key));
  selectedRow = rows.rowOfKey(key);
}

void SettingsEditor::chkUserLogonClicked() {
  SetUserLogonMapping(form, form[Control::chkUserLogon].ticked ? std::int16_t{1} : std::int16_t{0});
}

void SettingsEditor::accessionTickClicked() { accessionTicksChanged(form); }

void SettingsEditor::TmrFieldChange() {
  RuleResult result = applyFieldRules(form);
  if (result.message) notice(*result.message);
  form = std::move(result.form);
}

}  // namespace tlpacscfg
