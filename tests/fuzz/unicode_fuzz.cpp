#include <iconv.h>

#include <algorithm>
#include <cstring>

#include "fuzz/fuzz_tools.h"
#include "support/text.h"

using namespace tlpacscfg;
using fuzz::require;

namespace {

/// What the system's converter makes of the bytes; null when they are malformed.
std::optional<std::wstring> converted(const char* encoding, std::string bytes) {
  static_assert(sizeof(wchar_t) == 4);
  const iconv_t converter = iconv_open("UTF-32LE", encoding);
  std::wstring text(bytes.size(), L'\0');
  char* source = bytes.data();
  std::size_t sourceLeft = bytes.size();
  char* target = reinterpret_cast<char*>(text.data());
  std::size_t targetLeft = text.size() * sizeof(wchar_t);
  const std::size_t result = iconv(converter, &source, &sourceLeft, &target, &targetLeft);
  iconv_close(converter);
  if (result == static_cast<std::size_t>(-1)) return std::nullopt;
  text.resize(text.size() - targetLeft / sizeof(wchar_t));
  return text;
}

bool isScalar(wchar_t letter) {
  const auto point = static_cast<std::uint32_t>(letter);
  return point <= 0x10FFFF && (point < 0xD800 || point >= 0xE000);
}

bool isWellFormed(const std::wstring& text) {
  return std::all_of(text.begin(), text.end(), isScalar);
}

void checkUtf8(const std::string& bytes) {
  const std::wstring text = fromUtf8(bytes);
  require(isWellFormed(text), "whatever the bytes, the text is well-formed");
  const std::optional<std::wstring> expected = converted("UTF-8", bytes);
  if (expected) {
    require(text == *expected, "well-formed bytes give their characters");
    require(toUtf8(text) == bytes, "and the characters give the bytes");
  } else {
    require(text.find(L'\xFFFD') != text.npos, "malformed bytes leave a replacement character");
    require(fromUtf8(toUtf8(text)) == text, "and what was read once stays as it is");
  }
}

void checkUtf16(const std::u16string& units) {
  const std::wstring text = fromUtf16(units);
  require(isWellFormed(text), "whatever the units, the text is well-formed");
  const std::string bytes(reinterpret_cast<const char*>(units.data()), units.size() * 2);
  const std::optional<std::wstring> expected = converted("UTF-16LE", bytes);
  if (expected) {
    require(text == *expected, "well-formed units give their characters");
    require(toUtf16(text) == units, "and the characters give the units");
  } else {
    require(text.find(L'\xFFFD') != text.npos, "malformed units leave a replacement character");
  }
}

void checkWide(const std::wstring& text) {
  const std::wstring throughUtf8 = fromUtf8(toUtf8(text));
  const std::wstring throughUtf16 = fromUtf16(toUtf16(text));
  require(isWellFormed(throughUtf8) && isWellFormed(throughUtf16),
          "whatever the text, it comes back well-formed");
  if (isWellFormed(text)) {
    require(throughUtf8 == text && throughUtf16 == text, "a well-formed text comes back");
  }
  const std::wstring upper = upperCase(text);
  require(upper.size() == text.size(), "upper case keeps the length");
  require(equalIgnoringCase(text, upper) == (upperCase(upper) == upper),
          "a text equals its upper case");
}

template <class Text>
Text unitsOf(const std::uint8_t* data, std::size_t size) {
  Text units(size / sizeof(typename Text::value_type), {});
  if (!units.empty()) std::memcpy(units.data(), data, units.size() * sizeof(units[0]));
  return units;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  checkUtf8(unitsOf<std::string>(data, size));
  checkUtf16(unitsOf<std::u16string>(data, size));
  checkWide(unitsOf<std::wstring>(data, size));
  return 0;
}
