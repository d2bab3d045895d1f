#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "config/pacs_configurations.h"
#include "config/stored_configuration.h"
#include "host/config.h"
#include "support/list_sort.h"
#include "ui/settings/values/settings_form.h"

namespace tlpacscfg {

/// The rows of the configuration list: every configuration but the placeholder, in the order of
/// the collection.
class ConfigurationRows : public ListRows {
 public:
  /// Columns count from 0; the last one serves programs that read the list.
  enum Column : std::size_t { kConfigID, kConfiguration, kHiddenID };
  static constexpr std::size_t kColumns = 3;

  void fill(const colPACSConfiguration& configurations);
  void clear() { rows_.clear(); }

  std::size_t rowCount() const override { return rows_.size(); }
  std::wstring_view cell(std::size_t row, std::size_t column) const override;

  /// "C" and the identifier: the only link between a row and its configuration.
  const std::wstring& key(std::size_t row) const { return rows_[row].key; }
  std::optional<std::size_t> rowOfKey(const std::wstring& key) const;
  static std::wstring keyOf(std::int16_t configID);
  static std::int16_t configIDOfKey(const std::wstring& key);

 private:
  struct Row {
    std::wstring key;
    std::wstring configID;
    std::wstring text;
  };
  std::vector<Row> rows_;
};

/// What the settings window does, without the window: its state between events and its commands.
/// Before a command the window copies its controls into `form`, after it `form` and the rest into
/// its controls. A command that throws leaves what the user entered.
class SettingsEditor {
 public:
  /// Refreshes the workstation list, and the assignment dialog where the configurations changed
  /// so that it must offer other ones. Presents the form before a message about it is shown.
  struct Surroundings {
    std::function<void()> present = [] {};
    std::function<void()> refreshWorkstationList = [] {};
    std::function<void()> refreshAssignmentDialog = [] {};
  };

  SettingsEditor(std::shared_ptr<clsConfig> config, Surroundings surroundings);

  /// The window is loaded: a fresh form and a copy of the host's configurations.
  void load();
  /// The window is gone.
  void unload();

  /// 0 stands for the default configuration. When one is shown already, it asks about unsaved edits
  /// before it turns to another, and does nothing for one that is gone.
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

  /// True when the caller may go on to another configuration, to a new one, or to the end.
  bool CheckForSave(std::int16_t configID);
  /// The same for a window that may stay open all the same.
  bool mayLeave();

  SettingsForm form;
  ConfigurationRows rows;
  std::optional<std::size_t> selectedRow;
  bool deleteEnabled = true;

  /// Set by commands, cleared by the window when it has done what they ask for.
  bool rowsChanged = false;
  bool rulesWanted = false;
  bool firstTabWanted = false;
  bool descriptionFocusWanted = false;

  std::int16_t currentID() const { return currentID_; }
  bool isNew() const { return newConfiguration_; }

 private:
  void InitControls();
  /// Gives the message to announce when the rest is done.
  [[nodiscard]] std::optional<std::wstring> show(std::int16_t configID);
  void announce(const std::optional<std::wstring>& message);
  /// False when the administrator goes on editing.
  bool save();
  bool saveNew();
  bool saveExisting();
  /// The row of the configuration that an earlier try may have stored, if it did.
  colPACSConfiguration::Pointer settled();
  void adoptNew(const colPACSConfiguration::Pointer& record);
  void takeOver(const ForeignChange& change);
  bool remove(std::int16_t configID);
  bool deleteUnlessUsed(std::int16_t configID, std::optional<ForeignChange>& change);
  bool isUsed(SiteCommand& command, std::int16_t configID) const;
  /// One step at the database. Errors about a field call it by the name that the window shows.
  template <class Work>
  auto atSite(Work work);
  template <class Work>
  void storing(const colPACSConfiguration::Pointer& record, Work work);
  bool isSettledAs(const clsPACSConfiguration& record) const;
  bool hasEdits() const;
  bool validate();
  bool saveAndGoOn();
  void selectEdited();
  void selectCurrent();
  void fillList();
  void showFirst();
  /// Gives the host a copy of the configurations and refreshes the workstation list.
  void handOver();
  colPACSConfiguration::Pointer recordOf(std::int16_t configID) const;

  std::shared_ptr<clsConfig> config_;
  Surroundings surroundings_;
  std::shared_ptr<colPACSConfiguration> configurations_;
  std::int16_t currentID_ = 0;
  bool newConfiguration_ = false;
  bool shown_ = false;
  /// What the database may have stored without confirming it.
  colPACSConfiguration::Pointer unsettled_;
  /// A configuration whose deletion failed, or was not confirmed.
  std::int16_t unconfirmedDelete_ = 0;
};

}  // namespace tlpacscfg
