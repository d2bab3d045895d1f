#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "config/pacs_configuration.h"
#include "config/row_reading.h"
#include "support/keyed_collection.h"

namespace tlpacscfg {

/// The DELETE of one configuration.
std::wstring deletingStatement(std::int16_t configID);

/// The message box about a configuration that could not be deleted.
void showDeleteError(std::int16_t configID, const RunTimeError& error);

/// Every integration configuration of the site, each keyed by the decimal text of its identifier.
/// After a load the first is a placeholder with the identifier 0 that stands for "none".
class colPACSConfiguration {
 public:
  using Pointer = std::shared_ptr<clsPACSConfiguration>;
  using Records = KeyedCollection<clsPACSConfiguration>;

  std::shared_ptr<Records> ColPACSConfigs = std::make_shared<Records>();
  Pointer CurrentPACSConfig;
  /// The last number that GetNextConfigID found on the direct path.
  std::int16_t NextConfigID = 0;

  /// Adds the placeholder and the stored configurations to what is there. Does nothing when no
  /// data path is open. Throws when the statement fails, on a duplicate identifier, and for
  /// a value that does not convert.
  void GetPACSConfigurations();

  void AddIntitialConfig();

  /// By 1-based position; null when there is none.
  Pointer Item(std::int64_t position) const { return ColPACSConfigs->itemAt(position); }

  /// The highest stored identifier plus 1, or 1. Database errors are suppressed; throws Overflow
  /// above 32767.
  std::int16_t GetNextConfigID();

  /// The same for callers that must not miss a failure: throws when the database did not answer.
  /// While no database is open it is the same as GetNextConfigID.
  std::int16_t RequireNextConfigID();

  /// Makes the record the current one; an unknown identifier gives a fresh record that is not in
  /// the collection.
  void SetCurrentConfig(std::int16_t configID);

  /// Throws DuplicateKey.
  void AddCurrenttoCollection(const Pointer& record);

  /// Deletes the row and drops the record. Errors are shown in a message box.
  void RemoveConfig(std::int16_t configID);

  /// Writes every record with an identifier above 0, changed or not. Throws what a save throws.
  void SaveAllConfigurations();

  /// The 1-based position of the record, or 0. Throws Overflow above 32767.
  std::int16_t GetItemNumber(std::int16_t configID) const;

  /// A new collection that holds a copy of every record.
  std::shared_ptr<colPACSConfiguration> deepCopy() const;

 private:
  void addRow(const std::function<Cell(std::size_t)>& cell, std::size_t row, CellRules rules);
  void numberFromRows();
  /// The 1-based position of the record, or 0.
  std::size_t positionOf(std::int16_t configID) const;
};

}  // namespace tlpacscfg
