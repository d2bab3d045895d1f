#include <cstdlib>
#include <limits>
#include <memory>
#include <random>
#include <set>

#include "com/com_fixture.h"
#include "com/expected_members.h"
#include "support/text.h"

namespace tlpacscfg::test {
namespace {

/// A number from the environment, for long runs.
unsigned setting(const char* name, unsigned fallback) {
  const char* const text = std::getenv(name);
  return text ? static_cast<unsigned>(std::strtoul(text, nullptr, 10)) : fallback;
}

/// Makes random arguments, valid ones and malformed ones.
class RandomArguments {
 public:
  RandomArguments(unsigned seed, std::vector<HostObject> objects)
      : random_(seed), objects_(std::move(objects)) {}
  ~RandomArguments() { forget(); }
  RandomArguments(const RandomArguments&) = delete;
  RandomArguments& operator=(const RandomArguments&) = delete;

  unsigned below(unsigned limit) { return static_cast<unsigned>(random_() % limit); }

  /// The value, and what it refers to, lives until forget() is called.
  VARIANT make() {
    if (below(12) == 0) return broken();
    VARIANT* const place = kept_.emplace_back(std::make_unique<VARIANT>()).get();
    VariantInit(place);
    if (below(4) != 0) {
      fill(*place);
      return *place;
    }
    VARIANT* const target = kept_.emplace_back(std::make_unique<VARIANT>()).get();
    VariantInit(target);
    fill(*target);
    if (below(2) == 0 || target->vt == VT_EMPTY || target->vt == VT_NULL) {
      place->vt = VT_BYREF | VT_VARIANT;
      place->pvarVal = target;
    } else {
      place->vt = static_cast<VARTYPE>(VT_BYREF | target->vt);
      place->byref = below(20) == 0 ? nullptr : &target->llVal;
    }
    return *place;
  }

  void forget() {
    // Referents are in the list themselves; malformed values own nothing.
    for (const auto& value : kept_) {
      const bool owns = value->vt == VT_BSTR || value->vt == VT_DISPATCH ||
                        value->vt == VT_UNKNOWN || value->vt == (VT_ARRAY | VT_I2);
      if (owns) VariantClear(value.get());
    }
    kept_.clear();
  }

  /// The parameters, sometimes with counts that contradict the arrays.
  DISPPARAMS disturbed(DISPPARAMS parameters) {
    constexpr UINT kHuge = std::numeric_limits<UINT>::max();
    switch (below(60)) {
      case 0:
        parameters.rgvarg = nullptr;
        break;
      case 1:
        parameters.rgdispidNamedArgs = nullptr;
        break;
      case 2:
        parameters.cNamedArgs = parameters.cArgs + 1 + below(3);
        break;
      case 3:
        parameters.cArgs = kHuge;
        break;
      case 4:
        parameters.cNamedArgs = kHuge;
        break;
      case 5:
        parameters.cArgs = 0;
        break;
      default:
        break;
    }
    return parameters;
  }

 private:
  /// A malformed value; owns nothing.
  VARIANT broken() {
    static SAFEARRAY* noArray = nullptr;
    static IDispatch* noObject = nullptr;
    VARIANT value{};
    switch (below(8)) {
      case 0:
        value.vt = VT_BYREF | VT_VARIANT;
        break;
      case 1: {
        VARIANT* const inner = kept_.emplace_back(std::make_unique<VARIANT>()).get();
        *inner = broken();
        value.vt = VT_BYREF | VT_VARIANT;
        value.pvarVal = inner;
        break;
      }
      case 2:
        value.vt = static_cast<VARTYPE>(VT_ARRAY | below(0x100));
        break;
      case 3:
        value.vt = static_cast<VARTYPE>(VT_BYREF | VT_ARRAY | below(0x100));
        value.pparray = &noArray;
        break;
      case 4:
        value.vt = below(2) == 0 ? VT_BYREF | VT_DISPATCH : VT_BYREF | VT_UNKNOWN;
        value.ppdispVal = &noObject;
        break;
      case 5:
        value.vt = below(2) == 0 ? VT_RECORD : VT_BYREF | VT_RECORD;
        value.pvRecord = &noObject;
        break;
      case 6: {
        // Unassigned types with reserved flags.
        constexpr VARTYPE kNoTypes[] = {15, 24, 25, 26, 30, 31, 36, 64, 72, 0x0FFF, 0x0ABC};
        constexpr VARTYPE kFlags[] = {0, VT_VECTOR, VT_RESERVED, VT_VECTOR | VT_RESERVED};
        value.vt = kNoTypes[below(std::size(kNoTypes))] | kFlags[below(std::size(kFlags))];
        value.llVal = number();
        break;
      }
      default:
        value.vt = static_cast<VARTYPE>(VT_BYREF | below(0x4000));
    }
    return value;
  }

  std::int64_t number() {
    constexpr std::int64_t kBorders[] = {0,     1,     -1,         38,          255,        256,
                                         32767, 32768, -32768,     -32769,      65535,      65536,
                                         7,     2,     2147483647, -2147483648, 2147483648, 39};
    return kBorders[below(std::size(kBorders))] + (below(8) == 0 ? below(3) : 0);
  }

  double real() {
    constexpr double kOdd[] = {
        0.5,    1.5,    32767.5, -32768.5, 1e300,
        -1e300, 1e-300, 2.5,     2958466,  std::numeric_limits<double>::infinity()};
    const unsigned choice = below(std::size(kOdd) + 2);
    if (choice < std::size(kOdd)) return kOdd[choice];
    return choice == std::size(kOdd) ? std::nan("") : static_cast<double>(number());
  }

  std::wstring text() {
    switch (below(8)) {
      case 0:
        return {};
      case 1:
        return std::to_wstring(number());
      case 2:
        return L"PC-1";
      case 3:
        return std::wstring(10'000, L'x');
      case 4:
        return std::wstring(L"a\0b", 3);
      case 5:
        return L"&H7FFFF";
      case 6:
        return L"1e400";
      default: {
        std::wstring letters;
        for (unsigned i = below(20); i > 0; --i) letters += static_cast<wchar_t>(1 + below(0xFFFF));
        return letters;
      }
    }
  }

  void fill(VARIANT& value) {
    constexpr VARTYPE kTypes[] = {VT_EMPTY,    VT_NULL,     VT_ERROR,   VT_BOOL,         VT_I1,
                                  VT_UI1,      VT_I2,       VT_UI2,     VT_I4,           VT_UI4,
                                  VT_I8,       VT_UI8,      VT_R4,      VT_R8,           VT_CY,
                                  VT_DATE,     VT_BSTR,     VT_BSTR,    VT_I2,           VT_BSTR,
                                  VT_DISPATCH, VT_DISPATCH, VT_UNKNOWN, VT_ARRAY | VT_I2};
    const VARTYPE type = kTypes[below(std::size(kTypes))];
    switch (type) {
      case VT_ERROR:
        value.scode = below(2) == 0 ? DISP_E_PARAMNOTFOUND : E_FAIL;
        break;
      case VT_R4:
        value.fltVal = static_cast<float>(number());
        break;
      case VT_R8:
      case VT_DATE:
        value.dblVal = real();
        break;
      case VT_BSTR: {
        const std::wstring letters = text();
        value.bstrVal = letters.empty() && below(2) == 0
                            ? nullptr
                            : SysAllocStringLen(letters.data(), static_cast<UINT>(letters.size()));
        break;
      }
      case VT_DISPATCH:
      case VT_UNKNOWN: {
        const unsigned choice = below(static_cast<unsigned>(objects_.size()) + 1);
        value.pdispVal = choice < objects_.size() ? objects_[choice].get() : nullptr;
        if (value.pdispVal) value.pdispVal->AddRef();
        break;
      }
      case VT_ARRAY | VT_I2:
        value.parray = SafeArrayCreateVector(VT_I2, 0, below(3));
        break;
      default:
        value.llVal = number();
    }
    value.vt = type;
  }

  std::mt19937 random_;
  std::vector<HostObject> objects_;
  std::vector<std::unique_ptr<VARIANT>> kept_;
};

class RandomArgumentsTest : public ComSiteTest {
 protected:
  RandomArgumentsTest() {
    for (const int id : {1, 2, 7}) addConfiguration(id);
    addWorkstation(L"PC-1");
    assign(L"PC-1", L"'2'");
  }

  /// Members not to be called: they show windows or write to arbitrary files and registry keys.
  static std::set<DISPID> spared(const HostObject& object) {
    std::set<DISPID> ids;
    for (const wchar_t* name : {L"Init", L"ShowForm", L"LogFile", L"GetWorkstationsList",
                                L"GetOfflineWorkstationInfo", L"RemoveConfig"}) {
      if (const DISPID id = object.idOf(name); id != DISPID_UNKNOWN) ids.insert(id);
    }
    return ids;
  }

  /// The properties that a host may set.
  static std::set<DISPID> properties(const HostObject& object) {
    std::set<DISPID> ids;
    for (const ExpectedClass& each : expectedClasses()) {
      for (const ExpectedMember& member : each.members) {
        const bool settable = std::wstring_view(member.kinds).find(L'P') != std::wstring_view::npos;
        if (settable) ids.insert(object.idOf(member.name));
      }
    }
    return ids;
  }

  static std::wstring asText(const Outcome& outcome) {
    VARIANT value = outcome.value.get();
    OwnedVariant text;
    if (FAILED(VariantChangeType(text.out(), &value, 0, VT_BSTR))) return L"<none>";
    const BSTR letters = text.get().bstrVal;
    return std::wstring(letters ? letters : L"", SysStringLen(letters));
  }

  /// A failed call has a known result, a description and no value.
  static void expectOrderly(const Outcome& outcome) {
    if (SUCCEEDED(outcome.result)) return;
    static const std::set<HRESULT> kResults = {DISP_E_EXCEPTION,     DISP_E_MEMBERNOTFOUND,
                                               DISP_E_BADPARAMCOUNT, DISP_E_TYPEMISMATCH,
                                               DISP_E_OVERFLOW,      DISP_E_BADVARTYPE,
                                               DISP_E_PARAMNOTFOUND, DISP_E_PARAMNOTOPTIONAL,
                                               DISP_E_NONAMEDARGS,   E_POINTER,
                                               E_INVALIDARG};
    EXPECT_TRUE(kResults.contains(outcome.result)) << nameOf(outcome.result);
    EXPECT_EQ(outcome.type(), VT_EMPTY);
    if (outcome.result == DISP_E_EXCEPTION) {
      EXPECT_FALSE(outcome.description.empty());
      EXPECT_EQ(outcome.source, L"TLPACSCFG");
    } else {
      EXPECT_FALSE(outcome.errorInfo.empty());
    }
  }
};

TEST_F(RandomArgumentsTest, RandomArgumentsAtWorstFailTheirCall) {
  const HostObject component = initialised();
  const HostObject configurations = component.get(L"m_colPACSConfig").object();
  const HostObject workstations = component.get(L"m_colWorkstation").object();
  std::vector<HostObject> objects = {
      component,
      configurations,
      workstations,
      configurations.call(L"Item", {1}).object(),
      workstations.call(L"Item", {1}).object(),
      configurations.get(L"ColPACSConfigs").object(),
  };
  std::vector<std::set<DISPID>> settable, avoided;
  for (const HostObject& object : objects) {
    settable.push_back(properties(object));
    avoided.push_back(spared(object));
  }
  const unsigned seed = setting("TL_RANDOM_SEED", 1);
  RandomArguments arguments(seed, objects);
  constexpr WORD kKinds[] = {DISPATCH_METHOD,
                             DISPATCH_PROPERTYGET,
                             DISPATCH_METHOD | DISPATCH_PROPERTYGET,
                             DISPATCH_PROPERTYPUT,
                             DISPATCH_PROPERTYPUTREF,
                             DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF};
  constexpr WORD kPuts = DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF;
  int succeeded = 0;
  int failed = 0;
  for (unsigned i = 0; i < setting("TL_RANDOM_CALLS", 100'000); ++i) {
    const unsigned which = arguments.below(static_cast<unsigned>(objects.size()));
    const HostObject& object = objects[which];
    const auto id = static_cast<DISPID>(arguments.below(64)) - 5;
    if (avoided[which].contains(id)) continue;
    const WORD kind = kKinds[arguments.below(std::size(kKinds))];
    SCOPED_TRACE("seed " + std::to_string(seed) + ", call " + std::to_string(i) + ", member " +
                 std::to_string(id) + ", kind " + std::to_string(kind));
    const bool puts = (kind & kPuts) != 0;
    const unsigned few = puts ? 1 + (arguments.below(10) == 0) : arguments.below(4);
    const unsigned count = arguments.below(20) == 0 ? 38 : few;
    std::vector<VARIANT> values;
    for (unsigned n = 0; n < count; ++n) values.push_back(arguments.make());
    std::vector<DISPID> names;
    if (puts && arguments.below(10) != 0) names.push_back(DISPID_PROPERTYPUT);

    const bool keeps = puts && settable[which].contains(id);
    const auto value = [&] { return asText(object.invoke(id, DISPATCH_PROPERTYGET, {})); };
    const std::wstring before = keeps ? value() : L"";
    const Outcome outcome = object.invokeWith(
        id, kind,
        arguments.disturbed({values.data(), names.data(), static_cast<UINT>(values.size()),
                             static_cast<UINT>(names.size())}));
    expectOrderly(outcome);
    if (keeps && FAILED(outcome.result)) {
      EXPECT_EQ(value(), before);
    }
    ++(SUCCEEDED(outcome.result) ? succeeded : failed);
    arguments.forget();
    if (HasFailure()) break;
  }
  EXPECT_GT(succeeded, 100);
  EXPECT_GT(failed, 100);
  EXPECT_EQ(nameOf(component.put(L"User_ID", 12).result), "S_OK");
  EXPECT_EQ(component.get(L"User_ID").number(), 12);
}

TEST_F(RandomArgumentsTest, RandomNamesAtWorstFailTheirCall) {
  const HostObject component = HostObject::create(kRegistry);
  const unsigned seed = setting("TL_RANDOM_SEED", 1);
  RandomArguments random(seed, {});
  std::wstring texts[] = {L"GetRegValue", L"strKey", L"STRDEFAULTSTRING",     L"AppName", L"",
                          L"Nobody",      L"value",  std::wstring(5000, L'x')};
  int succeeded = 0;
  for (unsigned i = 0; i < 10'000; ++i) {
    SCOPED_TRACE("seed " + std::to_string(seed) + ", call " + std::to_string(i));
    LPOLESTR names[4] = {};
    DISPID ids[5] = {77, 77, 77, 77, 77};
    const UINT count = random.below(5);
    bool allThere = true;
    for (UINT n = 0; n < count; ++n) {
      const unsigned choice = random.below(static_cast<unsigned>(std::size(texts)) + 1);
      if (choice < std::size(texts)) names[n] = texts[choice].data();
      allThere = allThere && names[n] != nullptr;
    }
    const bool noNames = random.below(20) == 0;
    const HRESULT result =
        component.get()->GetIDsOfNames(IID_NULL, noNames ? nullptr : names, count, 0, ids);
    const HRESULT refusal = noNames ? E_POINTER : count == 0 ? E_INVALIDARG : E_POINTER;
    if (noNames || count == 0 || !allThere) {
      EXPECT_EQ(nameOf(result), nameOf(refusal));
    } else {
      EXPECT_TRUE(result == S_OK || result == DISP_E_UNKNOWNNAME) << nameOf(result);
    }
    for (UINT n = 0; n < 5; ++n) {
      const bool written = n < count && !noNames;
      EXPECT_EQ(ids[n] == 77, !written);
      if (FAILED(result) && result != DISP_E_UNKNOWNNAME && written) {
        EXPECT_EQ(ids[n], DISPID_UNKNOWN);
      }
    }
    succeeded += result == S_OK;
    if (HasFailure()) break;
  }
  EXPECT_GT(succeeded, 100);
}

}  // namespace
}  // namespace tlpacscfg::test
