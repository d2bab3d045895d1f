#include "client/arrays.h"

#include <new>
#include <span>

namespace tlpacscfg::client {
namespace {

/// An array of Empty elements, and the elements as they lie in memory.
class VariantArray {
 public:
  explicit VariantArray(std::span<SAFEARRAYBOUND> bounds) {
    SAFEARRAY* const array =
        SafeArrayCreate(VT_VARIANT, static_cast<UINT>(bounds.size()), bounds.data());
    if (array == nullptr) throw std::bad_alloc();
    VARIANT* const value = value_.out();
    value->vt = VT_ARRAY | VT_VARIANT;
    value->parray = array;
    void* data = nullptr;
    if (FAILED(SafeArrayAccessData(array, &data))) throw std::bad_alloc();
    elements_ = static_cast<VARIANT*>(data);
  }

  ~VariantArray() {
    if (elements_) SafeArrayUnaccessData(value_.get().parray);
  }
  VariantArray(const VariantArray&) = delete;
  VariantArray& operator=(const VariantArray&) = delete;

  void append(OwnedVariant element) { *elements_++ = element.release(); }

  OwnedVariant take() {
    // A locked array could not be freed by its next owner.
    elements_ = nullptr;
    SafeArrayUnaccessData(value_.get().parray);
    return std::move(value_);
  }

 private:
  OwnedVariant value_;
  VARIANT* elements_ = nullptr;
};

OwnedVariant nullValue() {
  OwnedVariant value;
  value.out()->vt = VT_NULL;
  return value;
}

}  // namespace

OwnedVariant toArray(const Table& table) {
  SAFEARRAYBOUND bounds[] = {{static_cast<ULONG>(table.columns()), 0},
                             {static_cast<ULONG>(table.rows()), 0}};
  VariantArray array(bounds);
  // The first dimension varies fastest.
  for (std::size_t row = 0; row < table.rows(); ++row) {
    for (std::size_t column = 0; column < table.columns(); ++column) {
      const Cell cell = table.at(column, row);
      array.append(cell ? OwnedVariant(*cell) : nullValue());
    }
  }
  return array.take();
}

OwnedVariant toArray(const std::vector<std::wstring>& texts) {
  SAFEARRAYBOUND bounds[] = {{static_cast<ULONG>(texts.size()), 0}};
  VariantArray array(bounds);
  for (const std::wstring& text : texts) array.append(OwnedVariant(text));
  return array.take();
}

}  // namespace tlpacscfg::client
