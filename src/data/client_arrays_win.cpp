#include "data/client_arrays_win.h"

#include <oleauto.h>

#include <cstddef>
#include <cstdio>
#include <optional>
#include <utility>

#include "automation/call_results.h"
#include "automation/safe_array.h"
#include "support/runtime_error.h"

namespace tlpacscfg {
namespace {

std::wstring dateText(const VARIANT& value) {
  SYSTEMTIME time{};
  if (!VariantTimeToSystemTime(plainValue(value, VT_DATE).get().date, &time)) {
    raise(ErrorNumber::TypeMismatch);
  }
  wchar_t text[32];
  std::swprintf(text, std::size(text), L"%04d-%02d-%02d %02d:%02d:%02d", time.wYear, time.wMonth,
                time.wDay, time.wHour, time.wMinute, time.wSecond);
  return text;
}

std::optional<std::wstring> cellOf(const VARIANT& element) {
  const VARIANT& value = valueOf(element);
  switch (value.vt & ~VT_BYREF) {
    case VT_NULL:
      return std::nullopt;
    case VT_EMPTY:
      return std::wstring();
    case VT_BOOL:
      return plainValue(value, VT_BOOL).get().boolVal == VARIANT_FALSE ? L"0" : L"-1";
    case VT_DATE:
      return dateText(value);
    default:
      return plainText(value);
  }
}

}  // namespace

Table tableOf(const VARIANT& result) {
  const ArrayReader cells(valueOf(result), 2);
  const std::size_t columns = cells.extent(0);
  const std::size_t count = columns * cells.extent(1);
  Table table(columns);
  // The columns of a row lie side by side.
  for (std::size_t i = 0; i < count; ++i) table.append(cellOf(cells[i]));
  return table;
}

std::vector<std::wstring> textsOf(const VARIANT& result) {
  const ArrayReader elements(valueOf(result), 1);
  std::vector<std::wstring> texts;
  for (std::size_t i = 0; i < elements.extent(0); ++i) {
    std::optional<std::wstring> text = cellOf(elements[i]);
    if (!text) raise(ErrorNumber::InvalidUseOfNull);
    texts.push_back(std::move(*text));
  }
  return texts;
}

}  // namespace tlpacscfg
