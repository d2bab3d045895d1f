#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "config/pacs_configurations.h"
#include "config/stored_configuration.h"
#include "host/host_object.h"
#include "ui/settings/values/configuration_rows.h"
#include "ui/settings/values/settings_form.h"

namespace tlpacscfg {

/// The logic of the settings window, without the window: its state between events and its commands.
/// Before a command the window copies its controls into `form`; afterwards it shows `form` and the
/// other members. A command that throws keeps the user's input.
class SettingsEditor {
 public:
  /// Requests to the windows. `present` shows the form before a message about it; the assignment
  /// dialog is refreshed after a configuration was deleted.
  struct Callbacks {
    std::function<void()> present = [] {};
    std::function<void()> refreshWorkstationList = [] {};
    std::function<void()> refreshAssignmentDialog = [] {};
  };

  SettingsEditor(std::shared_ptr<clsConfig> host, Callbacks callbacks);

  /// Called when the window is created: makes a new form and copies the host's configurations.
  void load();
  /// Called when the window is destroyed.
  void unload();

  /// 0 stands for the default configuration. When one is already shown, asks about unsaved edits
  /// before showing another, and does nothing for one that no longer exists.
  void ShowPACSSettings(std::int16_t configID);
  void btnNew();
  void btnSave();
  void btnDelete();
  /// True when the window is to be closed.
  bool btnExit();
  void rowClicked(std::size_t row);
  void chkUserLogonClicked();
  void accessionTickClicked();
  void TmrFieldChange();

  /// Asks about unsaved edits. True when the caller may leave the configuration.
  bool CheckForSave(std::int16_t configID);
  /// The same, for a window that may stay open afterwards.
  bool mayLeave();

  SettingsForm form;
  ConfigurationRows rows;
  std::optional<std::size_t> selectedRow;
  bool deleteEnabled = true;

  /// Requests to the window, which clears them when they are done.
  bool rowsChanged = false;
  bool rulesWanted = false;
  bool firstTabWanted = false;
  bool descriptionFocusWanted = false;

  std::int16_t currentID() const { return currentID_; }
  bool isNew() const { return newConfiguration_; }

 private:
  void InitControls();
  /// Returns the message to show once the form is on the screen.
  [[nodiscard]] std::optional<std::wstring> show(std::int16_t configID);
  void announce(const std::optional<std::wstring>& message);
  /// False when the administrator cancels.
  bool save();
  bool saveNew();
  bool saveExisting();
  /// The stored row of `unconfirmed_`; null when there is none or when it was not stored.
  colPACSConfiguration::Pointer storedUnconfirmed();
  void adoptNew(const colPACSConfiguration::Pointer& record);
  void takeOver(const ForeignChange& change);
  void removeRecord(std::int16_t configID);
  bool remove(std::int16_t configID);
  bool deleteUnlessUsed(std::int16_t configID, std::optional<ForeignChange>& change);
  bool isUsed(SiteCommand& command, std::int16_t configID) const;
  /// Runs one step at the database. Errors name a field by its caption.
  template <class Work>
  auto atSite(Work work);
  template <class Work>
  void storing(const colPACSConfiguration::Pointer& record, Work work);
  bool isUnchanged(const clsPACSConfiguration& record) const;
  bool hasEdits() const;
  bool validate();
  bool saveAndGoOn();
  void selectCurrent();
  void fillList();
  void showFirst();
  /// Gives the host a copy of the configurations and refreshes the workstation list.
  void handOver();
  colPACSConfiguration::Pointer recordOf(std::int16_t configID) const;

  std::shared_ptr<clsConfig> host_;
  Callbacks callbacks_;
  std::shared_ptr<colPACSConfiguration> configurations_;
  std::int16_t currentID_ = 0;
  bool newConfiguration_ = false;
  bool shown_ = false;
  /// A record that the database may have stored without a confirmation.
  colPACSConfiguration::Pointer unconfirmed_;
  /// A configuration whose deletion failed, or was not confirmed.
  std::int16_t unconfirmedDelete_ = 0;
};

}  // namespace tlpacscfg
