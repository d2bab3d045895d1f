#include "support/runtime_error.h"

#include <utility>

#include "support/text.h"

namespace tlpacscfg {
namespace {

const wchar_t* standardDescription(ErrorNumber number) {
  switch (number) {
    case ErrorNumber::InvalidProcedureCall:
      return L"Invalid procedure call or argument";
    case ErrorNumber::Overflow:
      return L"Overflow";
    case ErrorNumber::SubscriptOutOfRange:
      return L"Subscript out of range";
    case ErrorNumber::TypeMismatch:
      return L"Type mismatch";
    case ErrorNumber::DiskFull:
      return L"Disk full";
    case ErrorNumber::PathFileAccess:
      return L"Path/File access error";
    case ErrorNumber::ObjectNotSet:
      return L"Object variable or With block variable not set";
    case ErrorNumber::InvalidUseOfNull:
      return L"Invalid use of Null";
    case ErrorNumber::InvalidPropertyArrayIndex:
      return L"Invalid property array index";
    case ErrorNumber::CannotCreateObject:
      return L"ActiveX component can't create object";
    case ErrorNumber::DuplicateKey:
      return L"This key is already associated with an element of this collection";
  }
  return L"Application-defined or object-defined error";
}

}  // namespace

RunTimeError::RunTimeError(std::int32_t number, std::wstring description)
    : number_(number), description_(std::move(description)), narrow_(toUtf8(description_)) {}

void raise(ErrorNumber number) {
  throw RunTimeError(static_cast<std::int32_t>(number), standardDescription(number));
}

RunTimeError describe(const std::exception& error) {
  if (const auto* known = dynamic_cast<const RunTimeError*>(&error)) return *known;
  return RunTimeError(static_cast<std::int32_t>(ErrorNumber::InvalidProcedureCall),
                      fromUtf8(error.what()));
}

RunTimeError describeCurrent() {
  try {
    throw;
  } catch (const std::exception& error) {
    return describe(error);
  } catch (...) {
    constexpr auto kUnknown = ErrorNumber::InvalidProcedureCall;
    return RunTimeError(static_cast<std::int32_t>(kUnknown), standardDescription(kUnknown));
  }
}

}  // namespace tlpacscfg
