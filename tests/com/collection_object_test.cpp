#include "com/com_fixture.h"
#include "support/text.h"

namespace tlpacscfg::test {
namespace {

constexpr const wchar_t* kNotSet = L"Object variable or With block variable not set";

class CollectionObjectTest : public ComSiteTest {
 protected:
  CollectionObjectTest() {
    for (const int id : {1, 2, 7}) addConfiguration(id);
    for (const wchar_t* name : {L"PC1", L"PC2", L"pc3"}) addWorkstation(name, L"1");
    assign(L"PC2", L"'7'");
    object = initialised();
    configurations = object.get(L"colPACSConfig").object();
    workstations = object.get(L"colWS").object();
  }

  HostObject object{nullptr};
  HostObject configurations{nullptr};
  HostObject workstations{nullptr};

  HostObject records() const { return configurations.get(L"ColPACSConfigs").object(); }

  HostObject newRecord(int configID) const {
    configurations.call(L"SetCurrentConfig", {32000});
    HostObject record = configurations.get(L"CurrentPACSConfig").object();
    record.put(L"configID", configID);
    return record;
  }

  std::vector<int> idsByPosition() const {
    std::vector<int> ids;
    for (int i = 1; i <= records().get(L"Count").number(); ++i) {
      ids.push_back(records().call(L"Item", {i}).object().get(L"configID").number());
    }
    return ids;
  }
};

/// The identifiers of the remaining records.
std::vector<int> remaining(IEnumVARIANT& items) {
  std::vector<int> ids;
  OwnedVariant value;
  while (items.Next(1, value.out(), nullptr) == S_OK) {
    const HostObject record(ComPtr<IDispatch>::sharing(value.get().pdispVal));
    ids.push_back(record.get(L"configID").number());
  }
  return ids;
}

TEST_F(CollectionObjectTest, InitFillsBothCollections) {
  EXPECT_EQ(idsByPosition(), (std::vector{0, 1, 2, 7}));
  EXPECT_EQ(workstations.get(L"ColWorkStations").object().get(L"Count").number(), 3);
  const HostObject second = workstations.call(L"Item", {2}).object();
  EXPECT_EQ(second.get(L"WorkStation").text(), L"PC2");
  EXPECT_EQ(second.get(L"configID").number(), 7);
  EXPECT_EQ(second.get(L"Flag2").number(), 1);
}

TEST_F(CollectionObjectTest, FieldsAndPropertiesOfTheHostObjectAreTheSameCollections) {
  EXPECT_TRUE(areSame(object.get(L"m_colPACSConfig").object(), configurations));
  EXPECT_TRUE(areSame(object.get(L"m_colWorkstation").object(), workstations));
  const HostObject other = HostObject::create(kConfig);
  EXPECT_EQ(other.putRef(L"colPACSConfig", configurations).result, S_OK);
  EXPECT_TRUE(areSame(other.get(L"m_colPACSConfig").object(), configurations));
  EXPECT_EQ(other.putRef(L"m_colPACSConfig", nothing()).result, S_OK);
  EXPECT_TRUE(other.get(L"colPACSConfig").object().isNothing());
  EXPECT_EQ(other.put(L"m_colPACSConfig", configurations).result, S_OK);
  EXPECT_TRUE(areSame(other.get(L"colPACSConfig").object(), configurations));
  EXPECT_EQ(other.put(L"m_colWorkstation", workstations).result, S_OK);
  EXPECT_TRUE(areSame(other.get(L"colWS").object(), workstations));
  EXPECT_EQ(other.putRef(L"m_colWorkstation", nothing()).result, S_OK);
  EXPECT_TRUE(other.get(L"colWS").object().isNothing());
}

TEST_F(CollectionObjectTest, ItemOfTheSetsConvertsItsIndexAndSwallowsEveryError) {
  for (const HostObject* set : {&configurations, &workstations}) {
    const HostObject second = set->call(L"Item", {2}).object();
    ASSERT_FALSE(second.isNothing());
    EXPECT_TRUE(areSame(set->call(L"Item", {L"2"}).object(), second));
    EXPECT_TRUE(areSame(set->call(L"Item", {2.4}).object(), second));
    EXPECT_TRUE(areSame(set->get(L"Item", {2}).object(), second));
    EXPECT_TRUE(areSame(
        set->invoke(DISPID_VALUE, DISPATCH_METHOD | DISPATCH_PROPERTYGET, {Argument(2).get()})
            .object(),
        second));
    const Argument wrong[] = {0,   -1,          99,        40000,  L"PC2",
                              L"", nullValue(), nothing(), object, emptyValue()};
    for (const Argument& index : wrong) {
      EXPECT_TRUE(set->call(L"Item", {index.get()}).object().isNothing());
    }
  }
}

TEST_F(CollectionObjectTest, PropertyWithAnIndexLeadsToTheItem) {
  EXPECT_TRUE(areSame(object.get(L"colPACSConfig", {2}).object(),
                      configurations.call(L"Item", {2}).object()));
  EXPECT_TRUE(areSame(configurations.get(L"ColPACSConfigs", {L"7"}).object(),
                      configurations.call(L"Item", {4}).object()));
}

TEST_F(CollectionObjectTest, ItemOfACollectionIsFoundByPositionOrKey) {
  const HostObject seventh = records().call(L"Item", {4}).object();
  EXPECT_EQ(seventh.get(L"configID").number(), 7);
  EXPECT_TRUE(areSame(records().call(L"Item", {L"7"}).object(), seventh));
  const HostObject stations = workstations.get(L"ColWorkStations").object();
  EXPECT_TRUE(
      areSame(stations.call(L"Item", {L"PC3"}).object(), workstations.call(L"Item", {3}).object()));
}

TEST_F(CollectionObjectTest, ItemThatACollectionDoesNotHoldIsAnError) {
  expectError(records().call(L"Item", {5}), 9, L"Subscript out of range");
  expectError(records().call(L"Item", {0}), 9, L"Subscript out of range");
  expectError(records().call(L"Item", {-1}), 9, L"Subscript out of range");
  expectError(records().call(L"Item", {L"8"}), 5, L"Invalid procedure call or argument");
  expectError(records().call(L"Item", {L""}), 5, L"Invalid procedure call or argument");
  expectRefused(records().call(L"Item", {nullValue()}), DISP_E_TYPEMISMATCH, L"Type mismatch");
  expectRefused(records().call(L"Item", {1e12}), DISP_E_OVERFLOW, L"Overflow");
}

TEST_F(CollectionObjectTest, AddTakesAnItemAndPerhapsAKey) {
  EXPECT_EQ(records().call(L"Add", {newRecord(20), L"twenty"}).result, S_OK);
  EXPECT_EQ(records().call(L"Add", {newRecord(21)}).result, S_OK);
  EXPECT_EQ(records().call(L"Add", {newRecord(22), missingArgument()}).result, S_OK);
  EXPECT_EQ(idsByPosition(), (std::vector{0, 1, 2, 7, 20, 21, 22}));
  EXPECT_EQ(records().call(L"Item", {L"TWENTY"}).object().get(L"configID").number(), 20);
}

TEST_F(CollectionObjectTest, AddRefusesATakenKeyAndObjectsOfAnotherKind) {
  expectError(records().call(L"Add", {newRecord(20), L"7"}), 457,
              L"This key is already associated with an element of this collection");
  expectRefused(records().call(L"Add", {workstations.call(L"Item", {1}).object()}),
                DISP_E_TYPEMISMATCH, L"Type mismatch");
  expectRefused(records().call(L"Add", {5}), DISP_E_TYPEMISMATCH, L"Type mismatch");
  expectError(records().call(L"Add", {nothing()}), 91, kNotSet);
  EXPECT_EQ(records().get(L"Count").number(), 4);
}

TEST_F(CollectionObjectTest, RemoveTakesAPositionOrAKey) {
  EXPECT_EQ(records().call(L"Remove", {2}).result, S_OK);
  EXPECT_EQ(records().call(L"Remove", {L"7"}).result, S_OK);
  EXPECT_EQ(idsByPosition(), (std::vector{0, 2}));
  expectError(records().call(L"Remove", {3}), 9, L"Subscript out of range");
  expectError(records().call(L"Remove", {L"7"}), 5, L"Invalid procedure call or argument");
}

TEST_F(CollectionObjectTest, CollectionsAreReplacedAsAWhole) {
  const HostObject other = initialised();
  const HostObject otherSet = other.get(L"colPACSConfig").object();
  EXPECT_EQ(
      configurations.putRef(L"ColPACSConfigs", otherSet.get(L"ColPACSConfigs").object()).result,
      S_OK);
  EXPECT_TRUE(areSame(records(), otherSet.get(L"ColPACSConfigs").object()));
  const HostObject stations = workstations.get(L"ColWorkStations").object();
  expectRefused(configurations.putRef(L"ColPACSConfigs", stations), DISP_E_TYPEMISMATCH,
                L"Type mismatch");
  expectError(configurations.putRef(L"ColPACSConfigs", nothing()), 91, kNotSet);
  EXPECT_EQ(other.get(L"colWS").object().putRef(L"ColWorkStations", stations).result, S_OK);
  EXPECT_TRUE(areSame(other.get(L"colWS").object().get(L"ColWorkStations").object(), stations));
}

TEST_F(CollectionObjectTest, EnumeratorSkipsResetsAndClones) {
  const ComPtr<IEnumVARIANT> items = enumeratorOf(records());
  EXPECT_EQ(nameOf(items->Skip(2)), "S_OK");
  ComPtr<IEnumVARIANT> copy;
  ASSERT_EQ(nameOf(items->Clone(copy.out())), "S_OK");
  EXPECT_EQ(remaining(*items.get()), (std::vector{2, 7}));
  EXPECT_EQ(remaining(*copy.get()), (std::vector{2, 7}));
  EXPECT_EQ(nameOf(items->Skip(1)), "S_FALSE");
  EXPECT_EQ(nameOf(items->Reset()), "S_OK");
  EXPECT_EQ(remaining(*items.get()), (std::vector{0, 1, 2, 7}));
}

TEST_F(CollectionObjectTest, EnumeratorGivesSeveralItemsAtOnce) {
  const ComPtr<IEnumVARIANT> items = enumeratorOf(records());
  VARIANT values[3] = {};
  ULONG fetched = 0;
  EXPECT_EQ(nameOf(items->Next(3, values, &fetched)), "S_OK");
  EXPECT_EQ(fetched, 3U);
  for (VARIANT& value : values) {
    EXPECT_EQ(value.vt, VT_DISPATCH);
    VariantClear(&value);
  }
  EXPECT_EQ(nameOf(items->Next(3, values, &fetched)), "S_FALSE");
  EXPECT_EQ(fetched, 1U);
  VariantClear(&values[0]);
}

TEST_F(CollectionObjectTest, EnumeratorKeepsTheItemsOfItsCreation) {
  const ComPtr<IEnumVARIANT> items = enumeratorOf(records());
  records().call(L"Remove", {1});
  EXPECT_EQ(remaining(*items.get()), (std::vector{0, 1, 2, 7}));
}

TEST_F(CollectionObjectTest, PositionOfARecordComesBackByReference) {
  std::int16_t position = -5;
  EXPECT_EQ(configurations.call(L"GetItemNumber", {7, reference(position)}).result, S_OK);
  EXPECT_EQ(position, 4);
  EXPECT_EQ(configurations.call(L"GetItemNumber", {0, reference(position)}).result, S_OK);
  EXPECT_EQ(position, 1);
  EXPECT_EQ(configurations.call(L"GetItemNumber", {99, reference(position)}).result, S_OK);
  EXPECT_EQ(position, 0);

  VARIANT variant = emptyValue();
  EXPECT_EQ(configurations.call(L"GetItemNumber", {7, reference(variant)}).result, S_OK);
  EXPECT_EQ(variant.vt, VT_I2);
  EXPECT_EQ(variant.iVal, 4);
  std::int32_t wide = 0x7FFFFFFF;
  EXPECT_EQ(configurations.call(L"GetItemNumber", {7, reference(wide)}).result, S_OK);
  EXPECT_EQ(wide, 4);
  EXPECT_EQ(configurations.call(L"GetItemNumber", {7, 1}).result, S_OK);
}

TEST_F(CollectionObjectTest, CurrentRecordIsTheOneInTheCollectionOrAFreshOne) {
  EXPECT_TRUE(configurations.get(L"CurrentPACSConfig").object().isNothing());
  configurations.call(L"SetCurrentConfig", {7});
  EXPECT_TRUE(areSame(configurations.get(L"CurrentPACSConfig").object(),
                      records().call(L"Item", {L"7"}).object()));
  configurations.call(L"SetCurrentConfig", {8});
  EXPECT_EQ(configurations.get(L"CurrentPACSConfig").object().get(L"ExistingConfig").number(), 0);
  EXPECT_EQ(records().get(L"Count").number(), 4);
  const HostObject first = records().call(L"Item", {2}).object();
  EXPECT_EQ(configurations.putRef(L"CurrentPACSConfig", first).result, S_OK);
  EXPECT_TRUE(areSame(configurations.get(L"CurrentPACSConfig").object(), first));
  EXPECT_EQ(configurations.putRef(L"CurrentPACSConfig", nothing()).result, S_OK);
  EXPECT_TRUE(configurations.get(L"CurrentPACSConfig").object().isNothing());
}

TEST_F(CollectionObjectTest, NextIdentifierIsTheHighestPlusOne) {
  EXPECT_EQ(configurations.call(L"GetNextConfigID").number(), 8);
  EXPECT_EQ(configurations.get(L"NextConfigID").number(), 8);
  EXPECT_EQ(configurations.put(L"NextConfigID", 3).result, S_OK);
  EXPECT_EQ(configurations.get(L"NextConfigID").number(), 3);
}

TEST_F(CollectionObjectTest, RecordIsAddedUnderItsIdentifier) {
  EXPECT_EQ(configurations.call(L"AddCurrenttoCollection", {newRecord(20)}).result, S_OK);
  EXPECT_EQ(records().call(L"Item", {L"20"}).object().get(L"configID").number(), 20);
  expectError(configurations.call(L"AddCurrenttoCollection", {newRecord(20)}), 457,
              L"This key is already associated with an element of this collection");
  expectError(configurations.call(L"AddCurrenttoCollection", {nothing()}), 91, kNotSet);
  expectError(configurations.call(L"AddIntitialConfig"), 457,
              L"This key is already associated with an element of this collection");
}

TEST_F(CollectionObjectTest, LoadingTwiceCollides) {
  expectError(configurations.call(L"GetPACSConfigurations"), 457,
              L"This key is already associated with an element of this collection");
}

TEST_F(CollectionObjectTest, RemovedConfigurationIsGoneFromTheDatabaseToo) {
  EXPECT_EQ(configurations.call(L"RemoveConfig", {2}).result, S_OK);
  EXPECT_EQ(idsByPosition(), (std::vector{0, 1, 7}));
  EXPECT_EQ(site.value(L"SELECT count(*) FROM Interface_PACS_cfg"), L"2");
}

TEST_F(CollectionObjectTest, EveryStoredConfigurationIsSavedAgain) {
  records().call(L"Item", {L"7"}).object().put(L"Description", L"changed");
  EXPECT_EQ(configurations.call(L"SaveAllConfigurations").result, S_OK);
  EXPECT_EQ(site.value(L"SELECT description FROM Interface_PACS_cfg WHERE config_id = 7"),
            L"changed");
  EXPECT_EQ(site.value(L"SELECT count(*) FROM Interface_PACS_cfg"), L"3");
}

TEST_F(CollectionObjectTest, WorkstationsAreAddedFoundAndSaved) {
  EXPECT_EQ(workstations.call(L"AddWS", {2, L"PC9"}).result, S_OK);
  EXPECT_EQ(workstations.call(L"GetItemNumber", {L"PC9"}).number(), 4);
  EXPECT_EQ(workstations.call(L"GetItemNumber", {L"pc9"}).number(), 0);
  EXPECT_TRUE(workstations.call(L"CheckforAttachedWS", {2}).truth());
  EXPECT_FALSE(workstations.call(L"CheckforAttachedWS", {1}).truth());
  expectError(workstations.call(L"AddWS", {0, L"pc9"}), 457,
              L"This key is already associated with an element of this collection");
  const HostObject added = workstations.call(L"Item", {4}).object();
  EXPECT_EQ(added.get(L"Flag2").number(), 0);
  EXPECT_EQ(added.put(L"WorkStation", L"PC10").result, S_OK);
  EXPECT_EQ(added.put(L"Flag2", 1).result, S_OK);
  EXPECT_EQ(added.put(L"configID", 1).result, S_OK);
  EXPECT_EQ(added.call(L"SaveWorkstation").result, S_OK);
  EXPECT_EQ(workstations.call(L"SaveAllWorkStationSettings").result, S_OK);
  EXPECT_EQ(site.value(L"SELECT key_value FROM System_workstation_cfg WHERE pc_name = 'PC10'"),
            L"1");
}

}  // namespace
}  // namespace tlpacscfg::test
