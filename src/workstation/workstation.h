#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "data/result_set.h"
#include "support/keyed_collection.h"

namespace tlpacscfg {

/// One workstation of the site.
class clsWorkstation {
 public:
  std::int16_t configID = 0;  ///< 0: no configuration assigned.
  std::wstring WorkStation;
  std::int16_t Flag2 = 0;  ///< 1 marks a Corvane Expert workstation.

  /// The assignment that the database held when it was last read or written; null for a workstation
  /// that was not loaded. Compared with `configID` it shows what was changed here.
  std::optional<std::int16_t> storedConfigID;

  /// An assignment that was sent and not confirmed: the database may hold it.
  std::optional<std::int16_t> unconfirmedConfigID;

  bool isReassigned() const { return storedConfigID && *storedConfigID != configID; }

  /// Queues the assignment's statement; nothing runs it.
  void SaveWorkstation() const;
};

/// The query of all workstations with their assignments; its columns are the name, the assigned
/// configuration or Null, one that is not used, and Flag2.
inline constexpr const wchar_t* kListStatement =
    L"select p.pc_name,"
    L"key_value = (select key_value from system_workstation_cfg where key_name = 'PACSConfig' and "
    L"pc_name = p.pc_name), "
    L"access_string, p.flag2 "
    L"from system_pc_names p";
enum ListColumn : std::size_t { kListName = 0, kListConfig = 1, kListFlag2 = 3 };

/// The configuration that the cell of kListConfig assigns, as the data path in use converts it.
/// Throws TypeMismatch and Overflow.
std::int16_t assignedConfigID(const Cell& cell);

/// The workstations in the order in which the source delivered them, keyed by name without regard
/// to case. A load adds to what is there.
class colWorkstation {
 public:
  using Pointer = std::shared_ptr<clsWorkstation>;
  using Workstations = KeyedCollection<clsWorkstation>;

  std::shared_ptr<Workstations> ColWorkStations = std::make_shared<Workstations>();

  /// By 1-based position; null when there is none.
  Pointer Item(std::int64_t position) const { return ColWorkStations->itemAt(position); }

  /// Throws DuplicateKey.
  void AddWS(std::int16_t configID, const std::wstring& WorkStation);

  /// The 1-based position of the first workstation of exactly this name, or 0.
  std::int16_t GetItemNumber(const std::wstring& WorkStation) const;

  /// Loads the site's workstations. Errors are shown in message boxes; rows loaded before one stay.
  void GetWorkstationsList();

  /// Loads the local computer from the offline database, if it is listed there.
  void GetOfflineWorkstationInfo();

  /// Rewrites every workstation's assignment, 100 of them in one command, and leaves the mark for
  /// offline copies. Throws when a command fails on the direct connection.
  void SaveAllWorkStationSettings() const;

  /// Whether a workstation uses the configuration.
  bool CheckforAttachedWS(std::int16_t configID) const;

 private:
  Pointer add(std::int16_t configID, std::wstring_view name, std::int16_t flag2);
  void addStored(std::int16_t configID, std::wstring_view name, std::int16_t flag2);
  void addRows(ResultSet& rows);
  void loadRemote();
};

}  // namespace tlpacscfg
