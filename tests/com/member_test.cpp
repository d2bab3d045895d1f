#include "com/com_fixture.h"

#include <ocidl.h>

#include <set>

#include "com/expected_members.h"
#include "support/text.h"

namespace tlpacscfg::test {
namespace {

GUID guidOf(const wchar_t* text) {
  GUID id{};
  EXPECT_EQ(nameOf(IIDFromString(text, &id)), "S_OK") << toUtf8(text);
  return id;
}

std::wstring textOf(REFGUID id) {
  wchar_t text[39] = {};
  StringFromGUID2(id, text, 39);
  return text;
}

std::wstring take(BSTR text) {
  std::wstring result(text ? text : L"", SysStringLen(text));
  SysFreeString(text);
  return result;
}

ComPtr<ITypeLib> library() {
  ComPtr<ITypeLib> library;
  EXPECT_EQ(nameOf(LoadTypeLibEx(componentPath().c_str(), REGKIND_NONE, library.out())), "S_OK");
  return library;
}

ComPtr<ITypeInfo> typeOf(const wchar_t* id) {
  ComPtr<ITypeInfo> type;
  EXPECT_EQ(nameOf(library()->GetTypeInfoOfGuid(guidOf(id), type.out())), "S_OK");
  return type;
}

std::wstring memberName(ITypeInfo& type, MEMBERID id = MEMBERID_NIL) {
  BSTR name = nullptr;
  type.GetDocumentation(id, &name, nullptr, nullptr, nullptr);
  return take(name);
}

TYPEATTR attributesOf(ITypeInfo& type) {
  TYPEATTR* attributes = nullptr;
  EXPECT_EQ(nameOf(type.GetTypeAttr(&attributes)), "S_OK");
  const TYPEATTR copy = *attributes;
  type.ReleaseTypeAttr(attributes);
  return copy;
}

/// One function of an interface in the type library.
struct Described {
  std::wstring name;
  DISPID id;
  wchar_t kind;
  std::vector<std::wstring> parameters;
  VARTYPE result;
};

wchar_t kindOf(INVOKEKIND kind) {
  switch (kind) {
    case INVOKE_PROPERTYGET:
      return L'G';
    case INVOKE_PROPERTYPUT:
      return L'P';
    case INVOKE_PROPERTYPUTREF:
      return L'R';
    default:
      return L'M';
  }
}

std::vector<Described> functionsOf(ITypeInfo& type) {
  std::vector<Described> functions;
  for (UINT i = 0; i < attributesOf(type).cFuncs; ++i) {
    FUNCDESC* description = nullptr;
    EXPECT_EQ(nameOf(type.GetFuncDesc(i, &description)), "S_OK");
    BSTR names[50] = {};
    UINT count = 0;
    type.GetNames(description->memid, names, 50, &count);
    Described function{.name = take(names[0]),
                       .id = description->memid,
                       .kind = kindOf(description->invkind),
                       .parameters = {},
                       .result = description->elemdescFunc.tdesc.vt};
    for (UINT n = 1; n < count; ++n) {
      std::wstring name = take(names[n]);
      if (function.kind == L'M') function.parameters.push_back(std::move(name));
    }
    EXPECT_EQ(description->cParams, function.kind == L'P' || function.kind == L'R'
                                        ? 1
                                        : static_cast<SHORT>(function.parameters.size()))
        << toUtf8(function.name);
    type.ReleaseFuncDesc(description);
    functions.push_back(std::move(function));
  }
  return functions;
}

/// "Name kind(parameters)", one for each way to call a member.
using Calls = std::multiset<std::wstring>;

std::wstring callOf(const std::wstring& name, wchar_t kind,
                    const std::vector<std::wstring>& parameters) {
  std::wstring text = name + L" " + kind + L"(";
  for (const std::wstring& parameter : parameters) text += parameter + L",";
  return text + L")";
}

Calls callsOf(const ExpectedClass& expected) {
  Calls calls;
  for (const ExpectedMember& member : expected.members) {
    for (const wchar_t kind : std::wstring_view(member.kinds)) {
      calls.insert(callOf(member.name, kind, member.parameters));
    }
  }
  return calls;
}

Calls callsOf(ITypeInfo& type) {
  Calls calls;
  for (const Described& function : functionsOf(type)) {
    calls.insert(callOf(function.name, function.kind, function.parameters));
  }
  return calls;
}

WORD flagsOf(wchar_t kind) {
  switch (kind) {
    case L'G':
      return DISPATCH_PROPERTYGET;
    case L'P':
      return DISPATCH_PROPERTYPUT;
    case L'R':
      return DISPATCH_PROPERTYPUTREF;
    default:
      return DISPATCH_METHOD;
  }
}

class MemberTest : public ComSiteTest {
 protected:
  HostObject config = initialised();

  /// An object of the class.
  HostObject objectOf(const std::wstring& name) {
    if (name == L"clsConfig") return config;
    if (name == L"brnkregs") return HostObject::create(kRegistry);
    const HostObject workstations = config.get(L"colWS").object();
    const HostObject configurations = config.get(L"colPACSConfig").object();
    if (name == L"colWorkstation") return workstations;
    if (name == L"colPACSConfiguration") return configurations;
    if (name == L"Collection") return configurations.get(L"ColPACSConfigs").object();
    if (name == L"clsPACSConfiguration") return configurations.call(L"Item", {1}).object();
    workstations.call(L"AddWS", {0, L"PC1"});
    return workstations.call(L"Item", {1}).object();
  }
};

TEST_F(MemberTest, TypeLibraryHasItsOwnIdentifierAndName) {
  TLIBATTR* attributes = nullptr;
  const ComPtr<ITypeLib> types = library();
  ASSERT_EQ(nameOf(types->GetLibAttr(&attributes)), "S_OK");
  EXPECT_EQ(textOf(attributes->guid), kLibraryId);
  EXPECT_EQ(attributes->wMajorVerNum, 1);
  EXPECT_EQ(attributes->wMinorVerNum, 0);
  types->ReleaseTLibAttr(attributes);
  BSTR name = nullptr;
  types->GetDocumentation(-1, &name, nullptr, nullptr, nullptr);
  EXPECT_EQ(take(name), L"TLPACSCFG");
}

TEST_F(MemberTest, TypeLibraryHoldsEveryClassAndItsInterfaceAndNothingElse) {
  EXPECT_EQ(library()->GetTypeInfoCount(), 2 * expectedClasses().size());
  for (const ExpectedClass& expected : expectedClasses()) {
    SCOPED_TRACE(toUtf8(expected.name));
    const ComPtr<ITypeInfo> type = typeOf(expected.classId);
    EXPECT_EQ(memberName(*type.get()), expected.name);
    EXPECT_EQ(attributesOf(*type.get()).typekind, TKIND_COCLASS);
    const std::wstring name = expected.name;
    const bool creatable = name == L"clsConfig" || name == L"brnkregs";
    EXPECT_EQ((attributesOf(*type.get()).wTypeFlags & TYPEFLAG_FCANCREATE) != 0, creatable);
    const ComPtr<ITypeInfo> face = typeOf(expected.interfaceId);
    EXPECT_EQ(memberName(*face.get()), L"_" + name);
    EXPECT_EQ(attributesOf(*face.get()).typekind, TKIND_DISPATCH);
  }
}

TEST_F(MemberTest, TypeLibraryDescribesEveryMemberAndNoOther) {
  for (const ExpectedClass& expected : expectedClasses()) {
    SCOPED_TRACE(toUtf8(expected.name));
    EXPECT_EQ(callsOf(*typeOf(expected.interfaceId).get()), callsOf(expected));
  }
}

TEST_F(MemberTest, ObjectsKnowTheNamesAndNumbersOfTheTypeLibrary) {
  for (const ExpectedClass& expected : expectedClasses()) {
    SCOPED_TRACE(toUtf8(expected.name));
    const HostObject object = objectOf(expected.name);
    for (const Described& function : functionsOf(*typeOf(expected.interfaceId).get())) {
      EXPECT_EQ(object.idOf(function.name), function.id) << toUtf8(function.name);
      EXPECT_EQ(object.idOf(upperCase(function.name)), function.id) << toUtf8(function.name);
    }
  }
}

TEST_F(MemberTest, ParametersAreNumberedInTheirOrder) {
  for (const ExpectedClass& expected : expectedClasses()) {
    const HostObject object = objectOf(expected.name);
    for (const ExpectedMember& member : expected.members) {
      SCOPED_TRACE(toUtf8(member.name));
      std::wstring name = member.name;
      std::vector<std::wstring> parameters = member.parameters;
      std::vector<LPOLESTR> names = {name.data()};
      for (std::wstring& parameter : parameters) names.push_back(parameter.data());
      std::vector<DISPID> ids(names.size());
      EXPECT_EQ(nameOf(object.get()->GetIDsOfNames(IID_NULL, names.data(),
                                                   static_cast<UINT>(names.size()),
                                                   LOCALE_USER_DEFAULT, ids.data())),
                "S_OK");
      for (std::size_t i = 1; i < ids.size(); ++i) {
        EXPECT_EQ(ids[i], static_cast<DISPID>(i - 1));
      }
    }
  }
}

TEST_F(MemberTest, EveryPropertyReadsAsTheTypeThatTheLibraryNames) {
  for (const ExpectedClass& expected : expectedClasses()) {
    const HostObject object = objectOf(expected.name);
    for (const Described& function : functionsOf(*typeOf(expected.interfaceId).get())) {
      if (function.kind != L'G') continue;
      SCOPED_TRACE(toUtf8(expected.name + (L"." + function.name)));
      const Outcome read = object.invoke(function.id, DISPATCH_PROPERTYGET, {});
      EXPECT_EQ(nameOf(read.result), "S_OK");
      if (function.result == VT_PTR) {
        EXPECT_EQ(read.type(), VT_DISPATCH);
      } else if (function.result != VT_VARIANT) {
        EXPECT_EQ(read.type(), function.result);
      }
    }
  }
}

TEST_F(MemberTest, EveryMemberCountsItsArguments) {
  for (const ExpectedClass& expected : expectedClasses()) {
    const HostObject object = objectOf(expected.name);
    for (const ExpectedMember& member : expected.members) {
      for (const wchar_t kind : std::wstring_view(member.kinds)) {
        if (kind == L'G') continue;
        SCOPED_TRACE(toUtf8(std::wstring(member.name) + L" " + kind));
        const std::size_t count = kind == L'M' ? member.parameters.size() : 1;
        std::vector<DISPID> names;
        if (kind != L'M') names.push_back(DISPID_PROPERTYPUT);
        const Outcome outcome = object.invoke(object.idOf(member.name), flagsOf(kind),
                                              std::vector<VARIANT>(count + 1, nothing()), names);
        expectRefused(outcome, DISP_E_BADPARAMCOUNT,
                      L"Wrong number of arguments or invalid property assignment");
      }
    }
  }
}

TEST_F(MemberTest, PropertiesThatHostsOnlyReadRefuseToBeSet) {
  for (const ExpectedClass& expected : expectedClasses()) {
    const HostObject object = objectOf(expected.name);
    for (const ExpectedMember& member : expected.members) {
      for (const wchar_t kind : {L'P', L'R'}) {
        if (std::wstring_view(member.kinds).find(kind) != std::wstring_view::npos) continue;
        SCOPED_TRACE(toUtf8(std::wstring(member.name) + L" " + kind));
        const Outcome outcome = object.invoke(object.idOf(member.name), flagsOf(kind), {nothing()},
                                              {DISPID_PROPERTYPUT});
        expectRefused(outcome, DISP_E_MEMBERNOTFOUND,
                      L"Object doesn't support this property or method");
      }
    }
  }
}

TEST_F(MemberTest, ItemIsWhatHostsMayLeaveUnnamed) {
  for (const ExpectedClass& expected : expectedClasses()) {
    const HostObject object = objectOf(expected.name);
    for (const ExpectedMember& member : expected.members) {
      EXPECT_EQ(object.idOf(member.name) == DISPID_VALUE, member.isDefault) << toUtf8(member.name);
    }
  }
}

TEST_F(MemberTest, ObjectsLeadToTheirTypeInformation) {
  for (const ExpectedClass& expected : expectedClasses()) {
    SCOPED_TRACE(toUtf8(expected.name));
    const HostObject object = objectOf(expected.name);
    UINT count = 0;
    EXPECT_EQ(nameOf(object.get()->GetTypeInfoCount(&count)), "S_OK");
    EXPECT_EQ(count, 1U);
    ComPtr<ITypeInfo> face;
    ASSERT_EQ(nameOf(object.get()->GetTypeInfo(0, LOCALE_USER_DEFAULT, face.out())), "S_OK");
    EXPECT_EQ(textOf(attributesOf(*face.get()).guid), expected.interfaceId);

    ComPtr<IProvideClassInfo> provider;
    ASSERT_EQ(nameOf(object.get()->QueryInterface(IID_IProvideClassInfo,
                                                  reinterpret_cast<void**>(provider.out()))),
              "S_OK");
    ComPtr<ITypeInfo> type;
    ASSERT_EQ(nameOf(provider->GetClassInfo(type.out())), "S_OK");
    EXPECT_EQ(textOf(attributesOf(*type.get()).guid), expected.classId);
    EXPECT_EQ(memberName(*type.get()), expected.name);
  }
}

TEST_F(MemberTest, ObjectsOfferTheInterfacesOfTheirClassAndSayThatTheyDescribeErrors) {
  for (const ExpectedClass& expected : expectedClasses()) {
    SCOPED_TRACE(toUtf8(expected.name));
    const HostObject object = objectOf(expected.name);
    const GUID face = guidOf(expected.interfaceId);
    ComPtr<IDispatch> dispatch;
    EXPECT_EQ(nameOf(object.get()->QueryInterface(face, reinterpret_cast<void**>(dispatch.out()))),
              "S_OK");
    ComPtr<ISupportErrorInfo> errors;
    ASSERT_EQ(nameOf(object.get()->QueryInterface(IID_ISupportErrorInfo,
                                                  reinterpret_cast<void**>(errors.out()))),
              "S_OK");
    EXPECT_EQ(nameOf(errors->InterfaceSupportsErrorInfo(IID_IDispatch)), "S_OK");
    EXPECT_EQ(nameOf(errors->InterfaceSupportsErrorInfo(face)), "S_OK");
    EXPECT_EQ(nameOf(errors->InterfaceSupportsErrorInfo(IID_IPersist)), "S_FALSE");
  }
}

}  // namespace
}  // namespace tlpacscfg::test
