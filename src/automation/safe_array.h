#pragma once

#include <windows.h>

#include <oaidl.h>

#include <cstddef>
#include <initializer_list>

#include "automation/owned_variant.h"

namespace tlpacscfg {

/// Makes an array of VARIANTs. Extents are in the order of the dimensions, the first of which
/// varies fastest; elements that are not appended are Empty.
class ArrayBuilder {
 public:
  explicit ArrayBuilder(std::initializer_list<std::size_t> extents);
  ~ArrayBuilder();
  ArrayBuilder(const ArrayBuilder&) = delete;
  ArrayBuilder& operator=(const ArrayBuilder&) = delete;

  void append(OwnedVariant element) { *next_++ = element.release(); }

  OwnedVariant take();

 private:
  OwnedVariant value_;
  VARIANT* next_ = nullptr;
};

/// Reads an array that another program made, with any bounds. Empty, Null and an array that was
/// never given bounds hold no elements. Throws RunTimeError: TypeMismatch for anything else, also
/// for an array that contradicts itself; Overflow for too many elements.
class ArrayReader {
 public:
  /// References in the value must have been checked.
  ArrayReader(const VARIANT& value, UINT dimensions);
  ~ArrayReader();
  ArrayReader(const ArrayReader&) = delete;
  ArrayReader& operator=(const ArrayReader&) = delete;

  /// Dimensions count from 0 on.
  std::size_t extent(UINT dimension) const;

  /// A reference to an element; the first dimension varies fastest.
  VARIANT operator[](std::size_t index) const;

 private:
  VARTYPE type_ = VT_EMPTY;
  /// Null without elements.
  SAFEARRAY* array_ = nullptr;
  std::byte* data_ = nullptr;
};

}  // namespace tlpacscfg
