#include "com/classes/item_by_position.h"
#include "com/classes/required.h"
#include "automation/com_class.h"
#include "com/identities.h"
#include "automation/member_table.h"
#include "config/pacs_configurations.h"

namespace tlpacscfg {
namespace {

std::vector<Member> configurationsMembers() {
  using Collection = colPACSConfiguration;
  using Record = Collection::Pointer;
  using Records = std::shared_ptr<Collection::Records>;
  return MemberTable<Collection>()
      .rawMethod(L"Item", DISPID_VALUE, {L"index"}, 0,
                 [](Collection& collection, Arguments& arguments) {
                   return itemByPosition(collection, arguments);
                 })
      .get(L"ColPACSConfigs", 1, [](Collection& collection) { return collection.ColPACSConfigs; })
      .putRef(L"ColPACSConfigs", 1,
              [](Collection& collection, const Records& records) {
                collection.ColPACSConfigs = required(records);
              })
      .get(L"CurrentPACSConfig", 2,
           [](Collection& collection) { return collection.CurrentPACSConfig; })
      .putRef(L"CurrentPACSConfig", 2,
              [](Collection& collection, const Record& record) {
                collection.CurrentPACSConfig = record;
              })
      .field(L"NextConfigID", 3, &Collection::NextConfigID)
      .method(L"GetPACSConfigurations", 4, {}, &Collection::GetPACSConfigurations)
      .method(L"AddIntitialConfig", 5, {}, &Collection::AddIntitialConfig)
      .method(L"GetNextConfigID", 6, {}, &Collection::GetNextConfigID)
      .method(L"SetCurrentConfig", 7, {L"configID"}, &Collection::SetCurrentConfig)
      .method(L"AddCurrenttoCollection", 8, {L"record"},
              [](Collection& collection, const Record& record) {
                collection.AddCurrenttoCollection(required(record));
              })
      .method(L"RemoveConfig", 9, {L"configID"}, &Collection::RemoveConfig)
      .method(L"SaveAllConfigurations", 10, {}, &Collection::SaveAllConfigurations)
      .rawMethod(L"GetItemNumber", 11, {L"configID", L"position"}, 0,
                 [](Collection& collection, Arguments& arguments) {
                   const auto configID = arguments.get<std::int16_t>(0);
                   arguments.put(1, OwnedVariant(collection.GetItemNumber(configID)));
                   return OwnedVariant();
                 })
      .members();
}

}  // namespace

template <>
const ComClass& comClassOf<colPACSConfiguration>() {
  static const ComClass type{CLSID_colPACSConfiguration, DIID__colPACSConfiguration,
                             configurationsMembers()};
  return type;
}

}  // namespace tlpacscfg
