#include "automation/com_error.h"

#include <oleauto.h>

#include <new>

#include "automation/com_ptr.h"
#include "support/runtime_error.h"

namespace tlpacscfg {
namespace {

const wchar_t* describeResult(HRESULT result) {
  switch (result) {
    case DISP_E_TYPEMISMATCH:
      return L"Type mismatch";
    case DISP_E_OVERFLOW:
      return L"Overflow";
    case DISP_E_BADPARAMCOUNT:
      return L"Wrong number of arguments or invalid property assignment";
    case DISP_E_MEMBERNOTFOUND:
    case DISP_E_UNKNOWNNAME:
      return L"Object doesn't support this property or method";
    case DISP_E_PARAMNOTFOUND:
      return L"Named argument not found";
    case DISP_E_PARAMNOTOPTIONAL:
      return L"Argument not optional";
    case E_POINTER:
      return L"Invalid pointer";
    case E_INVALIDARG:
      return L"Invalid procedure call or argument";
    case E_OUTOFMEMORY:
      return L"Out of memory";
    case RPC_E_WRONG_THREAD:
      return L"The component is in use on another thread";
    default:
      return L"Automation error";
  }
}

}  // namespace

SCODE scodeOf(std::int32_t errorNumber) {
  if (errorNumber < 0) return errorNumber;
  constexpr std::uint32_t kControlErrors = 0x800A0000;
  return static_cast<SCODE>(kControlErrors | (static_cast<std::uint32_t>(errorNumber) & 0xFFFF));
}

Failure currentFailure() {
  try {
    throw;
  } catch (const ComError& error) {
    return {.result = error.result(),
            .description = describeResult(error.result()),
            .argument = error.argument()};
  } catch (const std::bad_alloc&) {
    return {.result = E_OUTOFMEMORY, .description = describeResult(E_OUTOFMEMORY)};
  } catch (...) {
    const RunTimeError known = describeCurrent();
    return {.result = DISP_E_EXCEPTION,
            .scode = scodeOf(known.number()),
            .description = known.description()};
  }
}

void publish(const Failure& failure, const wchar_t* source, REFGUID interfaceId) {
  ComPtr<ICreateErrorInfo> creator;
  if (FAILED(CreateErrorInfo(creator.out()))) return;
  std::wstring sourceName = source;
  std::wstring description = failure.description;
  creator->SetGUID(interfaceId);
  creator->SetSource(sourceName.data());
  creator->SetDescription(description.data());
  const ComPtr<IErrorInfo> info = creator.query<IErrorInfo>();
  if (info) SetErrorInfo(0, info.get());
}

}  // namespace tlpacscfg
