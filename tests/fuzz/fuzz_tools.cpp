#include "fuzz/fuzz_tools.h"

#include <algorithm>
#include <cstdlib>
#include <iostream>

#include "support/runtime_error.h"
#include "support/text.h"

namespace tlpacscfg::fuzz {

void require(bool holds, const char* property) {
  if (holds) return;
  std::cerr << "Broken: " << property << std::endl;
  std::abort();
}

std::wstring textOf(const std::uint8_t* data, std::size_t size) {
  return fromUtf8(std::string_view(reinterpret_cast<const char*>(data), size));
}

std::wstring takeText(FuzzedDataProvider& input, std::size_t maxBytes) {
  std::wstring text = fromUtf8(input.ConsumeRandomLengthString(maxBytes));
  std::erase(text, L'\0');
  return text;
}

std::wstring takeNumber(FuzzedDataProvider& input) {
  static const std::wstring kInteresting[] = {
      L"0",     L"1",   L"-1",         L"32767",      L"32768",       L"-32768", L"-32769",
      L"0.5",   L"1.5", L"2.5",        L"32767.5",    L"-32768.5",    L"1e4",    L"1e999",
      L"1e-99", L"",    L" ",          L" 7 ",        L"+8",          L"7x",     L"0x10",
      L"inf",   L"nan", L"2147483647", L"2147483648", L"-2147483648", L"1,5",    L"--1",
      L"\t1",   L"1 2", L"007",        L"True",       L"9999999999",  L"-0"};
  if (input.ConsumeBool()) return input.PickValueInArray(kInteresting);
  return decimal(input.ConsumeIntegral<std::int32_t>());
}

std::optional<std::wstring> takeCell(FuzzedDataProvider& input) {
  switch (input.ConsumeIntegralInRange(0, 3)) {
    case 0:
      return std::nullopt;
    case 1:
      return takeText(input, 600);
    default:
      return takeNumber(input);
  }
}

std::optional<std::int32_t> errorOf(const std::function<void()>& action) {
  try {
    action();
    return std::nullopt;
  } catch (const RunTimeError& error) {
    return error.number();
  }
}

Table tableOf(const Rows& rows, std::size_t columns) {
  Table table(columns);
  for (const auto& row : rows) {
    for (std::size_t i = 0; i < columns; ++i) {
      table.append(row[i] ? Cell(*row[i]) : std::nullopt);
    }
  }
  return table;
}

}  // namespace tlpacscfg::fuzz
