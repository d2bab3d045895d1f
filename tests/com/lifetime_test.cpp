#include <objbase.h>

#include "com/com_fixture.h"
#include "com/expected_members.h"
#include "support/text.h"

namespace tlpacscfg::test {
namespace {

CLSID idOfClass(const wchar_t* progId) {
  CLSID id{};
  EXPECT_EQ(nameOf(CLSIDFromProgID(progId, &id)), "S_OK");
  return id;
}

class LifetimeTest : public ComTest {
 protected:
  ComPtr<IClassFactory> factory(const CLSID& id) const {
    ComPtr<IClassFactory> result;
    EXPECT_EQ(nameOf(getClassObject(id, IID_IClassFactory, result)), "S_OK");
    return result;
  }

  template <class Interface>
  HRESULT getClassObject(const CLSID& id, REFIID face, ComPtr<Interface>& result) const {
    const auto function = reinterpret_cast<HRESULT(STDMETHODCALLTYPE*)(REFCLSID, REFIID, void**)>(
        reinterpret_cast<void*>(GetProcAddress(host.component(), "DllGetClassObject")));
    return function(id, face, reinterpret_cast<void**>(result.out()));
  }
};

TEST_F(LifetimeTest, ComponentMayBeUnloadedUnlessAnObjectLives) {
  EXPECT_TRUE(host.mayUnload());
  HostObject config = HostObject::create(kConfig);
  HostObject registry = HostObject::create(kRegistry);
  EXPECT_FALSE(host.mayUnload());
  config.release();
  EXPECT_FALSE(host.mayUnload());
  registry.release();
  EXPECT_TRUE(host.mayUnload());
}

TEST_F(LifetimeTest, TenThousandObjectsComeAndGo) {
  const CLSID id = idOfClass(kConfig);
  for (int i = 0; i < 10000; ++i) {
    ComPtr<IDispatch> object;
    ASSERT_EQ(CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch,
                               reinterpret_cast<void**>(object.out())),
              S_OK);
  }
  EXPECT_TRUE(host.mayUnload());
}

TEST_F(LifetimeTest, TenThousandObjectsLiveAtOnce) {
  std::vector<HostObject> objects;
  for (int i = 0; i < 10000; ++i) {
    objects.push_back(HostObject::create(kConfig));
    objects.back().put(L"User_ID", i);
  }
  for (int i = 0; i < 10000; ++i) {
    ASSERT_EQ(objects[static_cast<std::size_t>(i)].get(L"User_ID").number(), i);
  }
  EXPECT_FALSE(host.mayUnload());
  objects.clear();
  EXPECT_TRUE(host.mayUnload());
}

TEST_F(LifetimeTest, LockedServerStaysLoaded) {
  ComPtr<IClassFactory> classes = factory(idOfClass(kConfig));
  EXPECT_EQ(nameOf(classes->LockServer(TRUE)), "S_OK");
  classes = nullptr;
  EXPECT_FALSE(host.mayUnload());
  classes = factory(idOfClass(kConfig));
  EXPECT_EQ(nameOf(classes->LockServer(FALSE)), "S_OK");
  EXPECT_FALSE(host.mayUnload());
  classes = nullptr;
  EXPECT_TRUE(host.mayUnload());
}

TEST_F(LifetimeTest, FactoryCreatesForEveryInterfaceOfTheObject) {
  const ComPtr<IClassFactory> classes = factory(idOfClass(kConfig));
  ComPtr<IUnknown> object;
  EXPECT_EQ(nameOf(classes->CreateInstance(nullptr, IID_IUnknown,
                                           reinterpret_cast<void**>(object.out()))),
            "S_OK");
  EXPECT_EQ(nameOf(classes->CreateInstance(nullptr, IID_IClassFactory,
                                           reinterpret_cast<void**>(object.out()))),
            "E_NOINTERFACE");
  EXPECT_FALSE(object);
  EXPECT_EQ(nameOf(classes->CreateInstance(classes.get(), IID_IUnknown,
                                           reinterpret_cast<void**>(object.out()))),
            "CLASS_E_NOAGGREGATION");
  EXPECT_EQ(nameOf(classes->CreateInstance(nullptr, IID_IUnknown, nullptr)), "E_POINTER");
  ComPtr<IDispatch> none;
  EXPECT_EQ(nameOf(classes->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(none.out()))),
            "E_NOINTERFACE");
}

TEST_F(LifetimeTest, OnlyTwoClassesAreCreatable) {
  for (const ExpectedClass& expected : expectedClasses()) {
    CLSID id{};
    ASSERT_EQ(nameOf(CLSIDFromString(expected.classId, &id)), "S_OK");
    ComPtr<IClassFactory> classes;
    const std::wstring name = expected.name;
    const bool creatable = name == L"clsConfig" || name == L"brnkregs";
    EXPECT_EQ(nameOf(getClassObject(id, IID_IClassFactory, classes)),
              creatable ? "S_OK" : "CLASS_E_CLASSNOTAVAILABLE")
        << toUtf8(name);
  }
  ComPtr<IDispatch> none;
  EXPECT_EQ(nameOf(getClassObject(idOfClass(kConfig), IID_IDispatch, none)), "E_NOINTERFACE");
}

class SharedObjectTest : public ComSiteTest {
 protected:
  SharedObjectTest() {
    addConfiguration(1);
    addWorkstation(L"PC1");
  }
};

TEST_F(SharedObjectTest, SameObjectHasTheSameIdentityHoweverItIsReached) {
  const HostObject object = initialised();
  const HostObject configurations = object.get(L"colPACSConfig").object();
  EXPECT_TRUE(areSame(object.get(L"colPACSConfig").object(), configurations));
  EXPECT_TRUE(areSame(object.get(L"m_colPACSConfig").object(), configurations));
  const HostObject records = configurations.get(L"ColPACSConfigs").object();
  EXPECT_TRUE(areSame(configurations.get(L"ColPACSConfigs").object(), records));
  const HostObject first = configurations.call(L"Item", {2}).object();
  EXPECT_TRUE(areSame(records.call(L"Item", {L"1"}).object(), first));
  configurations.call(L"SetCurrentConfig", {1});
  EXPECT_TRUE(areSame(configurations.get(L"CurrentPACSConfig").object(), first));
  EXPECT_FALSE(areSame(configurations.call(L"Item", {1}).object(), first));
  EXPECT_FALSE(areSame(HostObject::create(kConfig), object));
}

TEST_F(SharedObjectTest, ChangesStayWhenTheComObjectWasReleased) {
  const HostObject object = initialised();
  const HostObject configurations = object.get(L"colPACSConfig").object();
  configurations.call(L"Item", {2}).object().put(L"Description", L"changed");
  EXPECT_EQ(configurations.call(L"Item", {2}).object().get(L"Description").text(), L"changed");
}

TEST_F(SharedObjectTest, PartsOutliveTheObjectThatTheyCameFrom) {
  HostObject object = initialised();
  HostObject record = object.get(L"colPACSConfig").object().call(L"Item", {2}).object();
  object.release();
  EXPECT_FALSE(host.mayUnload());
  EXPECT_EQ(record.get(L"configID").number(), 1);
  record.release();
  EXPECT_TRUE(host.mayUnload());
}

TEST_F(SharedObjectTest, EnumeratorKeepsTheComponentLoaded) {
  HostObject object = initialised();
  ComPtr<IUnknown> enumerator;
  {
    const HostObject records =
        object.get(L"colPACSConfig").object().get(L"ColPACSConfigs").object();
    const Outcome outcome = records.invoke(DISPID_NEWENUM, DISPATCH_PROPERTYGET, {});
    enumerator = ComPtr<IUnknown>::sharing(outcome.value.get().punkVal);
  }
  object.release();
  EXPECT_FALSE(host.mayUnload());
  enumerator = nullptr;
  EXPECT_TRUE(host.mayUnload());
}

TEST_F(SharedObjectTest, ConnectionIsClosedWithTheLastObject) {
  // Only the last connection to a database can leave the WAL mode.
  const Probe impatient(L"DSN=TlTestSite;Timeout=50;");
  const auto journal = [&](const std::wstring& mode) {
    try {
      return impatient.value(L"PRAGMA journal_mode=" + mode).value_or(L"");
    } catch (const std::exception&) {
      return std::wstring(L"locked");
    }
  };
  ASSERT_EQ(journal(L"WAL"), L"wal");
  HostObject object = initialised();
  HostObject record = object.get(L"colPACSConfig").object().call(L"Item", {2}).object();
  object.release();
  // Creating an object marks the connection as closed; it stays open.
  HostObject::create(kConfig).release();
  EXPECT_NE(journal(L"DELETE"), L"delete");
  record.release();
  EXPECT_EQ(journal(L"DELETE"), L"delete");
}

}  // namespace
}  // namespace tlpacscfg::test
