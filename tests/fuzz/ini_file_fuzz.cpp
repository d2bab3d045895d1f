#include "fuzz/fuzz_tools.h"
#include "support/ini_file.h"
#include "support/text.h"

using namespace tlpacscfg;
using fuzz::require;

namespace {

std::wstring strippedValue(std::wstring value) {
  constexpr const wchar_t* kSpace = L" \t\r";
  const std::size_t first = value.find_first_not_of(kSpace);
  if (first == value.npos) return {};
  value = value.substr(first, value.find_last_not_of(kSpace) - first + 1);
  const wchar_t quote = value.front();
  if (value.size() >= 2 && value.back() == quote && (quote == L'"' || quote == L'\'')) {
    value = value.substr(1, value.size() - 2);
  }
  return value;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzedDataProvider input(data, size);
  std::wstring value = fuzz::takeText(input, 200);
  const std::wstring text = fuzz::textOf(data, size);

  const std::wstring found = findIniValue(text, L"System", L"NetworkRootDir");
  require(text.find(found) != text.npos, "a value is a piece of the file");
  require(found.find(L'\n') == found.npos, "a value ends with its line");

  std::erase(value, L'\n');
  const std::wstring file =
      text + L"\r\n[LastSection]\r\n; key=no\r\nKEY = " + value + L"\r\nkey=later";
  if (upperCase(text).find(L"LASTSECTION") == std::wstring::npos) {
    require(findIniValue(file, L"lastsection", L"Key") == strippedValue(value),
            "the first line of the key in its section holds the value");
  }
  return 0;
}
