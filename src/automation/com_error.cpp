#include "automation/com_error.h"

#include <oleauto.h>

#include <algorithm>
#include <iterator>
#include <new>

#include "automation/com_ptr.h"
#include "support/runtime_error.h"

namespace tlpacscfg {
namespace {

struct Description {
  HRESULT result;
  const wchar_t* text;
};

constexpr Description kDescriptions[] = {
    {DISP_E_TYPEMISMATCH, L"Type mismatch"},
    {DISP_E_OVERFLOW, L"Overflow"},
    {DISP_E_BADPARAMCOUNT, L"Wrong number of arguments or invalid property assignment"},
    {DISP_E_MEMBERNOTFOUND, L"Object doesn't support this property or method"},
    {DISP_E_UNKNOWNNAME, L"Object doesn't support this property or method"},
    {DISP_E_PARAMNOTFOUND, L"Named argument not found"},
    {DISP_E_PARAMNOTOPTIONAL, L"Argument not optional"},
    {E_POINTER, L"Invalid pointer"},
    {E_INVALIDARG, L"Invalid procedure call or argument"},
    {E_OUTOFMEMORY, L"Out of memory"},
    {RPC_E_WRONG_THREAD, L"The component is in use on another thread"},
};

const wchar_t* describeResult(HRESULT result) {
  const auto found = std::ranges::find(kDescriptions, result, &Description::result);
  return found == std::end(kDescriptions) ? L"Automation error" : found->text;
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
