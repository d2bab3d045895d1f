#include "data/client_arrays_win.h"

#include <gtest/gtest.h>
#include <oleauto.h>

#include <cstddef>
#include <cstdlib>
#include <optional>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "support/runtime_error.h"

namespace tlpacscfg::test {
namespace {

/// An array as a client may answer it, sound or broken, and what must be read from it.
class RandomArray {
 public:
  using Cells = std::vector<std::optional<std::wstring>>;

  explicit RandomArray(std::mt19937& random) : random_(random) {
    constexpr VARTYPE kTypes[] = {VT_VARIANT, VT_VARIANT, VT_BSTR, VT_I2,
                                  VT_I4,      VT_UI1,     VT_BOOL, VT_DISPATCH};
    type_ = kTypes[below(std::size(kTypes))];
    const UINT dimensions = below(10) == 0 ? 1 + 2 * below(2) : 2;
    refused_ = type_ == VT_DISPATCH || dimensions != 2;
    std::size_t elements = 1;
    for (UINT i = 0; i < dimensions; ++i) {
      bounds_[i] = {below(5), static_cast<LONG>(below(9)) - 4};
      elements *= bounds_[i].cElements;
    }
    array_ = SafeArrayCreate(type_, dimensions, bounds_);
    auto* place = static_cast<std::byte*>(array_->pvData);
    for (std::size_t i = 0; i < elements; ++i, place += array_->cbElements) write(place, type_);
    sound_ = *array_;
    if (below(4) == 0) breakDescription(elements);
    value_.vt = static_cast<VARTYPE>(VT_ARRAY | type_);
    value_.parray = array_;
    if (below(4) == 0) {
      value_.vt |= VT_BYREF;
      value_.pparray = &array_;
    }
  }
  ~RandomArray() {
    *array_ = sound_;
    SafeArrayDestroy(array_);
  }
  RandomArray(const RandomArray&) = delete;
  RandomArray& operator=(const RandomArray&) = delete;

  const VARIANT& value() const { return value_; }
  bool refused() const { return refused_; }
  std::size_t columns() const { return bounds_[0].cElements; }
  /// In the order of the array: a row after the other.
  const Cells& cells() const { return cells_; }

 private:
  unsigned below(std::size_t limit) { return static_cast<unsigned>(random_() % limit); }

  /// What no array can be: without the memory of its elements, with larger ones, or with more than
  /// fit.
  void breakDescription(std::size_t elements) {
    switch (below(3)) {
      case 0:
        array_->pvData = nullptr;
        refused_ = refused_ || elements > 0;
        break;
      case 1:
        array_->cbElements *= 2;
        refused_ = true;
        break;
      default:
        array_->rgsabound[0].cElements = 0x7fffffff;
        refused_ = refused_ || elements > 0;
        // Nothing times anything is nothing.
        if (elements == 0) array_->rgsabound[0] = sound_.rgsabound[0];
    }
  }

  void write(void* place, VARTYPE type) {
    const auto number = static_cast<std::int32_t>(random_());
    switch (type) {
      case VT_VARIANT:
        return writeVariant(*static_cast<VARIANT*>(place));
      case VT_BSTR: {
        std::wstring text(below(6), L' ');
        for (wchar_t& letter : text) letter = static_cast<wchar_t>(1 + below(0xFFFF));
        *static_cast<BSTR*>(place) = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
        return cells_.push_back(std::move(text));
      }
      case VT_I2:
        *static_cast<SHORT*>(place) = static_cast<SHORT>(number);
        return cells_.push_back(std::to_wstring(static_cast<SHORT>(number)));
      case VT_I4:
        *static_cast<LONG*>(place) = number;
        return cells_.push_back(std::to_wstring(number));
      case VT_UI1:
        *static_cast<BYTE*>(place) = static_cast<BYTE>(number);
        return cells_.push_back(std::to_wstring(static_cast<BYTE>(number)));
      case VT_BOOL:
        *static_cast<VARIANT_BOOL*>(place) = number < 0 ? VARIANT_TRUE : VARIANT_FALSE;
        return cells_.push_back(number < 0 ? L"-1" : L"0");
    }
  }

  void writeVariant(VARIANT& value) {
    constexpr VARTYPE kTypes[] = {VT_BSTR, VT_I2,   VT_I4,    VT_UI1,  VT_BOOL,
                                  VT_NULL, VT_NULL, VT_EMPTY, VT_EMPTY};
    if (below(50) == 0) {
      constexpr VARTYPE kNoCells[] = {VT_ERROR, VT_DISPATCH, VT_ARRAY | VT_I4, VT_BYREF | VT_I4};
      value.vt = kNoCells[below(std::size(kNoCells))];
      refused_ = true;
      return;
    }
    value.vt = kTypes[below(std::size(kTypes))];
    if (value.vt == VT_NULL) {
      cells_.emplace_back();
    } else if (value.vt == VT_EMPTY) {
      cells_.emplace_back(L"");
    } else {
      write(&value.llVal, value.vt);
    }
  }

  std::mt19937& random_;
  VARTYPE type_ = VT_EMPTY;
  SAFEARRAYBOUND bounds_[3] = {};
  SAFEARRAY* array_ = nullptr;
  SAFEARRAY sound_{};
  VARIANT value_{};
  bool refused_ = false;
  Cells cells_;
};

std::optional<Table> read(const VARIANT& value) {
  try {
    return tlpacscfg::tableOf(value);
  } catch (const RunTimeError&) {
    return std::nullopt;
  }
}

TEST(ClientArraysTest, SoundArraysAreReadAndBrokenOnesRefused) {
  const char* const given = std::getenv("TL_FUZZ_SEED");
  const unsigned seed = given ? static_cast<unsigned>(std::atoi(given)) : std::random_device()();
  SCOPED_TRACE("TL_FUZZ_SEED=" + std::to_string(seed));
  std::mt19937 random(seed);
  for (int i = 0; i < 20'000; ++i) {
    const RandomArray array(random);
    const std::optional<Table> table = read(array.value());
    ASSERT_EQ(table.has_value(), !array.refused()) << "array " << i;
    if (!table) continue;
    const std::size_t columns = array.columns();
    ASSERT_EQ(table->columns() * table->rows(), array.cells().size()) << "array " << i;
    for (std::size_t cell = 0; cell < array.cells().size(); ++cell) {
      const Cell actual = table->at(cell % columns, cell / columns);
      ASSERT_EQ(actual ? std::optional<std::wstring>(*actual) : std::nullopt, array.cells()[cell])
          << "array " << i << ", cell " << cell;
    }
  }
}

}  // namespace
}  // namespace tlpacscfg::test
