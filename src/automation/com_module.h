#pragma once

#include <oaidl.h>

#include <string>

#include "automation/com_ptr.h"

/// The DLL as a whole: what keeps it loaded, and where its file and type library are.
namespace tlpacscfg {

/// One for each living object. Throws ComError with RPC_E_WRONG_THREAD on a thread that may not
/// create objects now (see ComServer::releaseSharedState).
class ObjectReference {
 public:
  ObjectReference();
  ~ObjectReference();
  ObjectReference(const ObjectReference&) = delete;
  ObjectReference& operator=(const ObjectReference&) = delete;
};

/// Throws ComError with RPC_E_WRONG_THREAD when the objects belong to another thread.
void checkThread();

bool mayUnload();

std::wstring modulePath();

/// The description of an interface or class in the embedded type library. Throws ComError.
ComPtr<ITypeInfo> typeInfoOf(REFGUID id);

}  // namespace tlpacscfg
