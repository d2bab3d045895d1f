#include <cmath>
#include <cstdlib>

#include "fuzz/fuzz_tools.h"
#include "support/conversions.h"
#include "support/runtime_error.h"
#include "support/text.h"

using namespace tlpacscfg;
using fuzz::require;

namespace {

/// Moves past digits and says how many there were.
int digits(const std::string& text, std::size_t& position) {
  int count = 0;
  for (; position < text.size() && text[position] >= '0' && text[position] <= '9'; ++position) {
    ++count;
  }
  return count;
}

bool oneOf(const std::string& text, std::size_t& position, const std::string& letters) {
  if (position >= text.size() || letters.find(text[position]) == std::string::npos) return false;
  ++position;
  return true;
}

bool isDecimalNumber(const std::string& text) {
  std::size_t position = 0;
  oneOf(text, position, "+-");
  int count = digits(text, position);
  if (oneOf(text, position, ".")) count += digits(text, position);
  if (count == 0) return false;
  if (oneOf(text, position, "eE")) {
    oneOf(text, position, "+-");
    if (digits(text, position) == 0) return false;
  }
  return position == text.size();
}

std::optional<double> expectedNumber(const std::wstring& text) {
  const std::string narrow = toUtf8(text);
  const std::size_t first = narrow.find_first_not_of(' ');
  if (first == std::string::npos) return std::nullopt;
  const std::string trimmed = narrow.substr(first, narrow.find_last_not_of(' ') - first + 1);
  if (!isDecimalNumber(trimmed)) return std::nullopt;
  return std::strtod(trimmed.c_str(), nullptr);
}

double halfToEven(double number) {
  const double below = std::floor(number);
  const double rest = number - below;
  if (rest < 0.5) return below;
  if (rest > 0.5) return below + 1;
  return std::fmod(below, 2) == 0 ? below : below + 1;
}

template <class Integer>
void checkInteger(const std::wstring& text, const std::optional<double>& number,
                  Integer (*convert)(std::wstring_view)) {
  Integer converted{};
  const auto error = fuzz::errorOf([&] { converted = convert(text); });
  if (!number) {
    require(error == static_cast<std::int32_t>(ErrorNumber::TypeMismatch),
            "what is no number is a type mismatch");
    return;
  }
  const double whole = halfToEven(*number);
  if (whole < std::numeric_limits<Integer>::min() || whole > std::numeric_limits<Integer>::max()) {
    require(error == static_cast<std::int32_t>(ErrorNumber::Overflow),
            "a number that does not fit is an overflow");
    return;
  }
  require(!error && converted == static_cast<Integer>(whole),
          "a number becomes the nearest whole one, halves the even one");
}

void checkText(const std::wstring& text) {
  const std::optional<double> number = expectedNumber(text);
  require(isNumeric(text) == number.has_value(), "a decimal number is numeric, nothing else is");
  checkInteger<std::int16_t>(text, number, &toInt16);
  checkInteger<std::int32_t>(text, number, &toInt32);
  if (number) {
    require(toDouble(text) == *number, "a number has its value");
    require(toBoolean(text) == (*number != 0), "a number other than zero is true");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  checkText(fuzz::textOf(data, size));
  FuzzedDataProvider input(data, size);
  checkText(fuzz::takeNumber(input));

  const auto integer = input.ConsumeIntegral<std::int64_t>();
  const bool fits = integer >= -32768 && integer <= 32767;
  require(fuzz::errorOf([&] {
            require(toInt16(integer) == integer, "a whole number keeps its value");
          }).has_value() != fits,
          "a whole number that does not fit is an overflow");
  return 0;
}
