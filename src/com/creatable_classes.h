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

std::span<const CreatableClass> creatableClasses();

}  // namespace tlpacscfg
