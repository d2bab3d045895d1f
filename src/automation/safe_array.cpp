#include "automation/safe_array.h"

#include <oleauto.h>

#include <cstddef>
#include <cstdint>
#include <new>
#include <vector>

#include "automation/read_variant.h"
#include "support/runtime_error.h"

namespace tlpacscfg {
namespace {

// Arrays that others made have this layout; their elements lie side by side.
static_assert(offsetof(SAFEARRAY, cbElements) == 4 && sizeof(SAFEARRAYBOUND) == 8);
static_assert(offsetof(SAFEARRAY, rgsabound) == offsetof(SAFEARRAY, pvData) + sizeof(void*));
static_assert(offsetof(SAFEARRAY, pvData) == (sizeof(void*) == 8 ? 16 : 12));

/// More than any site has; an array that claims more is broken.
constexpr std::uint64_t kMaxElements = 10'000'000;

[[noreturn]] void mismatch() { raise(ErrorNumber::TypeMismatch); }

std::size_t sizeOf(VARTYPE type) {
  switch (type) {
    case VT_VARIANT:
      return sizeof(VARIANT);
    case VT_DECIMAL:
      return sizeof(DECIMAL);
    case VT_BSTR:
      return sizeof(BSTR);
    case VT_I1:
    case VT_UI1:
      return 1;
    case VT_I2:
    case VT_UI2:
    case VT_BOOL:
      return 2;
    case VT_I4:
    case VT_UI4:
    case VT_INT:
    case VT_UINT:
    case VT_R4:
      return 4;
    default:
      return 8;
  }
}

/// Whether the array's own description agrees with the type that the value names.
bool holds(SAFEARRAY& array, VARTYPE type) {
  if (type != VT_VARIANT && !isPlain(type)) return false;
  VARTYPE actual = VT_EMPTY;
  if (SUCCEEDED(SafeArrayGetVartype(&array, &actual)) && actual != type) return false;
  return array.cbElements == sizeOf(type);
}

std::size_t elementsOf(const SAFEARRAY& array) {
  std::uint64_t count = 1;
  for (USHORT i = 0; i < array.cDims; ++i) {
    count *= array.rgsabound[i].cElements;
    if (count > kMaxElements) raise(ErrorNumber::Overflow);
  }
  return static_cast<std::size_t>(count);
}

}  // namespace

ArrayBuilder::ArrayBuilder(std::initializer_list<std::size_t> extents) {
  std::vector<SAFEARRAYBOUND> bounds;
  for (const std::size_t extent : extents) bounds.push_back({static_cast<ULONG>(extent), 0});
  SAFEARRAY* const array =
      SafeArrayCreate(VT_VARIANT, static_cast<UINT>(bounds.size()), bounds.data());
  if (array == nullptr) throw std::bad_alloc();
  VARIANT* const value = value_.out();
  value->vt = VT_ARRAY | VT_VARIANT;
  value->parray = array;
  void* data = nullptr;
  if (FAILED(SafeArrayAccessData(array, &data))) throw std::bad_alloc();
  next_ = static_cast<VARIANT*>(data);
}

ArrayBuilder::~ArrayBuilder() {
  if (next_) SafeArrayUnaccessData(value_.get().parray);
}

OwnedVariant ArrayBuilder::take() {
  // A locked array could not be freed by its next owner.
  next_ = nullptr;
  SafeArrayUnaccessData(value_.get().parray);
  return std::move(value_);
}

ArrayReader::ArrayReader(const VARIANT& value, UINT dimensions) {
  if (value.vt == VT_EMPTY || value.vt == VT_NULL) return;
  if ((value.vt & VT_ARRAY) == 0) mismatch();
  SAFEARRAY* const array = (value.vt & VT_BYREF) != 0 ? *value.pparray : value.parray;
  // An array that was never given bounds has no descriptor.
  if (array == nullptr) return;
  type_ = static_cast<VARTYPE>(value.vt & VT_TYPEMASK);
  if (array->cDims != dimensions || !holds(*array, type_)) mismatch();
  const std::size_t elements = elementsOf(*array);
  void* data = nullptr;
  if (FAILED(SafeArrayAccessData(array, &data))) mismatch();
  if (data == nullptr && elements > 0) {
    SafeArrayUnaccessData(array);
    mismatch();
  }
  array_ = array;
  data_ = static_cast<std::byte*>(data);
}

ArrayReader::~ArrayReader() {
  if (array_) SafeArrayUnaccessData(array_);
}

std::size_t ArrayReader::extent(UINT dimension) const {
  // Bounds are stored from the last dimension to the first.
  return array_ ? array_->rgsabound[array_->cDims - 1 - dimension].cElements : 0;
}

VARIANT ArrayReader::operator[](std::size_t index) const {
  VARIANT element{};
  element.vt = static_cast<VARTYPE>(VT_BYREF | type_);
  element.byref = data_ + index * array_->cbElements;
  return element;
}

}  // namespace tlpacscfg
