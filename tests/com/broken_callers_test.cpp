#include <cstdint>
#include <limits>

#include "com/com_fixture.h"

/// Arguments that violate the rules of COM: the call fails and has no other effect.
namespace tlpacscfg::test {
namespace {

constexpr WORD kBothPuts = DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF;

class BrokenCallersTest : public ComTest {
 protected:
  HostObject config = HostObject::create(kConfig);
  HostObject registry = HostObject::create(kRegistry);

  BrokenCallersTest() { config.put(L"User_ID", 12); }

  /// Calls with exactly these parameters and expects an Empty result.
  HRESULT invoke(const HostObject& object, const wchar_t* member, WORD kind, DISPPARAMS parameters,
                 UINT* badArgument = nullptr) {
    VARIANT result = ofType(VT_I4);
    EXCEPINFO exception{};
    const HRESULT status = object.get()->Invoke(object.idOf(member), IID_NULL, 0, kind, &parameters,
                                                &result, &exception, badArgument);
    EXPECT_EQ(result.vt, VT_EMPTY);
    return status;
  }

  void expectRefusedPut(const wchar_t* member, const VARIANT& value, HRESULT expected,
                        WORD kind = DISPATCH_PROPERTYPUT) {
    const Outcome outcome = config.invoke(config.idOf(member), kind, {value}, {DISPID_PROPERTYPUT});
    EXPECT_EQ(nameOf(outcome.result), nameOf(expected)) << "type " << value.vt;
    EXPECT_FALSE(outcome.errorInfo.empty());
    EXPECT_EQ(outcome.badArgument, 0U);
    EXPECT_EQ(outcome.type(), VT_EMPTY);
    EXPECT_EQ(config.get(L"User_ID").number(), 12);
  }
};

TEST_F(BrokenCallersTest, ANullReferenceIsRefusedByEveryKindOfPut) {
  const VARIANT broken = ofType(VT_BYREF | VT_VARIANT);
  expectRefusedPut(L"User_ID", broken, E_POINTER);
  expectRefusedPut(L"Password", broken, E_POINTER);
  for (const WORD kind : {WORD{DISPATCH_PROPERTYPUT}, WORD{DISPATCH_PROPERTYPUTREF}, kBothPuts}) {
    expectRefusedPut(L"m_colPACSConfig", broken, E_POINTER, kind);
  }
}

TEST_F(BrokenCallersTest, AReferenceToANullReferenceIsRefused) {
  for (const int type :
       std::vector<int>{VT_BSTR, VT_I2, VT_DISPATCH, VT_ARRAY | VT_I2, VT_VARIANT}) {
    VARIANT inner = ofType(VT_BYREF | type);
    expectRefusedPut(L"User_ID", reference(inner), E_POINTER);
    expectRefusedPut(L"m_colPACSConfig", reference(inner), E_POINTER, kBothPuts);
  }
}

TEST_F(BrokenCallersTest, AReferenceToAReferenceToAVariantIsRefused) {
  VARIANT number = ofType(VT_I2);
  VARIANT inner = reference(number);
  expectRefusedPut(L"User_ID", reference(inner), E_INVALIDARG);
  expectRefusedPut(L"Password", reference(inner), E_INVALIDARG);
  expectRefusedPut(L"m_colPACSConfig", reference(inner), E_INVALIDARG, kBothPuts);
  VARIANT itself = ofType(VT_BYREF | VT_VARIANT);
  itself.pvarVal = &itself;
  expectRefusedPut(L"User_ID", itself, E_INVALIDARG);
}

TEST_F(BrokenCallersTest, AnArrayThatIsMissingIsATypeMismatch) {
  for (const int type : {VT_I2, VT_UI1, VT_BSTR, VT_VARIANT, VT_RECORD}) {
    VARIANT array = ofType(VT_ARRAY | type);
    SAFEARRAY* none = nullptr;
    VARIANT toArray = ofType(VT_BYREF | VT_ARRAY | type);
    toArray.pparray = &none;
    for (const wchar_t* member : {L"User_ID", L"Password", L"m_colPACSConfig"}) {
      expectRefusedPut(member, array, DISP_E_TYPEMISMATCH);
      expectRefusedPut(member, toArray, DISP_E_TYPEMISMATCH);
      expectRefusedPut(member, reference(array), DISP_E_TYPEMISMATCH);
    }
  }
}

TEST_F(BrokenCallersTest, AReferenceToAMissingObjectIsNoNumber) {
  IDispatch* none = nullptr;
  VARIANT object = ofType(VT_BYREF | VT_DISPATCH);
  object.ppdispVal = &none;
  expectRefusedPut(L"User_ID", object, DISP_E_TYPEMISMATCH);
  expectRefusedPut(L"Password", object, DISP_E_TYPEMISMATCH);
  EXPECT_EQ(nameOf(config.putRef(L"m_colPACSConfig", object).result), "S_OK");
  EXPECT_TRUE(config.get(L"m_colPACSConfig").object().isNothing());
}

TEST_F(BrokenCallersTest, RecordsAndTypesThatDoNotExistAreATypeMismatch) {
  const int types[] = {VT_RECORD,
                       VT_BYREF | VT_RECORD,
                       VT_VARIANT,
                       VT_LPSTR,
                       VT_CLSID,
                       VT_VECTOR,
                       VT_RESERVED,
                       15,
                       24,
                       0x0FFF,
                       VT_HRESULT,
                       VT_VOID,
                       VT_ARRAY | VT_EMPTY};
  VARIANT referred = ofType(VT_EMPTY);
  for (const int type : types) {
    VARIANT value = ofType(type);
    value.pvRecord = &referred;
    for (const wchar_t* member : {L"User_ID", L"Password", L"m_colPACSConfig"}) {
      expectRefusedPut(member, value, DISP_E_TYPEMISMATCH);
      expectRefusedPut(member, reference(value), DISP_E_TYPEMISMATCH);
    }
  }
}

TEST_F(BrokenCallersTest, AResultDoesNotFitIntoATypeThatDoesNotExist) {
  registry.put(L"AppRegPath", L"SOFTWARE\\TlPacsCfgTest-broken");
  ASSERT_TRUE(registry.call(L"CreateRegEntry", {1, L"name", L"value"}).truth());
  std::int64_t place = 77;
  for (const int type :
       std::vector<int>{VT_EMPTY, VT_RECORD, 0x0FFF, VT_ARRAY | VT_I2, VT_DISPATCH}) {
    VARIANT output = ofType(VT_BYREF | type);
    output.byref = &place;
    const Outcome outcome = registry.call(L"GetAppRegValue", {L"name", 1, output});
    EXPECT_EQ(nameOf(outcome.result), "DISP_E_TYPEMISMATCH") << type;
    EXPECT_EQ(outcome.type(), VT_EMPTY);
    EXPECT_EQ(place, 77);
  }
  VARIANT inner = ofType(VT_BYREF | VT_VARIANT);
  const Outcome outcome = registry.call(L"GetAppRegValue", {L"name", 1, reference(inner)});
  EXPECT_EQ(nameOf(outcome.result), "E_POINTER");
  EXPECT_TRUE(registry.call(L"DeleteAllAppRegEntries").truth());
}

TEST_F(BrokenCallersTest, NullArraysOfArgumentsAndNamesAreRefused) {
  VARIANT value = ofType(VT_I2);
  DISPID put = DISPID_PROPERTYPUT;
  for (const WORD kind : {WORD{DISPATCH_PROPERTYPUT}, WORD{DISPATCH_PROPERTYPUTREF}, kBothPuts}) {
    EXPECT_EQ(nameOf(invoke(config, L"m_colPACSConfig", kind, {nullptr, &put, 1, 1})), "E_POINTER");
    EXPECT_EQ(nameOf(invoke(config, L"m_colPACSConfig", kind, {&value, nullptr, 1, 1})),
              "E_POINTER");
    EXPECT_EQ(nameOf(invoke(config, L"m_colPACSConfig", kind, {nullptr, nullptr, 1, 0})),
              "E_POINTER");
  }
  EXPECT_EQ(nameOf(invoke(registry, L"GetRegValue", DISPATCH_METHOD, {nullptr, nullptr, 2, 0})),
            "E_POINTER");
}

TEST_F(BrokenCallersTest, NumbersOfArgumentsThatContradictEachOtherAreRefused) {
  VARIANT value = ofType(VT_I2);
  DISPID names[] = {DISPID_PROPERTYPUT, DISPID_PROPERTYPUT};
  constexpr UINT kHuge = std::numeric_limits<UINT>::max();
  const DISPPARAMS broken[] = {{&value, names, 1, 2},         {&value, names, 0, 1},
                               {nullptr, nullptr, 0, kHuge},  {&value, names, kHuge, 1},
                               {&value, names, kHuge, kHuge}, {nullptr, nullptr, kHuge, 0}};
  for (const DISPPARAMS& parameters : broken) {
    for (const WORD kind : {WORD{DISPATCH_PROPERTYPUT}, WORD{DISPATCH_PROPERTYPUTREF}, kBothPuts}) {
      EXPECT_EQ(nameOf(invoke(config, L"m_colPACSConfig", kind, parameters)),
                "DISP_E_BADPARAMCOUNT");
    }
    EXPECT_EQ(nameOf(invoke(registry, L"GetRegValue", DISPATCH_METHOD, parameters)),
              "DISP_E_BADPARAMCOUNT");
  }
  EXPECT_EQ(config.get(L"User_ID").number(), 12);
}

TEST_F(BrokenCallersTest, ANullNameIsRefusedInEveryPlace) {
  std::wstring member = L"GetRegValue", parameter = L"strKey";
  LPOLESTR lists[][3] = {{nullptr, parameter.data(), parameter.data()},
                         {member.data(), nullptr, parameter.data()},
                         {member.data(), parameter.data(), nullptr},
                         {nullptr, nullptr, nullptr}};
  for (auto& names : lists) {
    DISPID ids[3] = {7, 7, 7};
    EXPECT_EQ(nameOf(registry.get()->GetIDsOfNames(IID_NULL, names, 3, 0, ids)), "E_POINTER");
    for (const DISPID id : ids) EXPECT_EQ(id, DISPID_UNKNOWN);
  }
  LPOLESTR none = nullptr;
  DISPID id = 7;
  EXPECT_EQ(nameOf(config.get()->GetIDsOfNames(IID_NULL, &none, 1, 0, &id)), "E_POINTER");
  EXPECT_EQ(id, DISPID_UNKNOWN);
}

TEST_F(BrokenCallersTest, FactoriesRefuseNullOutputPointers) {
  const auto getClassObject =
      reinterpret_cast<HRESULT(STDMETHODCALLTYPE*)(REFCLSID, REFIID, void**)>(
          reinterpret_cast<void*>(GetProcAddress(host.component(), "DllGetClassObject")));
  ASSERT_NE(getClassObject, nullptr);
  CLSID id{};
  ASSERT_EQ(nameOf(CLSIDFromProgID(kConfig, &id)), "S_OK");
  EXPECT_EQ(nameOf(getClassObject(id, IID_IClassFactory, nullptr)), "E_POINTER");
  ComPtr<IClassFactory> factory;
  ASSERT_EQ(nameOf(getClassObject(id, IID_IClassFactory, reinterpret_cast<void**>(factory.out()))),
            "S_OK");
  EXPECT_EQ(nameOf(factory->QueryInterface(IID_IUnknown, nullptr)), "E_POINTER");
  EXPECT_EQ(nameOf(factory->CreateInstance(nullptr, IID_IDispatch, nullptr)), "E_POINTER");
  void* place = &id;
  EXPECT_EQ(nameOf(factory->CreateInstance(nullptr, IID_IClassFactory, &place)), "E_NOINTERFACE");
  EXPECT_EQ(place, nullptr);
}

class BrokenEnumerationsTest : public ComSiteTest {
 protected:
  BrokenEnumerationsTest() {
    for (const int id : {1, 2}) addConfiguration(id);
  }

  static ComPtr<IEnumVARIANT> recordsOf(const HostObject& component) {
    return enumeratorOf(component.get(L"colPACSConfig").object().get(L"ColPACSConfigs").object());
  }
};

TEST_F(BrokenEnumerationsTest, AHugeCountGetsAllItems) {
  constexpr ULONG kHuge = std::numeric_limits<ULONG>::max();
  const HostObject component = initialised();
  const auto items = recordsOf(component);
  ASSERT_TRUE(items);
  // A collection begins with configuration 0.
  VARIANT values[4];
  for (VARIANT& value : values) value = ofType(VT_I4);
  ULONG fetched = 77;
  EXPECT_EQ(nameOf(items->Next(kHuge, values, &fetched)), "S_FALSE");
  EXPECT_EQ(fetched, 3U);
  for (ULONG i = 0; i < fetched; ++i) {
    EXPECT_EQ(values[i].vt, VT_DISPATCH);
    VariantClear(&values[i]);
  }
  EXPECT_EQ(values[3].vt, VT_I4);
  EXPECT_EQ(nameOf(items->Next(kHuge, values, &fetched)), "S_FALSE");
  EXPECT_EQ(fetched, 0U);
  EXPECT_EQ(nameOf(items->Reset()), "S_OK");
  EXPECT_EQ(nameOf(items->Skip(kHuge)), "S_FALSE");
  EXPECT_EQ(nameOf(items->Skip(kHuge)), "S_FALSE");
  EXPECT_EQ(nameOf(items->Next(1, values, nullptr)), "S_FALSE");
}

TEST_F(BrokenEnumerationsTest, NullOutputPointersAreRefusedAndNothingIsSkipped) {
  const HostObject component = initialised();
  const auto items = recordsOf(component);
  ASSERT_TRUE(items);
  VARIANT values[2] = {};
  ULONG fetched = 77;
  EXPECT_EQ(nameOf(items->Next(1, nullptr, &fetched)), "E_POINTER");
  EXPECT_EQ(fetched, 0U);
  EXPECT_EQ(nameOf(items->Next(2, values, nullptr)), "E_POINTER");
  EXPECT_EQ(nameOf(items->Clone(nullptr)), "E_POINTER");
  EXPECT_EQ(nameOf(items->QueryInterface(IID_IUnknown, nullptr)), "E_POINTER");
  EXPECT_EQ(nameOf(items->Skip(3)), "S_OK");
  EXPECT_EQ(nameOf(items->Skip(1)), "S_FALSE");
}

}  // namespace
}  // namespace tlpacscfg::test
