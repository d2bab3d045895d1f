#include "data/client_values.h"

#include <oleauto.h>

#include <cstddef>
#include <cstdio>
#include <optional>

#include "automation/owned_variant.h"
#include "support/conversions.h"
#include "support/runtime_error.h"
#include "support/text.h"

namespace tlpacscfg {
namespace {

/// More than any site has; an array that claims more is broken.
constexpr std::uint64_t kMostElements = 10'000'000;

[[noreturn]] void mismatch() { raise(ErrorNumber::TypeMismatch); }

/// The value itself, behind a reference to a VARIANT if it came as one.
const VARIANT& target(const VARIANT& value) {
  const VARIANT* found = &value;
  if (found->vt == (VT_BYREF | VT_VARIANT)) found = found->pvarVal;
  if (found == nullptr || found->vt == (VT_BYREF | VT_VARIANT)) mismatch();
  if ((found->vt & VT_BYREF) != 0 && found->byref == nullptr) mismatch();
  return *found;
}

SAFEARRAY* arrayIn(const VARIANT& value) {
  return (value.vt & VT_BYREF) != 0 ? *value.pparray : value.parray;
}

/// An array that was never given bounds has no descriptor.
bool isEmpty(const VARIANT& value) {
  return value.vt == VT_EMPTY || value.vt == VT_NULL ||
         ((value.vt & VT_ARRAY) != 0 && arrayIn(value) == nullptr);
}

bool isPlain(VARTYPE type) {
  switch (type) {
    case VT_I1:
    case VT_UI1:
    case VT_I2:
    case VT_UI2:
    case VT_I4:
    case VT_UI4:
    case VT_I8:
    case VT_UI8:
    case VT_INT:
    case VT_UINT:
    case VT_R4:
    case VT_R8:
    case VT_CY:
    case VT_DECIMAL:
    case VT_DATE:
    case VT_BOOL:
    case VT_BSTR:
      return true;
    default:
      return false;
  }
}

/// A text, number, date or truth value as another of these types.
OwnedVariant converted(const VARIANT& value, VARTYPE type) {
  if (!isPlain(static_cast<VARTYPE>(value.vt & ~VT_BYREF))) mismatch();
  OwnedVariant result;
  // The source is only read; the declaration is older than const.
  const HRESULT status = VariantChangeTypeEx(result.out(), const_cast<VARIANT*>(&value),
                                             LOCALE_INVARIANT, VARIANT_ALPHABOOL, type);
  if (status == DISP_E_OVERFLOW) raise(ErrorNumber::Overflow);
  if (FAILED(status)) mismatch();
  return result;
}

std::wstring plainText(const VARIANT& value) {
  const OwnedVariant text = converted(value, VT_BSTR);
  const BSTR characters = text.get().bstrVal;
  return std::wstring(characters ? characters : L"", SysStringLen(characters));
}

std::wstring dateText(const VARIANT& value) {
  SYSTEMTIME time{};
  if (!VariantTimeToSystemTime(converted(value, VT_DATE).get().date, &time)) mismatch();
  wchar_t text[32];
  std::swprintf(text, std::size(text), L"%04d-%02d-%02d %02d:%02d:%02d", time.wYear, time.wMonth,
                time.wDay, time.wHour, time.wMinute, time.wSecond);
  return text;
}

std::optional<std::wstring> cellOf(const VARIANT& element) {
  const VARIANT& value = target(element);
  switch (value.vt & ~VT_BYREF) {
    case VT_NULL:
      return std::nullopt;
    case VT_EMPTY:
      return std::wstring();
    case VT_BOOL:
      return converted(value, VT_BOOL).get().boolVal == VARIANT_FALSE ? L"0" : L"-1";
    case VT_DATE:
      return dateText(value);
    default:
      return plainText(value);
  }
}

/// The elements of an array of known dimensions, as they lie in memory.
class Elements {
 public:
  Elements(const VARIANT& value, UINT dimensions) {
    if ((value.vt & VT_ARRAY) == 0) mismatch();
    type_ = static_cast<VARTYPE>(value.vt & VT_TYPEMASK);
    array_ = arrayIn(value);
    if (array_->cDims != dimensions) mismatch();
    checkType();
    std::uint64_t count = 1;
    for (UINT i = 0; i < dimensions; ++i) {
      count *= array_->rgsabound[i].cElements;
      if (count > kMostElements) raise(ErrorNumber::Overflow);
    }
    count_ = static_cast<std::size_t>(count);
    void* data = nullptr;
    if (FAILED(SafeArrayAccessData(array_, &data))) mismatch();
    data_ = static_cast<std::byte*>(data);
    if (data_ == nullptr && count_ > 0) {
      SafeArrayUnaccessData(array_);
      mismatch();
    }
  }
  ~Elements() { SafeArrayUnaccessData(array_); }
  Elements(const Elements&) = delete;
  Elements& operator=(const Elements&) = delete;

  /// Dimensions count from the left.
  std::size_t extent(UINT dimension) const {
    return array_->rgsabound[array_->cDims - 1 - dimension].cElements;
  }

  std::optional<std::wstring> operator[](std::size_t index) const {
    VARIANT element;
    VariantInit(&element);
    element.vt = static_cast<VARTYPE>(VT_BYREF | type_);
    element.byref = data_ + index * array_->cbElements;
    return cellOf(element);
  }

 private:
  void checkType() const {
    if (type_ != VT_VARIANT && !isPlain(type_)) mismatch();
    VARTYPE actual = VT_EMPTY;
    if (SUCCEEDED(SafeArrayGetVartype(array_, &actual)) && actual != type_) mismatch();
    if (array_->cbElements != sizeOf(type_)) mismatch();
  }

  static std::size_t sizeOf(VARTYPE type) {
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

  VARTYPE type_ = VT_EMPTY;
  SAFEARRAY* array_ = nullptr;
  std::size_t count_ = 0;
  std::byte* data_ = nullptr;
};

}  // namespace

bool truthOf(const VARIANT& result) {
  const VARIANT& value = target(result);
  if (value.vt == VT_EMPTY) return false;
  if (value.vt == VT_NULL) raise(ErrorNumber::InvalidUseOfNull);
  if (value.vt == VT_BSTR) return toBoolean(plainText(value));
  return converted(value, VT_BOOL).get().boolVal != VARIANT_FALSE;
}

std::int32_t numberOf(const VARIANT& result) {
  const VARIANT& value = target(result);
  if (value.vt == VT_EMPTY) return 0;
  if (value.vt == VT_NULL) raise(ErrorNumber::InvalidUseOfNull);
  if (value.vt == VT_BSTR) return toInt32(plainText(value));
  return converted(value, VT_I4).get().lVal;
}

std::wstring textOf(const VARIANT& result) {
  const VARIANT& value = target(result);
  if (value.vt == VT_EMPTY) return {};
  if (value.vt == VT_NULL) raise(ErrorNumber::InvalidUseOfNull);
  return plainText(value);
}

Table tableOf(const VARIANT& result) {
  const VARIANT& value = target(result);
  if (isEmpty(value)) return Table();
  const Elements elements(value, 2);
  const std::size_t columns = elements.extent(0);
  const std::size_t rows = elements.extent(1);
  Table table(columns);
  // The first dimension varies fastest: the columns of a row lie side by side.
  for (std::size_t i = 0; i < columns * rows; ++i) table.append(elements[i]);
  return table;
}

std::vector<std::wstring> textsOf(const VARIANT& result) {
  const VARIANT& value = target(result);
  std::vector<std::wstring> texts;
  if (isEmpty(value)) return texts;
  const Elements elements(value, 1);
  for (std::size_t i = 0; i < elements.extent(0); ++i) {
    std::optional<std::wstring> text = elements[i];
    if (!text) raise(ErrorNumber::InvalidUseOfNull);
    texts.push_back(std::move(*text));
  }
  return texts;
}

}  // namespace tlpacscfg
