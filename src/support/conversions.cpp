#include "support/conversions.h"

#include <algorithm>
#include <charconv>
#include <climits>
#include <cmath>
#include <cstddef>
#include <limits>
#include <optional>
#include <string>

#include "support/runtime_error.h"
#include "support/text.h"

namespace tlpacscfg {
namespace {

/// The value used on underflow (zero) or overflow (infinity), with the number's sign.
double outOfRange(std::string_view number) {
  const std::size_t mark = std::min(number.find_first_of("eE"), number.size());
  const std::size_t point = std::min(number.find('.'), mark);
  const std::size_t first = number.find_first_of("123456789");
  int exponent = 0;
  if (mark < number.size()) {
    const bool plus = number[mark + 1] == '+';
    const char* const digits = number.data() + mark + (plus ? 2 : 1);
    const auto [end, error] = std::from_chars(digits, number.data() + number.size(), exponent);
    if (error != std::errc{}) exponent = *digits == '-' ? INT_MIN / 2 : INT_MAX / 2;
  }
  const bool tiny =
      static_cast<std::ptrdiff_t>(point) - static_cast<std::ptrdiff_t>(first) + exponent < 0;
  const double magnitude = tiny ? 0.0 : std::numeric_limits<double>::infinity();
  return number.front() == '-' ? -magnitude : magnitude;
}

std::optional<double> parseNumber(std::wstring_view text) {
  text = trimBlanks(text);
  if (text.starts_with(L'+')) {
    text.remove_prefix(1);
    if (text.starts_with(L'-')) return std::nullopt;
  }
  std::string narrow;
  narrow.reserve(text.size());
  for (const wchar_t c : text) {
    // from_chars also accepts "inf" and "nan".
    const bool partOfNumber =
        (c >= L'0' && c <= L'9') || c == L'-' || c == L'+' || c == L'.' || c == L'e' || c == L'E';
    if (!partOfNumber) return std::nullopt;
    narrow += static_cast<char>(c);
  }
  double value = 0;
  const char* const end = narrow.data() + narrow.size();
  const auto [stop, error] = std::from_chars(narrow.data(), end, value);
  if (stop != end || error == std::errc::invalid_argument) return std::nullopt;
  if (error == std::errc::result_out_of_range) return outOfRange(narrow);
  return value;
}

/// The fast path for what databases nearly always deliver: up to nine digits. nullopt for any other
/// text.
std::optional<std::int32_t> plainInteger(std::wstring_view text) {
  constexpr std::size_t kMaxDigits = 9;
  const bool negative = text.starts_with(L'-');
  if (negative) text.remove_prefix(1);
  if (text.empty() || text.size() > kMaxDigits) return std::nullopt;
  std::int32_t number = 0;
  for (const wchar_t digit : text) {
    if (digit < L'0' || digit > L'9') return std::nullopt;
    number = number * 10 + static_cast<std::int32_t>(digit - L'0');
  }
  return negative ? -number : number;
}

template <class Integer>
Integer fromDouble(double number) {
  // Halves go to the even neighbour: the default rounding mode of nearbyint.
  const double whole = std::nearbyint(number);
  if (!(whole >= std::numeric_limits<Integer>::min() &&
        whole <= std::numeric_limits<Integer>::max())) {
    raise(ErrorNumber::Overflow);
  }
  return static_cast<Integer>(whole);
}

}  // namespace

bool isNumeric(std::wstring_view text) { return plainInteger(text) || parseNumber(text); }

std::int16_t toInt16(std::wstring_view text) {
  const std::optional<std::int32_t> plain = plainInteger(text);
  return plain ? toInt16(std::int64_t{*plain}) : fromDouble<std::int16_t>(toDouble(text));
}

std::int32_t toInt32(std::wstring_view text) {
  const std::optional<std::int32_t> plain = plainInteger(text);
  return plain ? *plain : fromDouble<std::int32_t>(toDouble(text));
}

double toDouble(std::wstring_view text) {
  const std::optional<double> number = parseNumber(text);
  if (!number) raise(ErrorNumber::TypeMismatch);
  return *number;
}

std::int16_t toInt16(std::int64_t number) {
  if (number < std::numeric_limits<std::int16_t>::min() ||
      number > std::numeric_limits<std::int16_t>::max()) {
    raise(ErrorNumber::Overflow);
  }
  return static_cast<std::int16_t>(number);
}

std::int16_t toInt16(double number) { return fromDouble<std::int16_t>(number); }
std::int32_t toInt32(double number) { return fromDouble<std::int32_t>(number); }

bool toBoolean(std::wstring_view text) {
  const std::wstring_view word = trimBlanks(text);
  if (equalIgnoringCase(word, L"True")) return true;
  if (equalIgnoringCase(word, L"False")) return false;
  const std::optional<double> number = parseNumber(word);
  if (!number) raise(ErrorNumber::TypeMismatch);
  return *number != 0;
}

}  // namespace tlpacscfg
