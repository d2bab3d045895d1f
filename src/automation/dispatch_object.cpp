#include "automation/dispatch_object.h"

#include <oleauto.h>

#include <algorithm>
#include <map>
#include <mutex>
#include <utility>

#include "automation/call_arguments.h"
#include "automation/com_server.h"
#include "automation/read_variant.h"
#include "support/runtime_error.h"
#include "support/text.h"

namespace tlpacscfg {
namespace {

/// The COM objects that hosts hold now; not owned here.
std::mutex objectsMutex;
std::map<std::pair<const void*, const ComClass*>, DispatchObject*> objects;

bool isObject(const VARIANT& value) {
  const VARTYPE type = target(value).vt & ~VT_BYREF;
  return type == VT_DISPATCH || type == VT_UNKNOWN;
}

bool hasTypeLibrary() { return comServer().typeLibrary != nullptr; }

constexpr WORD kReading = DISPATCH_METHOD | DISPATCH_PROPERTYGET;

}  // namespace

DispatchObject::DispatchObject(std::shared_ptr<void> core, const ComClass& type)
    : core_(std::move(core)), type_(type) {}

DispatchObject::~DispatchObject() {
  const std::scoped_lock lock(objectsMutex);
  objects.erase({core_.get(), &type_});
}

ComPtr<IDispatch> wrapObject(const std::shared_ptr<void>& core, const ComClass& type) {
  const std::scoped_lock lock(objectsMutex);
  DispatchObject*& object = objects[{core.get(), &type}];
  if (object == nullptr) object = new DispatchObject(core, type);
  return ComPtr<IDispatch>::sharing(object);
}

std::shared_ptr<void> unwrapObject(const ComPtr<IUnknown>& object, const ComClass& type) {
  const auto core = object.query<CoreObject>();
  return core ? core->coreOf(type) : nullptr;
}

std::shared_ptr<void> DispatchObject::coreOf(const ComClass& type) {
  return &type == &type_ ? core_ : nullptr;
}

void* DispatchObject::interfaceOf(REFIID id) {
  if (id == IID_IProvideClassInfo && !hasTypeLibrary()) return nullptr;
  return ComObject::interfaceOf(id == type_.interfaceId ? IID_IDispatch : id);
}

HRESULT DispatchObject::GetTypeInfoCount(UINT* count) {
  if (count == nullptr) return E_POINTER;
  *count = hasTypeLibrary() ? 1 : 0;
  return S_OK;
}

HRESULT DispatchObject::GetTypeInfo(UINT index, LCID, ITypeInfo** info) {
  if (info) *info = nullptr;
  if (index != 0 || !hasTypeLibrary()) return DISP_E_BADINDEX;
  if (info == nullptr) return E_POINTER;
  return guarded([&] {
    *info = typeInfoOf(type_.interfaceId).detach();
    return S_OK;
  });
}

HRESULT DispatchObject::GetClassInfo(ITypeInfo** info) {
  if (info == nullptr) return E_POINTER;
  *info = nullptr;
  return guarded([&] {
    *info = typeInfoOf(type_.id).detach();
    return S_OK;
  });
}

HRESULT DispatchObject::InterfaceSupportsErrorInfo(REFIID id) {
  return id == IID_IDispatch || id == type_.interfaceId ? S_OK : S_FALSE;
}

HRESULT DispatchObject::GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID,
                                      DISPID* ids) {
  if (reserved != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
  if (names == nullptr || ids == nullptr) return comServer().missingArray;
  if (count == 0) return E_INVALIDARG;
  std::fill_n(ids, count, DISPID_UNKNOWN);
  if (std::find(names, names + count, nullptr) != names + count) return comServer().missingArray;
  return guarded([&]() -> HRESULT {
    const auto hasName = [&](const Member& member) {
      return equalIgnoringCase(member.name, names[0]);
    };
    const auto member = std::ranges::find_if(type_.members, hasName);
    if (member == type_.members.end()) return DISP_E_UNKNOWNNAME;
    ids[0] = member->id;
    HRESULT status = S_OK;
    for (UINT i = 1; i < count; ++i) {
      const auto parameter = std::ranges::find_if(
          member->parameters,
          [&](const std::wstring& known) { return equalIgnoringCase(known, names[i]); });
      if (parameter == member->parameters.end()) {
        status = DISP_E_UNKNOWNNAME;
      } else {
        ids[i] = static_cast<DISPID>(parameter - member->parameters.begin());
      }
    }
    return status;
  });
}

HRESULT DispatchObject::Invoke(DISPID id, REFIID reserved, LCID, WORD flags, DISPPARAMS* passed,
                               VARIANT* result, EXCEPINFO* exception, UINT* badArgument) {
  if (reserved != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
  if (passed == nullptr) return E_INVALIDARG;
  if (result) VariantInit(result);
  // A host may release the object while a call runs.
  const auto self = ComPtr<IDispatch>::sharing(this);
  SetErrorInfo(0, nullptr);
  const Call call{id, flags, *passed, exception, badArgument};
  return guarded([&] { return run(call, result); },
                 [&](const Failure& failure) { return report(failure, exception, badArgument); });
}

const Member& DispatchObject::select(const Call& call) const {
  const Member* chosen = nullptr;
  for (const Member& member : type_.members) {
    if (member.id != call.id) continue;
    switch (member.kind) {
      case MemberKind::Get:
      case MemberKind::Method:
        // Late-bound callers cannot tell a function without arguments from a property.
        if (call.flags & kReading) return member;
        break;
      case MemberKind::Put:
        if (call.flags & DISPATCH_PROPERTYPUT && !chosen) chosen = &member;
        break;
      case MemberKind::PutRef: {
        // A caller that sets both flags leaves the choice to the value.
        const bool object = call.passed.cArgs == 1 && call.passed.rgvarg != nullptr &&
                            isObject(call.passed.rgvarg[0]);
        if (call.flags & DISPATCH_PROPERTYPUTREF && (!chosen || object)) chosen = &member;
        break;
      }
    }
  }
  if (!chosen) throw ComError(DISP_E_MEMBERNOTFOUND);
  return *chosen;
}

HRESULT DispatchObject::run(const Call& call, VARIANT* result) {
  checkThread();
  const Member& member = select(call);
  if (member.kind == MemberKind::Get && call.passed.cArgs > 0) {
    return callDefaultOf(member, call, result);
  }
  Arguments arguments(call.passed, member);
  OwnedVariant value = member.handler(core_, arguments);
  if (result) {
    *result = value.release();
  } else {
    value.wipeText();
  }
  return S_OK;
}

HRESULT DispatchObject::callDefaultOf(const Member& property, const Call& call, VARIANT* result) {
  DISPPARAMS none{};
  Arguments noArguments(none, property);
  const OwnedVariant value = property.handler(core_, noArguments);
  if (value.get().vt != VT_DISPATCH) throw ComError(DISP_E_BADPARAMCOUNT);
  if (value.get().pdispVal == nullptr) raise(ErrorNumber::ObjectNotSet);
  return value.get().pdispVal->Invoke(DISPID_VALUE, IID_NULL, LOCALE_INVARIANT, call.flags,
                                      &call.passed, result, call.exception, call.badArgument);
}

HRESULT DispatchObject::report(const Failure& failure, EXCEPINFO* exception,
                               UINT* badArgument) const {
  if (badArgument && failure.argument) *badArgument = *failure.argument;
  if (exception && failure.result == DISP_E_EXCEPTION) {
    *exception = {};
    exception->scode = failure.scode;
    exception->bstrSource = SysAllocString(comServer().name);
    exception->bstrDescription = SysAllocString(failure.description.c_str());
  }
  publish(failure, comServer().name, type_.interfaceId);
  return failure.result;
}

}  // namespace tlpacscfg
