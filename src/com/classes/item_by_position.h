#pragma once

#include "automation/call_arguments.h"
#include "automation/owned_variant.h"

namespace tlpacscfg {

/// The item at the position given by the first argument; Nothing when that is not a 16-bit number
/// or out of range.
template <class Collection>
OwnedVariant itemByPosition(const Collection& collection, const Arguments& arguments) {
  try {
    return OwnedVariant(wrap(collection.Item(arguments.get<std::int16_t>(0))));
  } catch (const ComError&) {
    return OwnedVariant(ComPtr<IDispatch>());
  }
}

}  // namespace tlpacscfg
