#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "support/keyed_collection.h"

namespace tlpacscfg {

/// One workstation of the site.
class clsWorkstation {
 public:
  std::int16_t configID = 0;  ///< 0: no configuration assigned.
  std::wstring WorkStation;
  std::int16_t Flag2 = 0;  ///< 1 marks a Corvane Expert workstation.

  /// Queues the assignment's statement; nothing runs it.
  void SaveWorkstation() const;
};

/// The workstations in the order in which the source delivered them, keyed by name without regard
/// to case. A load adds to what is there.
class colWorkstation {
 public:
  using Pointer = std::shared_ptr<clsWorkstation>;
  using Workstations = KeyedCollection<clsWorkstation>;

  std::shared_ptr<Workstations> ColWorkStations = std::make_shared<Workstations>();

  /// By 1-based position; nothing when there is none.
  Pointer Item(std::int64_t position) const;

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
  void add(std::int16_t configID, std::wstring_view name, std::int16_t flag2);
  void loadDirect();
  void loadRemote();
};

}  // namespace tlpacscfg
