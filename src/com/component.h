#pragma once

#include <oaidl.h>

#include <string>

#include "automation/com_ptr.h"

/// The component as a whole: what keeps it loaded, and what it holds while it has objects.
namespace tlpacscfg {

inline constexpr const wchar_t* kComponentName = L"TLPACSCFG";

/// One per living object. With the last of them the module-wide state is released.
class ObjectReference {
 public:
  ObjectReference();
  ~ObjectReference();
  ObjectReference(const ObjectReference&) = delete;
  ObjectReference& operator=(const ObjectReference&) = delete;
};

/// Keeps the component loaded, no more.
void lockServer();
void unlockServer();

bool mayUnload();

HMODULE moduleHandle();
std::wstring modulePath();

/// The description of an interface or class in the embedded type library. Throws ComError.
ComPtr<ITypeInfo> typeInfoOf(REFGUID id);

/// Leaves connections to the process that ends: their drivers may be gone already.
void abandonModuleState();

}  // namespace tlpacscfg
