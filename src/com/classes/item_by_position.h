#pragma once

#include "com/arguments.h"
#include "com/variant.h"

namespace tlpacscfg {

/// The item at the position in the first argument; Nothing when that is no 16-bit number or no
/// position of the collection.
template <class Collection>
Variant itemByPosition(const Collection& collection, const Arguments& arguments) {
  try {
    return Variant(wrap(collection.Item(arguments.get<std::int16_t>(0))));
  } catch (const ComError&) {
    return Variant(ComPtr<IDispatch>());
  }
}

}  // namespace tlpacscfg
