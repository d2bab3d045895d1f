#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "support/runtime_error.h"
#include "support/text.h"

namespace tlpacscfg {

/// Shared items in the order of their insertion, each under a key that is unique without regard to
/// case. Positions count from 1.
template <class Item>
class KeyedCollection {
 public:
  using Pointer = std::shared_ptr<Item>;

  KeyedCollection() = default;
  KeyedCollection(const KeyedCollection&) = delete;
  KeyedCollection& operator=(const KeyedCollection&) = delete;

  std::size_t count() const { return items_.size(); }
  void reserve(std::size_t count) {
    items_.reserve(count);
    keys_.reserve(count);
    byKey_.reserve(count);
  }

  /// Throws DuplicateKey and leaves the collection unchanged when the key exists. An item without a
  /// key is found by its position only.
  void add(Pointer item, std::optional<std::wstring_view> key = std::nullopt) {
    const std::wstring* folded = nullptr;
    if (key) {
      const auto [place, isNew] = byKey_.try_emplace(upperCase(*key), item);
      if (!isNew) raise(ErrorNumber::DuplicateKey);
      folded = &place->first;
    }
    items_.push_back(std::move(item));
    keys_.push_back(folded);
  }

  /// Throws SubscriptOutOfRange.
  const Pointer& at(std::size_t position) const {
    check(position);
    return items_[position - 1];
  }

  /// The same; null for a position outside of the collection.
  Pointer itemAt(std::int64_t position) const {
    const bool inside = position >= 1 && position <= std::ssize(items_);
    return inside ? items_[static_cast<std::size_t>(position - 1)] : nullptr;
  }

  /// Null when no item has the key.
  Pointer find(std::wstring_view key) const {
    const auto found = byKey_.find(upperCase(key));
    return found == byKey_.end() ? nullptr : found->second;
  }

  /// Throws SubscriptOutOfRange.
  void remove(std::size_t position) {
    check(position);
    const auto offset = static_cast<std::ptrdiff_t>(position - 1);
    const auto key = keys_.begin() + offset;
    if (*key != nullptr) byKey_.erase(byKey_.find(**key));
    keys_.erase(key);
    items_.erase(items_.begin() + offset);
  }

  /// 1-based; 0 when no item has the key.
  std::size_t positionOfKey(std::wstring_view key) const {
    const auto found = byKey_.find(upperCase(key));
    if (found == byKey_.end()) return 0;
    return positionIn(keys_, std::ranges::find(keys_, &found->first));
  }

  /// The 1-based position of the first item with this value in the data member; 0 for none.
  template <class Member, class Value>
  std::size_t positionWhere(Member member, const Value& value) const {
    return positionIn(items_, std::ranges::find_if(items_, [&](const Pointer& item) {
                        return (*item).*member == value;
                      }));
  }

  const std::vector<Pointer>& items() const { return items_; }

 private:
  void check(std::size_t position) const {
    if (position < 1 || position > items_.size()) raise(ErrorNumber::SubscriptOutOfRange);
  }

  template <class Elements>
  static std::size_t positionIn(const Elements& elements, typename Elements::const_iterator found) {
    return found == elements.end() ? 0 : static_cast<std::size_t>(found - elements.begin()) + 1;
  }

  std::vector<Pointer> items_;
  /// Of each item its key, owned by byKey_; null for an item without one.
  std::vector<const std::wstring*> keys_;
  std::unordered_map<std::wstring, Pointer> byKey_;
};

}  // namespace tlpacscfg
