#include "ui/settings/editor/settings_editor.h"

#include <utility>

#include "data/data_path.h"
#include "data/workstation_key.h"
#include "host/site_access.h"
#include "support/runtime_error.h"
#include "support/system.h"
#include "support/text.h"
#include "ui/settings/values/blank_form.h"
#include "ui/settings/values/default_configuration.h"
#include "ui/settings/values/settings_binding.h"
#include "ui/settings/values/settings_files.h"
#include "ui/settings/values/settings_rules.h"
#include "ui/settings/values/settings_validation.h"
#include "workstation/assignments.h"

namespace tlpacscfg {
namespace {

constexpr const wchar_t* kUnsaved =
    L"Configuration has not been saved. Would you like to save the current configuration before "
    L"continuing?";
constexpr const wchar_t* kNewUnsaved =
    L"You have not saved the new configuration. Would you like to save the configuration before "
    L"continuing?";
constexpr const wchar_t* kUsed =
    L"This configuration is currently being used by at least one workstation. Please reassign the "
    L"workstation to another configuration and then attempt to delete again.";

void notice(const std::wstring& text) { system::showMessage({.text = text}); }

system::Answer ask(const std::wstring& question, system::Buttons buttons,
                   system::Answer defaultAnswer = system::Answer::Yes) {
  return system::showMessage(
      {.text = question, .buttons = buttons, .defaultAnswer = defaultAnswer});
}

/// "Configuration 5 was changed by user 12 on 2026-01-05 09:08:07 since it was loaded."
std::wstring whatHappened(std::int16_t configID, const ForeignChange& change) {
  const std::wstring subject = L"Configuration " + decimal(configID);
  if (!change.stored) return subject + L" was deleted by somebody else since it was loaded.";
  return subject + L" was changed by user " + change.stored->LastUpdateUserID + L" on " +
         change.stored->LastUpdateDate + L" since it was loaded.";
}

/// Yes: keep the values on the screen. No: keep the stored ones. Cancel: neither.
system::Answer askWhoseValues(std::int16_t configID, const ForeignChange& change) {
  return ask(whatHappened(configID, change) +
                 (change.stored ? L" Save your values over it? No shows the stored values instead."
                                : L" Save it again? No removes it from the list."),
             system::Buttons::YesNoCancel, system::Answer::Cancel);
}

bool confirmDelete(std::int16_t configID, const ForeignChange& change) {
  return ask(whatHappened(configID, change) +
                 (change.stored ? L" Delete it all the same?" : L" Remove it from the list?"),
             system::Buttons::YesNo, system::Answer::No) == system::Answer::Yes;
}

}  // namespace

SettingsEditor::SettingsEditor(std::shared_ptr<clsConfig> host, Callbacks callbacks)
    : host_(std::move(host)), callbacks_(std::move(callbacks)) {}

template <class Work>
auto SettingsEditor::atSite(Work work) {
  try {
    const SiteAccess access(*host_);
    return work();
  } catch (const FieldError& error) {
    const Configuration& stored = error.stored();
    if (stored && newConfiguration_) adoptNew(stored);
    if (stored && recordOf(stored->configID)) stored->CopyValues(*recordOf(stored->configID));
    throw RunTimeError(error.number(), error.descriptionFor(captionOf(error.column())));
  }
}

void SettingsEditor::load() {
  configurations_ = host_->m_colPACSConfig ? host_->m_colPACSConfig->deepCopy()
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
  shown_ = false;
  unconfirmed_.reset();
  unconfirmedDelete_ = 0;
  currentID_ = 0;
}

void SettingsEditor::ShowPACSSettings(std::int16_t configID) {
  const std::int16_t wanted = configID == 0 ? kDefaultConfiguration : configID;
  const bool onScreen = wanted == currentID_ && !newConfiguration_;
  if (shown_ && (onScreen || !recordOf(wanted))) return;
  const bool anyStored = atSite([&] { return configurations_->RequireNextConfigID() > 1; });
  if (shown_ && !CheckForSave(currentID_)) return;
  currentID_ = wanted;
  std::optional<std::wstring> message;
  if (anyStored) {
    message = show(wanted);
    selectCurrent();
  } else {
    InitControls();
  }
  shown_ = true;
  rulesWanted = true;
  descriptionFocusWanted = !newConfiguration_;
  announce(message);
}

void SettingsEditor::InitControls() {
  clearToDefaults(form);
  newConfiguration_ = true;
  unconfirmed_.reset();
  selectedRow.reset();
  firstTabWanted = true;
  // The rules apply to the new values as if each had been chosen in turn.
  rulesWanted = true;
}

std::optional<std::wstring> SettingsEditor::show(std::int16_t configID) {
  if (!recordOf(configID)) return std::nullopt;
  currentID_ = configID;
  newConfiguration_ = false;
  configurations_->SetCurrentConfig(configID);
  form[Control::txtDescription].enabled = mayRename(configID);
  rulesWanted = true;
  return showRecord(form, *configurations_->CurrentPACSConfig);
}

void SettingsEditor::announce(const std::optional<std::wstring>& message) {
  if (!message) return;
  callbacks_.present();
  notice(*message);
}

colPACSConfiguration::Pointer SettingsEditor::recordOf(std::int16_t configID) const {
  return configurations_->Item(configurations_->GetItemNumber(configID));
}

void SettingsEditor::fillList() {
  rows.fill(*configurations_);
  rowsChanged = true;
  selectedRow.reset();
}

/// A new configuration has no row.
void SettingsEditor::selectCurrent() {
  selectedRow.reset();
  if (!newConfiguration_) selectedRow = rows.rowOfKey(ConfigurationRows::keyOf(currentID_));
}

void SettingsEditor::handOver() {
  host_->m_colPACSConfig = configurations_->deepCopy();
  callbacks_.refreshWorkstationList();
}

void SettingsEditor::adoptNew(const colPACSConfiguration::Pointer& record) {
  newConfiguration_ = false;
  currentID_ = record->configID;
  configurations_->AddCurrenttoCollection(record);
  fillList();
  selectCurrent();
  deleteEnabled = true;
}

colPACSConfiguration::Pointer SettingsEditor::storedUnconfirmed() {
  if (!unconfirmed_) return nullptr;
  Configuration stored = atSite([&]() -> Configuration {
    SiteCommand command;
    if (!command.reachesDatabase()) return nullptr;
    Configuration found = storedConfiguration(command, unconfirmed_->configID);
    if (!found || !isStoredAs(*unconfirmed_, *found)) return nullptr;
    // On the direct path the mark was stored with it.
    if (!command.isTransaction()) command.markAndCommit();
    return found;
  });
  unconfirmed_.reset();
  return stored;
}

/// Keeps the record in `unconfirmed_` if it may be stored although the step failed: if the commit
/// got no answer, and always with a remote client, which has no transactions.
template <class Work>
void SettingsEditor::storing(const colPACSConfiguration::Pointer& record, Work work) {
  unconfirmed_ = record;
  try {
    atSite(work);
  } catch (const OutcomeUnknown&) {
    throw;
  } catch (...) {
    if (!host_->isRemote()) unconfirmed_.reset();
    throw;
  }
  unconfirmed_.reset();
}

/// Whether the controls match the record and no save of it is unconfirmed.
bool SettingsEditor::isUnchanged(const clsPACSConfiguration& record) const {
  const bool unconfirmed = unconfirmed_ && unconfirmed_->configID == record.configID;
  return !unconfirmed && PACSValueTheSame(form, record);
}

bool SettingsEditor::saveNew() {
  const auto earlier = storedUnconfirmed();
  if (earlier && !recordOf(earlier->configID)) {
    adoptNew(earlier);
    return saveExisting();
  }
  const auto record = std::make_shared<clsPACSConfiguration>();
  storing(record, [&] {
    record->configID = configurations_->RequireNextConfigID();
    // No other administrator numbers configurations that exist only in memory.
    if (!dataPath().executes() && recordOf(record->configID)) raise(ErrorNumber::DuplicateKey);
    readBack(form, *record);
    record->ExistingConfig = kFalse;
    storeNew(*record, *configurations_);
  });
  record->ExistingConfig = kTrue;
  adoptNew(record);
  return true;
}

bool SettingsEditor::saveExisting() {
  const auto record = recordOf(currentID_);
  if (!record) raise(ErrorNumber::ObjectNotSet);
  if (unconfirmed_ && unconfirmed_->configID == currentID_) {
    if (const auto stored = storedUnconfirmed()) stored->CopyValues(*record);
  }
  if (PACSValueTheSame(form, *record)) return true;
  const auto edited = std::make_shared<clsPACSConfiguration>(*record);
  readBack(form, *edited);
  edited->Changed = kTrue;
  // A record that a host added is not stored yet.
  Configuration loaded = record->ExistingConfig == kFalse ? nullptr : record;
  for (;;) {
    edited->ExistingConfig = kTrue;
    std::optional<ForeignChange> change;
    storing(edited, [&] { change = storeChanged(*edited, loaded); });
    if (!change) break;
    const system::Answer answer = askWhoseValues(currentID_, *change);
    if (answer == system::Answer::Cancel) return false;
    if (answer == system::Answer::No) {
      takeOver(*change);
      return true;
    }
    loaded = change->stored;
  }
  edited->ExistingConfig = kTrue;
  *record = *edited;
  return true;
}

/// Shows the values that another administrator stored; a deleted configuration leaves the list.
void SettingsEditor::takeOver(const ForeignChange& change) {
  if (change.stored) {
    change.stored->CopyValues(*recordOf(currentID_));
    announce(show(currentID_));
    return;
  }
  removeRecord(currentID_);
  fillList();
  showFirst();
}

void SettingsEditor::removeRecord(std::int16_t configID) {
  const std::int16_t position = configurations_->GetItemNumber(configID);
  configurations_->ColPACSConfigs->remove(static_cast<std::size_t>(position));
}

bool SettingsEditor::save() {
  const bool done = newConfiguration_ || currentID_ <= 0 ? saveNew() : saveExisting();
  if (done) handOver();
  return done;
}

bool SettingsEditor::isUsed(SiteCommand& command, std::int16_t configID) const {
  const auto workstations = host_->m_colWorkstation;
  return workstations && isAssigned(command, *workstations, configID);
}

bool SettingsEditor::hasEdits() const {
  const auto record = recordOf(currentID_);
  return newConfiguration_ || (record && !isUnchanged(*record));
}

/// False when a workstation uses the configuration. A `change` found by an earlier call counts as
/// loaded.
bool SettingsEditor::deleteUnlessUsed(std::int16_t configID, std::optional<ForeignChange>& change) {
  const auto loaded = change ? change->stored : recordOf(configID);
  return atSite([&] {
    SiteCommand command;
    if (isUsed(command, configID)) return false;
    change = deleteStored(command, *loaded);
    return true;
  });
}

/// False when the configuration stays in the list.
bool SettingsEditor::remove(std::int16_t configID) {
  try {
    std::optional<ForeignChange> change;
    do {
      if (!deleteUnlessUsed(configID, change)) return notice(kUsed), false;
      if (change && !change->stored && configID == unconfirmedDelete_) {
        atSite([] {
          // A transaction stored the mark with the deletion.
          if (dataPath().isRemote()) AddOfflineDbUpdate();
        });
        break;
      }
      if (change && !confirmDelete(configID, *change)) return false;
    } while (change && change->stored);
    removeRecord(configID);
  } catch (...) {
    unconfirmedDelete_ = configID;
    showDeleteError(configID, describeCurrent());
    return !hasEdits();
  }
  return true;
}

bool SettingsEditor::validate() {
  const Validation result = ValidData(form, *configurations_, currentID_);
  if (result.resetPort) form[Control::txtPort].text = L"0";
  for (const std::wstring& message : result.messages) notice(message);
  return result.messages.empty();
}

void SettingsEditor::btnSave() {
  if (!validate() || !save()) return;
  fillList();
  selectCurrent();
  deleteEnabled = true;
}

bool SettingsEditor::CheckForSave(std::int16_t configID) {
  if (configID <= 0 && !newConfiguration_) return true;
  const auto record = recordOf(configID);
  if (!newConfiguration_ && (!record || isUnchanged(*record))) return true;
  const bool nothingEntered = newConfiguration_ && isBlank(form);
  const system::Answer answer = nothingEntered ? system::Answer::No
                                               : ask(newConfiguration_ ? kNewUnsaved : kUnsaved,
                                                     system::Buttons::YesNoCancel);
  switch (answer) {
    case system::Answer::Yes:
      return saveAndGoOn();
    case system::Answer::No:
      // Replaces discarded edits on the screen. A new configuration has no stored values to show.
      if (!newConfiguration_) {
        showRecord(form, *record);
        rulesWanted = true;
        unconfirmed_.reset();
      }
      newConfiguration_ = false;
      deleteEnabled = true;
      return true;
    default:
      selectCurrent();
      return false;
  }
}

bool SettingsEditor::saveAndGoOn() {
  const auto chosen = selectedRow ? std::optional(rows.key(*selectedRow)) : std::nullopt;
  // Unless everything was saved, the edited row stays selected.
  selectCurrent();
  if (!validate() || !save()) return false;
  fillList();
  if (chosen) selectedRow = rows.rowOfKey(*chosen);
  deleteEnabled = true;
  newConfiguration_ = false;
  return true;
}

bool SettingsEditor::mayLeave() {
  if (!CheckForSave(currentID_)) return false;
  // A discarded new configuration is blank again.
  if (!newConfiguration_ && currentID_ <= 0) InitControls();
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
  if (rows.rowCount() == 1 || !selectedRow || !mayDelete(*selectedRow)) {
    return notice(kNotDeletable);
  }
  const std::int16_t configID = ConfigurationRows::configIDOfKey(rows.key(*selectedRow));
  const bool used = atSite([&] {
    SiteCommand command;
    return isUsed(command, configID);
  });
  if (used) return notice(kUsed);
  if (ask(L"Are you sure you want to delete this configuration?", system::Buttons::YesNo) !=
      system::Answer::Yes) {
    return;
  }
  if (!remove(configID)) return;
  fillList();
  showFirst();
  descriptionFocusWanted = true;
  handOver();
  callbacks_.refreshAssignmentDialog();
}

void SettingsEditor::showFirst() {
  if (rows.rowCount() == 0) return InitControls();
  selectedRow = 0;
  announce(show(ConfigurationRows::configIDOfKey(rows.key(0))));
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
  const auto message = show(ConfigurationRows::configIDOfKey(key));
  selectedRow = rows.rowOfKey(key);
  announce(message);
}

void SettingsEditor::chkUserLogonClicked() {
  SetUserLogonMapping(form, form[Control::chkUserLogon].ticked ? std::int16_t{1} : std::int16_t{0});
}

void SettingsEditor::accessionTickClicked() { accessionTicksChanged(form); }

void SettingsEditor::TmrFieldChange() {
  RuleResult result = applyFieldRules(form);
  form = std::move(result.form);
  announce(result.message);
}

}  // namespace tlpacscfg
