#include "com/classes/item_by_position.h"
#include "com/classes/required.h"
#include "automation/com_class.h"
#include "com/identities.h"
#include "automation/member_table.h"
#include "workstation/workstation.h"

namespace tlpacscfg {
namespace {

std::vector<Member> workstationsMembers() {
  using Collection = colWorkstation;
  using Workstations = std::shared_ptr<Collection::Workstations>;
  return MemberTable<Collection>()
      .rawMethod(L"Item", DISPID_VALUE, {L"index"}, 0,
                 [](Collection& collection, Arguments& arguments) {
                   return itemByPosition(collection, arguments);
                 })
      .get(L"ColWorkStations", 1, [](Collection& collection) { return collection.ColWorkStations; })
      .putRef(L"ColWorkStations", 1,
              [](Collection& collection, const Workstations& workstations) {
                collection.ColWorkStations = required(workstations);
              })
      .method(L"AddWS", 2, {L"configID", L"WorkStation"}, &Collection::AddWS)
      .method(L"GetItemNumber", 3, {L"WorkStation"}, &Collection::GetItemNumber)
      .method(L"GetWorkstationsList", 4, {}, &Collection::GetWorkstationsList)
      .method(L"GetOfflineWorkstationInfo", 5, {}, &Collection::GetOfflineWorkstationInfo)
      .method(L"SaveAllWorkStationSettings", 6, {}, &Collection::SaveAllWorkStationSettings)
      .method(L"CheckforAttachedWS", 7, {L"configID"}, &Collection::CheckforAttachedWS)
      .members();
}

std::vector<Member> workstationMembers() {
  return MemberTable<clsWorkstation>()
      .field(L"configID", 1, &clsWorkstation::configID)
      .field(L"WorkStation", 2, &clsWorkstation::WorkStation)
      .field(L"Flag2", 3, &clsWorkstation::Flag2)
      .method(L"SaveWorkstation", 4, {}, &clsWorkstation::SaveWorkstation)
      .members();
}

}  // namespace

template <>
const ComClass& comClassOf<colWorkstation>() {
  static const ComClass type{CLSID_colWorkstation, DIID__colWorkstation, workstationsMembers()};
  return type;
}

template <>
const ComClass& comClassOf<clsWorkstation>() {
  static const ComClass type{CLSID_clsWorkstation, DIID__clsWorkstation, workstationMembers()};
  return type;
}

}  // namespace tlpacscfg
