#pragma once

#include <memory>
#include <utility>
#include <vector>

#include "automation/com_class.h"
#include "com/identities.h"
#include "automation/item_enumerator.h"
#include "automation/member_table.h"
#include "automation/read_variant.h"
#include "support/conversions.h"
#include "support/keyed_collection.h"
#include "support/runtime_error.h"

/// The members of the keyed collections, the same for every type of item.
namespace tlpacscfg::collection_class {

/// The 1-based position that a key or a number names. Throws InvalidProcedureCall for an unknown
/// key; the range is checked by the collection.
template <class Item>
std::size_t positionOf(const KeyedCollection<Item>& collection, const Arguments& arguments,
                       std::size_t parameter) {
  const VARTYPE type = arguments.get<const VARIANT*>(parameter)->vt;
  if (type == VT_BSTR || type == (VT_BYREF | VT_BSTR)) {
    const std::size_t position = collection.positionOfKey(arguments.get<std::wstring>(parameter));
    if (position == 0) raise(ErrorNumber::InvalidProcedureCall);
    return position;
  }
  const auto position = arguments.get<std::int32_t>(parameter);
  return position < 0 ? 0 : static_cast<std::size_t>(position);
}

template <class Item>
void add(KeyedCollection<Item>& collection, const Arguments& arguments) {
  auto item = arguments.get<std::shared_ptr<Item>>(0);
  if (!item) raise(ErrorNumber::ObjectNotSet);
  const bool keyed = arguments.has(1) && !isMissing(*arguments.get<const VARIANT*>(1));
  if (keyed) {
    collection.add(std::move(item), arguments.get<std::wstring>(1));
  } else {
    collection.add(std::move(item));
  }
}

template <class Item>
ComPtr<IUnknown> enumerate(const KeyedCollection<Item>& collection) {
  const auto& items = collection.items();
  return ItemEnumerator::create({items.begin(), items.end()}, comClassOf<Item>());
}

template <class Item>
std::vector<Member> members() {
  using Collection = KeyedCollection<Item>;
  return MemberTable<Collection>()
      .rawMethod(L"Item", DISPID_VALUE, {L"index"}, 0,
                 [](Collection& collection, Arguments& arguments) {
                   const std::size_t position = positionOf(collection, arguments, 0);
                   return OwnedVariant(wrap(collection.at(position)));
                 })
      .get(L"Count", 1,
           [](Collection& collection) { return static_cast<std::int32_t>(collection.count()); })
      .rawMethod(L"Add", 2, {L"Item", L"key"}, 1,
                 [](Collection& collection, Arguments& arguments) {
                   add(collection, arguments);
                   return OwnedVariant();
                 })
      .rawMethod(L"Remove", 3, {L"index"}, 0,
                 [](Collection& collection, Arguments& arguments) {
                   collection.remove(positionOf(collection, arguments, 0));
                   return OwnedVariant();
                 })
      .get(L"_NewEnum", DISPID_NEWENUM,
           [](Collection& collection) { return OwnedVariant(enumerate(collection)); })
      .members();
}

}  // namespace tlpacscfg::collection_class
