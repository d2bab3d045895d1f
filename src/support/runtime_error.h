#pragma once

#include <cstdint>
#include <exception>
#include <string>

namespace tlpacscfg {

/// The run-time error numbers that hosts see and error boxes show.
enum class ErrorNumber : std::int32_t {
  InvalidProcedureCall = 5,
  Overflow = 6,
  SubscriptOutOfRange = 9,
  TypeMismatch = 13,
  DiskFull = 61,
  PathFileAccess = 75,
  ObjectNotSet = 91,
  InvalidUseOfNull = 94,
  InvalidPropertyArrayIndex = 381,
  CannotCreateObject = 429,
  DuplicateKey = 457,
};

/// The exception of the component: a number and a description.
class RunTimeError : public std::exception {
 public:
  RunTimeError(std::int32_t number, std::wstring description);

  std::int32_t number() const { return number_; }
  const std::wstring& description() const { return description_; }
  const char* what() const noexcept override { return narrow_.c_str(); }

 private:
  std::int32_t number_;
  std::wstring description_;
  std::string narrow_;
};

/// Throws the error with its standard description.
[[noreturn]] void raise(ErrorNumber number);

/// Any exception as a run-time error; one of the C++ library becomes error 5.
RunTimeError describe(const std::exception& error);

/// The same for the exception being handled, of whatever type. For the outermost functions, which
/// catch everything.
RunTimeError describeCurrent();

}  // namespace tlpacscfg
