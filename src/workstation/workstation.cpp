#include "workstation/workstation.h"

#include "data/data_path.h"
#include "data/mod_main.h"
#include "data/statements.h"
#include "data/workstation_key.h"
#include "support/conversions.h"
#include "support/text.h"
#include "workstation/assignment_batches.h"

namespace tlpacscfg {

void clsWorkstation::SaveWorkstation() const {
  SetWorkstationConfig(WorkStation, decimal(configID));
}

void colWorkstation::AddWS(std::int16_t configID, const std::wstring& WorkStation) {
  add(configID, WorkStation, 0);
}

void colWorkstation::addStored(std::int16_t configID, std::wstring_view name, std::int16_t flag2) {
  add(configID, name, flag2)->storedConfigID = configID;
}

colWorkstation::Pointer colWorkstation::add(std::int16_t configID, std::wstring_view name,
                                            std::int16_t flag2) {
  auto workstation = std::make_shared<clsWorkstation>();
  workstation->configID = configID;
  workstation->WorkStation = name;
  workstation->Flag2 = flag2;
  ColWorkStations->add(workstation, name);
  return workstation;
}

std::int16_t colWorkstation::GetItemNumber(const std::wstring& WorkStation) const {
  const std::size_t position =
      ColWorkStations->positionWhere(&clsWorkstation::WorkStation, WorkStation);
  return toInt16(static_cast<std::int64_t>(position));
}

std::int16_t assignedConfigID(const Cell& cell) {
  // A text that is no number is no assignment in a client's table, and an error in the database's.
  if (!cell || (dataPath().isRemote() && !isNumeric(*cell))) return 0;
  return toInt16(*cell);
}

void colWorkstation::SaveAllWorkStationSettings() const {
  modMain.g_strWorkstationBatch.clear();
  // A remote client may call back and change the collection meanwhile.
  const std::vector<Pointer> all = ColWorkStations->items();
  forEachAssignmentCommand(all,
                           [](const std::wstring& command, std::size_t) { ExecuteSQL(command); });
  AddOfflineDbUpdate();
}

bool colWorkstation::CheckforAttachedWS(std::int16_t configID) const {
  return ColWorkStations->positionWhere(&clsWorkstation::configID, configID) != 0;
}

}  // namespace tlpacscfg
