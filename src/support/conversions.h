#pragma once

#include <cstdint>
#include <string_view>

namespace tlpacscfg {

/// True for a decimal number: blanks around it, a sign, a fraction and an exponent are allowed.
bool isNumeric(std::wstring_view text);

/// The nearest whole number; halves are rounded to the even neighbour.
/// Throws TypeMismatch for a text that is not numeric, Overflow for a number that does not fit.
std::int16_t toInt16(std::wstring_view text);
std::int32_t toInt32(std::wstring_view text);

/// Throws TypeMismatch for a text that is not numeric; too large a number is infinite.
double toDouble(std::wstring_view text);

/// Round and check in the same way; throw Overflow.
std::int16_t toInt16(std::int64_t number);
std::int16_t toInt16(double number);
std::int32_t toInt32(double number);

/// The words True and False in any letter case, or a number, non-zero meaning true.
/// Throws TypeMismatch for anything else.
bool toBoolean(std::wstring_view text);

}  // namespace tlpacscfg
