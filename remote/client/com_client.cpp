#include "client/com_client.h"

#include <algorithm>
#include <new>

#include "client/arrays.h"
#include "client/guarded.h"
#include "automation/com_ptr.h"
#include "automation/foreign_variant.h"
#include "support/text.h"

namespace tlpacscfg::client {

std::atomic<long> moduleUses = 0;

namespace {

/// An argument that is refused; its place in DISPPARAMS::rgvarg.
struct BadArgument {
  HRESULT result;
  UINT place;
};

/// The arguments of a call in the order of the method's parameters.
class Arguments {
 public:
  /// Throws BadArgument for a reference that leads nowhere.
  explicit Arguments(const DISPPARAMS& passed) : passed_(passed) {
    for (UINT place = 0; place < passed.cArgs; ++place) {
      const HRESULT status = checkReferences(passed.rgvarg[place]);
      if (FAILED(status)) throw BadArgument{status, place};
    }
  }

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
    if (!isConvertible(value)) throw BadArgument{DISP_E_TYPEMISMATCH, place};
    OwnedVariant result;
    const HRESULT status =
        VariantChangeTypeEx(result.out(), &value, LOCALE_INVARIANT, VARIANT_ALPHABOOL, type);
    if (status == E_OUTOFMEMORY) throw std::bad_alloc();
    if (FAILED(status)) throw BadArgument{DISP_E_TYPEMISMATCH, place};
    return result;
  }

  const DISPPARAMS& passed_;
};

struct Method {
  const wchar_t* name;
  UINT parameters;
  /// What it answers when it fails: nothing or zero of this type.
  VARTYPE failed;
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
    {L"ConnectToService", 4, VT_BOOL,
     [](Session& session, const Arguments& arguments) {
       return OwnedVariant(session.ConnectToService(arguments.text(0), arguments.text(1),
                                                    arguments.text(2), arguments.text(3)));
     }},
    {L"DisconnectFromService", 1, VT_EMPTY,
     [](Session& session, const Arguments& arguments) {
       arguments.text(0);
       session.DisconnectFromService();
       return OwnedVariant();
     }},
    {L"SQLQueryTable", 2, VT_I4,
     [](Session& session, const Arguments& arguments) {
       return number(session.SQLQueryTable(arguments.text(0), arguments.text(1)));
     }},
    {L"GetTableData", 1, VT_EMPTY,
     [](Session& session, const Arguments& arguments) {
       const Table* const table = session.GetTableData(arguments.number(0));
       return table ? toArray(*table) : OwnedVariant();
     }},
    {L"SQLExecuteText", 2, VT_BOOL,
     [](Session& session, const Arguments& arguments) {
       return OwnedVariant(session.SQLExecuteText(arguments.text(0), arguments.text(1)));
     }},
    {L"GetNetworkDirectoryFiles", 7, VT_EMPTY,
     [](Session& session, const Arguments& arguments) {
       return toArray(session.GetNetworkDirectoryFiles(arguments.text(0), arguments.text(2),
                                                       {.recurse = arguments.truth(1),
                                                        .sorted = arguments.truth(3),
                                                        .ignoreCase = arguments.truth(4),
                                                        .directories = arguments.truth(5),
                                                        .fullPaths = arguments.truth(6)}));
     }},
    {L"CheckForError", 0, VT_BSTR,
     [](Session& session, const Arguments&) { return OwnedVariant(session.CheckForError()); }},
};

/// Nothing or zero.
OwnedVariant zero(VARTYPE type) {
  OwnedVariant result;
  VARIANT* const place = result.out();
  place->llVal = 0;
  place->vt = type;
  return result;
}

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
  std::fill_n(ids, count, DISPID_UNKNOWN);
  if (std::find(names, names + count, nullptr) != names + count) return E_INVALIDARG;
  return guarded([&]() -> HRESULT {
    ids[0] = idOf(names[0]);
    // The other names are those of parameters, which have none here.
    return ids[0] == DISPID_UNKNOWN || count > 1 ? DISP_E_UNKNOWNNAME : S_OK;
  });
}

HRESULT ComClient::Invoke(DISPID id, REFIID, LCID, WORD kind, DISPPARAMS* parameters,
                          VARIANT* result, EXCEPINFO*, UINT* badArgument) {
  if (result) VariantInit(result);
  if (parameters == nullptr) return E_INVALIDARG;
  if (id < 1 || static_cast<std::size_t>(id) > std::size(kMethods) ||
      (kind & DISPATCH_METHOD) == 0) {
    return DISP_E_MEMBERNOTFOUND;
  }
  const Method& method = kMethods[id - 1];
  if (parameters->cNamedArgs > 0) return DISP_E_NONAMEDARGS;
  if (parameters->cArgs != method.parameters) return DISP_E_BADPARAMCOUNT;
  if (parameters->cArgs > 0 && parameters->rgvarg == nullptr) return E_INVALIDARG;
  // A host may let go of the object while a call waits.
  const auto self = ComPtr<IDispatch>::sharing(this);
  return guarded([&] {
    OwnedVariant value;
    try {
      value = method.run(session_, Arguments(*parameters));
    } catch (const BadArgument& argument) {
      if (badArgument) *badArgument = argument.place;
      return argument.result;
    } catch (...) {
      // A method answers that it failed; it does not raise an error.
      session_.noteFailure();
      value = zero(method.failed);
    }
    if (result) *result = value.release();
    return S_OK;
  });
}

}  // namespace tlpacscfg::client
