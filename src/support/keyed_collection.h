#pragma once

#include <cstddef>
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

  std::size_t count() const { return entries_.size(); }
  bool empty() const { return entries_.empty(); }
  void reserve(std::size_t count) {
    entries_.reserve(count);
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
    entries_.push_back({std::move(item), folded});
  }

  /// Throws SubscriptOutOfRange.
  const Pointer& at(std::size_t position) const {
    check(position);
    return entries_[position - 1].item;
  }

  /// Null when no item has the key.
  Pointer find(std::wstring_view key) const {
    const auto found = byKey_.find(upperCase(key));
    return found == byKey_.end() ? nullptr : found->second;
  }

  /// Throws SubscriptOutOfRange.
  void remove(std::size_t position) {
    check(position);
    const auto entry = entries_.begin() + static_cast<std::ptrdiff_t>(position - 1);
    if (entry->key != nullptr) byKey_.erase(byKey_.find(*entry->key));
    entries_.erase(entry);
  }

  /// 1-based; 0 when no item has the key.
  std::size_t positionOfKey(std::wstring_view key) const {
    const auto found = byKey_.find(upperCase(key));
    if (found == byKey_.end()) return 0;
    for (std::size_t i = 0; i < entries_.size(); ++i) {
      if (entries_[i].key == &found->first) return i + 1;
    }
    return 0;
  }

  /// For range-based loops: `for (const auto& item : collection.items())`.
  class Items {
   public:
    class Iterator {
     public:
      explicit Iterator(const KeyedCollection* owner, std::size_t at) : owner_(owner), at_(at) {}
      const Pointer& operator*() const { return owner_->entries_[at_].item; }
      Iterator& operator++() {
        ++at_;
        return *this;
      }
      bool operator!=(const Iterator& other) const { return at_ != other.at_; }

     private:
      const KeyedCollection* owner_;
      std::size_t at_;
    };
    explicit Items(const KeyedCollection* owner) : owner_(owner) {}
    Iterator begin() const { return Iterator(owner_, 0); }
    Iterator end() const { return Iterator(owner_, owner_->entries_.size()); }

   private:
    const KeyedCollection* owner_;
  };
  Items items() const { return Items(this); }

 private:
  struct Entry {
    Pointer item;
    /// Owned by byKey_; null for an item without a key.
    const std::wstring* key;
  };

  void check(std::size_t position) const {
    if (position < 1 || position > entries_.size()) raise(ErrorNumber::SubscriptOutOfRange);
  }

  std::vector<Entry> entries_;
  std::unordered_map<std::wstring, Pointer> byKey_;
};

}  // namespace tlpacscfg
