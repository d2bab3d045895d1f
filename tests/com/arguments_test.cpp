#include "com/com_fixture.h"
#include "support/text.h"

namespace tlpacscfg::test {
namespace {

class ArgumentsTest : public ComTest {
 protected:
  HostObject config = HostObject::create(kConfig);
  HostObject registry = HostObject::create(kRegistry);
};

TEST_F(ArgumentsTest, NumberThatDoesNotFitIsAnOverflowAndTheValueStays) {
  config.put(L"User_ID", 12);
  const Argument tooLarge[] = {32768, -32769, L"40000", 1e9};
  for (const Argument& value : tooLarge) {
    const Outcome outcome = config.put(L"User_ID", value);
    expectRefused(outcome, DISP_E_OVERFLOW, L"Overflow");
    EXPECT_EQ(outcome.badArgument, 0U);
    EXPECT_EQ(config.get(L"User_ID").number(), 12);
  }
}

TEST_F(ArgumentsTest, ValueThatIsNotANumberIsATypeMismatchAndTheValueStays) {
  config.put(L"User_ID", 12);
  const Argument wrong[] = {L"twelve", L"", nullValue(), nothing(), config};
  for (const Argument& value : wrong) {
    const Outcome outcome = config.put(L"User_ID", value);
    expectRefused(outcome, DISP_E_TYPEMISMATCH, L"Type mismatch");
    EXPECT_EQ(outcome.badArgument, 0U);
    EXPECT_EQ(config.get(L"User_ID").number(), 12);
  }
}

TEST_F(ArgumentsTest, ValuesConvertToNumbers) {
  const std::pair<Argument, int> cases[] = {
      {L"12", 12}, {L" -7 ", -7}, {2.5, 2},          {3.5, 4},
      {true, -1},  {false, 0},    {emptyValue(), 0}, {L"1.5", 2},
  };
  for (const auto& [value, expected] : cases) {
    EXPECT_EQ(config.put(L"User_ID", value).result, S_OK);
    EXPECT_EQ(config.get(L"User_ID").number(), expected);
  }
}

TEST_F(ArgumentsTest, ValuesConvertToTheSameTextsInEveryLocale) {
  const std::pair<Argument, const wchar_t*> cases[] = {
      {1.5, L"1.5"}, {true, L"True"}, {false, L"False"}, {4000, L"4000"}, {emptyValue(), L""},
  };
  for (const auto& [value, expected] : cases) {
    EXPECT_EQ(config.put(L"SqlDbName", value).result, S_OK);
    EXPECT_EQ(config.get(L"SqlDbName").text(), expected);
  }
  expectRefused(config.put(L"SqlDbName", nullValue()), DISP_E_TYPEMISMATCH, L"Type mismatch");
}

TEST_F(ArgumentsTest, TextsMayHoldAnyCharacter) {
  const std::wstring value(L"a\0b\U0001F600", 4);
  config.put(L"SqlDbName", value);
  EXPECT_EQ(config.get(L"SqlDbName").text(), value);
}

TEST_F(ArgumentsTest, ArgumentsMayBeReferences) {
  std::int32_t number = 77;
  EXPECT_EQ(config.put(L"User_ID", reference(number)).result, S_OK);
  EXPECT_EQ(config.get(L"User_ID").number(), 77);
  VARIANT inner = reference(number);
  number = 78;
  EXPECT_EQ(config.put(L"User_ID", reference(inner)).result, S_OK);
  EXPECT_EQ(config.get(L"User_ID").number(), 78);
}

TEST_F(ArgumentsTest, NullReferenceIsRefused) {
  VARIANT broken{};
  broken.vt = VT_BYREF | VT_BSTR;
  expectRefused(config.put(L"User_ID", broken), E_POINTER, L"Invalid pointer");
  broken.vt = VT_BYREF | VT_VARIANT;
  const Outcome outcome = registry.call(L"GetAppRegValue", {L"name", 1, broken});
  expectRefused(outcome, E_POINTER, L"Invalid pointer");
  EXPECT_EQ(outcome.badArgument, 0U);
}

TEST_F(ArgumentsTest, IndexOfABadArgumentCountsFromTheLast) {
  const Outcome outcome = registry.call(L"CreateRegEntry", {L"one", L"name", L"value"});
  expectRefused(outcome, DISP_E_TYPEMISMATCH, L"Type mismatch");
  EXPECT_EQ(outcome.badArgument, 2U);
}

TEST_F(ArgumentsTest, FirstBadArgumentIsTheOneReported) {
  const Outcome outcome = registry.call(L"SetAppRegValue", {nullValue(), L"one", L"value"});
  EXPECT_EQ(outcome.badArgument, 2U);
}

TEST_F(ArgumentsTest, ArgumentsMayBeNamedInAnyOrder) {
  const std::wstring key = L"SOFTWARE\\TlPacsCfgTest-named";
  registry.put(L"AppRegPath", key);
  const HostObject& object = registry;
  const DISPID id = object.idOf(L"CreateRegEntry");
  const Argument type(1), name(L"name"), value(L"named value");
  // ValueToAdd and KeyToAdd by name, pDatatype by position.
  EXPECT_TRUE(
      object.invoke(id, DISPATCH_METHOD, {value.get(), name.get(), type.get()}, {2, 1}).truth());
  EXPECT_EQ(object.call(L"GetRegValue", {L"name", L""}).text(), L"named value");
  EXPECT_TRUE(object.call(L"DeleteAllAppRegEntries").truth());
}

TEST_F(ArgumentsTest, NameThatTheMemberDoesNotHaveIsNotFound) {
  const DISPID id = registry.idOf(L"GetRegValue");
  const Argument text(L"x");
  for (const DISPID name : {2, -1, DISPID_PROPERTYPUT}) {
    expectRefused(registry.invoke(id, DISPATCH_METHOD, {text.get(), text.get()}, {name}),
                  DISP_E_PARAMNOTFOUND, L"Named argument not found");
  }
  // Given by position already.
  expectRefused(registry.invoke(id, DISPATCH_METHOD, {text.get(), text.get()}, {0}),
                DISP_E_PARAMNOTFOUND, L"Named argument not found");
}

TEST_F(ArgumentsTest, RequiredArgumentMayNotBeLeftOut) {
  expectRefused(registry.call(L"GetRegValue", {L"name"}), DISP_E_BADPARAMCOUNT,
                L"Wrong number of arguments or invalid property assignment");
  const Outcome outcome = registry.call(L"GetRegValue", {missingArgument(), L"x"});
  expectRefused(outcome, DISP_E_PARAMNOTOPTIONAL, L"Argument not optional");
  EXPECT_EQ(outcome.badArgument, 1U);
  const Argument text(L"x");
  expectRefused(registry.invoke(registry.idOf(L"GetRegValue"), DISPATCH_METHOD, {text.get()}, {1}),
                DISP_E_PARAMNOTOPTIONAL, L"Argument not optional");
}

TEST_F(ArgumentsTest, ValueOfAPutMustBeNamedSo) {
  const Argument value(5);
  const Outcome outcome =
      config.invoke(config.idOf(L"User_ID"), DISPATCH_PROPERTYPUT, {value.get()}, {0});
  expectRefused(outcome, DISP_E_PARAMNOTFOUND, L"Named argument not found");
}

TEST_F(ArgumentsTest, CallerThatSetsBothPutFlagsLeavesTheChoiceToTheValue) {
  constexpr WORD kBoth = DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF;
  const Argument number(5);
  EXPECT_EQ(
      config.invoke(config.idOf(L"User_ID"), kBoth, {number.get()}, {DISPID_PROPERTYPUT}).result,
      S_OK);
  EXPECT_EQ(config.get(L"User_ID").number(), 5);
  EXPECT_EQ(
      config.invoke(config.idOf(L"colPACSConfig"), kBoth, {nothing()}, {DISPID_PROPERTYPUT}).result,
      S_OK);
}

TEST_F(ArgumentsTest, UnknownMembersAreNotFound) {
  EXPECT_EQ(config.idOf(L"NoSuchMember"), DISPID_UNKNOWN);
  std::wstring name = L"NoSuchMember";
  LPOLESTR names = name.data();
  DISPID id = 0;
  EXPECT_EQ(nameOf(config.get()->GetIDsOfNames(IID_NULL, &names, 1, LOCALE_USER_DEFAULT, &id)),
            "DISP_E_UNKNOWNNAME");
  for (const DISPID unknown : {DISPID_UNKNOWN, DISPID_VALUE, DISPID_NEWENUM, 4711}) {
    expectRefused(config.invoke(unknown, DISPATCH_METHOD | DISPATCH_PROPERTYGET, {}),
                  DISP_E_MEMBERNOTFOUND, L"Object doesn't support this property or method");
  }
}

TEST_F(ArgumentsTest, UnknownParameterNamesLeaveTheKnownOnesNumbered) {
  std::wstring member = L"GetRegValue", known = L"STRDEFAULTSTRING", unknown = L"strNothing";
  LPOLESTR names[] = {member.data(), unknown.data(), known.data()};
  DISPID ids[3] = {};
  EXPECT_EQ(nameOf(registry.get()->GetIDsOfNames(IID_NULL, names, 3, LOCALE_USER_DEFAULT, ids)),
            "DISP_E_UNKNOWNNAME");
  EXPECT_EQ(ids[0], registry.idOf(L"GetRegValue"));
  EXPECT_EQ(ids[1], DISPID_UNKNOWN);
  EXPECT_EQ(ids[2], 1);
}

TEST_F(ArgumentsTest, NullPointersAreRefused) {
  IDispatch& object = *config.get();
  DISPPARAMS none{};
  std::wstring name = L"Version";
  LPOLESTR names = name.data();
  DISPID id = 0;
  EXPECT_EQ(nameOf(object.QueryInterface(IID_IDispatch, nullptr)), "E_POINTER");
  EXPECT_EQ(nameOf(object.GetTypeInfoCount(nullptr)), "E_POINTER");
  EXPECT_EQ(nameOf(object.GetTypeInfo(0, 0, nullptr)), "E_POINTER");
  EXPECT_EQ(nameOf(object.GetIDsOfNames(IID_NULL, nullptr, 1, 0, &id)), "E_POINTER");
  EXPECT_EQ(nameOf(object.GetIDsOfNames(IID_NULL, &names, 1, 0, nullptr)), "E_POINTER");
  EXPECT_EQ(nameOf(object.GetIDsOfNames(IID_NULL, &names, 0, 0, &id)), "E_INVALIDARG");
  EXPECT_EQ(nameOf(object.Invoke(config.idOf(L"Version"), IID_NULL, 0, DISPATCH_METHOD, nullptr,
                                 nullptr, nullptr, nullptr)),
            "E_INVALIDARG");
  none.cArgs = 1;
  EXPECT_EQ(nameOf(object.Invoke(registry.idOf(L"AppName"), IID_NULL, 0, DISPATCH_PROPERTYPUT,
                                 &none, nullptr, nullptr, nullptr)),
            "E_POINTER");
}

TEST_F(ArgumentsTest, CallerNeedNotTakeTheResultTheExceptionOrTheBadArgument) {
  DISPPARAMS none{};
  IDispatch& object = *config.get();
  EXPECT_EQ(nameOf(object.Invoke(config.idOf(L"Version"), IID_NULL, 0, DISPATCH_METHOD, &none,
                                 nullptr, nullptr, nullptr)),
            "S_OK");
  Argument text(L"no truth value");
  VARIANT value = text.get();
  DISPID put = DISPID_PROPERTYPUT;
  DISPPARAMS one{&value, &put, 1, 1};
  EXPECT_EQ(nameOf(object.Invoke(config.idOf(L"TlCommClientEnabled"), IID_NULL, 0,
                                 DISPATCH_PROPERTYPUT, &one, nullptr, nullptr, nullptr)),
            "DISP_E_EXCEPTION");
  EXPECT_EQ(nameOf(object.Invoke(config.idOf(L"User_ID"), IID_NULL, 0, DISPATCH_PROPERTYPUT, &one,
                                 nullptr, nullptr, nullptr)),
            "DISP_E_TYPEMISMATCH");
}

TEST_F(ArgumentsTest, ReservedInterfaceMustBeNull) {
  DISPPARAMS none{};
  std::wstring name = L"Version";
  LPOLESTR names = name.data();
  DISPID id = 0;
  IDispatch& object = *config.get();
  EXPECT_EQ(nameOf(object.GetIDsOfNames(IID_IDispatch, &names, 1, 0, &id)),
            "DISP_E_UNKNOWNINTERFACE");
  EXPECT_EQ(nameOf(object.Invoke(1, IID_IDispatch, 0, DISPATCH_PROPERTYGET, &none, nullptr, nullptr,
                                 nullptr)),
            "DISP_E_UNKNOWNINTERFACE");
  ITypeInfo* info = nullptr;
  EXPECT_EQ(nameOf(object.GetTypeInfo(1, 0, &info)), "DISP_E_BADINDEX");
}

TEST_F(ArgumentsTest, SuccessLeavesNoErrorBehind) {
  EXPECT_EQ(config.put(L"User_ID", L"x").errorInfo, L"Type mismatch");
  EXPECT_EQ(config.put(L"User_ID", 1).errorInfo, L"");
}

TEST_F(ArgumentsTest, ArgumentsOfAPropertyGoToTheDefaultMemberOfItsObject) {
  expectError(config.get(L"colPACSConfig", {1}), 91,
              L"Object variable or With block variable not set");
  expectRefused(config.get(L"User_ID", {1}), DISP_E_BADPARAMCOUNT,
                L"Wrong number of arguments or invalid property assignment");
}

}  // namespace
}  // namespace tlpacscfg::test
