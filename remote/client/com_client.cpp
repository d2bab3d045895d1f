#include "client/com_client.h"

#include <new>

#include "client/arrays.h"
#include "support/text.h"

namespace tlpacscfg::client {

std::atomic<long> moduleUses = 0;

namespace {

/// An argument that cannot be converted; its place in DISPPARAMS::rgvarg.
struct BadArgument {
  UINT place;
};

/// The arguments of a call in the order of the method's parameters.
class Arguments {
 public:
  explicit Arguments(const DISPPARAMS& passed) : passed_(passed) {}

  std::wstring text(UINT index) const {
    const OwnedVariant value = converted(index, VT_BSTR);
    const BSTR characters = value.get().bstrVal;
    return std::wstring(characters ? characters : L"", SysStringLen(characters));
  }
  bool truth(UINT index) const { return converted(index, VT_BOOL).get().boolVal != VARIANT_FALSE; }
  std::int16_t number(UINT index) const { return converted(index, VT_I2).get().iVal; }

 private:
  OwnedVariant converted(UINT index, VARTYPE type) const {
    const UINT place = passed_.cArgs - 1 - index;
    VARIANT& value = passed_.rgvarg[place];
    const bool refersToNothing = (value.vt & VT_BYREF) != 0 && value.byref == nullptr;
    OwnedVariant result;
    if (refersToNothing || FAILED(VariantChangeTypeEx(result.out(), &value, LOCALE_INVARIANT,
                                                      VARIANT_ALPHABOOL, type))) {
      throw BadArgument{place};
    }
    return result;
  }

  const DISPPARAMS& passed_;
};

struct Method {
  const wchar_t* name;
  UINT parameters;
  OwnedVariant (*run)(Session& session, const Arguments& arguments);
};

OwnedVariant number(std::int32_t value) {
  OwnedVariant result;
  VARIANT* const place = result.out();
  place->vt = VT_I4;
  place->lVal = value;
  return result;
}

/// The identifier of a method is its place in this table, counted from 1.
constexpr Method kMethods[] = {
    {L"ConnectToService", 4,
     [](Session& session, const Arguments& arguments) {
       return OwnedVariant(session.ConnectToService(arguments.text(0), arguments.text(1),
                                                    arguments.text(2), arguments.text(3)));
     }},
    {L"DisconnectFromService", 1,
     [](Session& session, const Arguments& arguments) {
       arguments.text(0);
       session.DisconnectFromService();
       return OwnedVariant();
     }},
    {L"SQLQueryTable", 2,
     [](Session& session, const Arguments& arguments) {
       return number(session.SQLQueryTable(arguments.text(0), arguments.text(1)));
     }},
    {L"GetTableData", 1,
     [](Session& session, const Arguments& arguments) {
       const Table* const table = session.GetTableData(arguments.number(0));
       return table ? toArray(*table) : OwnedVariant();
     }},
    {L"SQLExecuteText", 2,
     [](Session& session, const Arguments& arguments) {
       return OwnedVariant(session.SQLExecuteText(arguments.text(0), arguments.text(1)));
     }},
    {L"GetNetworkDirectoryFiles", 7,
     [](Session& session, const Arguments& arguments) {
       return toArray(session.GetNetworkDirectoryFiles(arguments.text(0), arguments.text(2),
                                                       {.recurse = arguments.truth(1),
                                                        .sorted = arguments.truth(3),
                                                        .ignoreCase = arguments.truth(4),
                                                        .directories = arguments.truth(5),
                                                        .fullPaths = arguments.truth(6)}));
     }},
    {L"CheckForError", 0,
     [](Session& session, const Arguments&) { return OwnedVariant(session.CheckForError()); }},
};

DISPID idOf(const wchar_t* name) {
  for (std::size_t i = 0; i < std::size(kMethods); ++i) {
    if (equalIgnoringCase(name, kMethods[i].name)) return static_cast<DISPID>(i + 1);
  }
  return DISPID_UNKNOWN;
}

}  // namespace

HRESULT ComClient::QueryInterface(REFIID id, void** result) {
  if (result == nullptr) return E_POINTER;
  *result = nullptr;
  if (id != IID_IUnknown && id != IID_IDispatch) return E_NOINTERFACE;
  *result = static_cast<IDispatch*>(this);
  AddRef();
  return S_OK;
}

ULONG ComClient::Release() {
  const ULONG left = --references_;
  if (left == 0) delete this;
  return left;
}

HRESULT ComClient::GetTypeInfoCount(UINT* count) {
  if (count == nullptr) return E_POINTER;
  *count = 0;
  return S_OK;
}

HRESULT ComClient::GetTypeInfo(UINT, LCID, ITypeInfo** info) {
  if (info) *info = nullptr;
  return DISP_E_BADINDEX;
}

HRESULT ComClient::GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) {
  if (names == nullptr || ids == nullptr || count == 0) return E_INVALIDARG;
  // The names behind the first are those of parameters, which have none here.
  for (UINT i = 0; i < count; ++i) ids[i] = DISPID_UNKNOWN;
  try {
    ids[0] = idOf(names[0]);
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  }
  return ids[0] == DISPID_UNKNOWN || count > 1 ? DISP_E_UNKNOWNNAME : S_OK;
}

HRESULT ComClient::Invoke(DISPID id, REFIID, LCID, WORD kind, DISPPARAMS* parameters,
                          VARIANT* result, EXCEPINFO*, UINT* badArgument) {
  if (parameters == nullptr) return E_INVALIDARG;
  if (id < 1 || static_cast<std::size_t>(id) > std::size(kMethods) ||
      (kind & DISPATCH_METHOD) == 0) {
    return DISP_E_MEMBERNOTFOUND;
  }
  const Method& method = kMethods[id - 1];
  if (parameters->cNamedArgs > 0) return DISP_E_NONAMEDARGS;
  if (parameters->cArgs != method.parameters) return DISP_E_BADPARAMCOUNT;
  try {
    OwnedVariant value = method.run(session_, Arguments(*parameters));
    if (result) *result = value.release();
    return S_OK;
  } catch (const BadArgument& argument) {
    if (badArgument) *badArgument = argument.place;
    return DISP_E_TYPEMISMATCH;
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  } catch (...) {
    return E_UNEXPECTED;
  }
}

}  // namespace tlpacscfg::client
