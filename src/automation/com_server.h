#pragma once

#include <oaidl.h>

#include <span>

#include "automation/com_ptr.h"

namespace tlpacscfg {

/// A class that hosts create by its name.
struct CreatableClass {
  const CLSID& id;
  const wchar_t* progId;
  ComPtr<IDispatch> (*create)();
};

/// What a DLL of COM objects tells about itself.
struct ComServer {
  /// The source of its errors.
  const wchar_t* name;
  std::span<const CreatableClass> classes;
  /// The embedded type library, version 1.0. Null when there is none: then classes have no version
  /// either, and callers cannot name their arguments.
  const GUID* typeLibrary = nullptr;
  /// Releases what all objects share, when the last of them has gone. Null when they share nothing.
  /// Shared state belongs to the thread that created the first of the living objects: creating or
  /// calling an object on another thread fails with RPC_E_WRONG_THREAD.
  void (*releaseSharedState)() = nullptr;
  /// The result of a call whose array of names or arguments is missing.
  HRESULT missingArray = E_POINTER;
};

/// Every DLL defines its own.
const ComServer& comServer();

}  // namespace tlpacscfg
