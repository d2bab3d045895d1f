#pragma once

#include <windows.h>

#include <wtypes.h>

#include <cstdint>
#include <optional>
#include <string>

namespace tlpacscfg {

/// A call refused with an HRESULT of its own, for instance for an argument of the wrong type.
class ComError {
 public:
  explicit ComError(HRESULT result, std::optional<UINT> argument = std::nullopt)
      : result_(result), argument_(argument) {}

  HRESULT result() const { return result_; }
  /// The index of the argument in DISPPARAMS::rgvarg.
  std::optional<UINT> argument() const { return argument_; }

 private:
  HRESULT result_;
  std::optional<UINT> argument_;
};

/// An exception as the caller sees it.
struct Failure {
  HRESULT result = E_UNEXPECTED;
  /// The number of an error of the component, for EXCEPINFO; `result` is DISP_E_EXCEPTION then.
  SCODE scode = S_OK;
  std::wstring description = {};
  std::optional<UINT> argument = std::nullopt;
};

/// Classic run-time error numbers become control errors (0x800A0000 and the number); negative
/// numbers are result codes already.
SCODE scodeOf(std::int32_t errorNumber);

/// Describes the exception being handled.
Failure currentFailure();

/// Sets source and description for GetErrorInfo.
void publish(const Failure& failure, const wchar_t* source, REFGUID interfaceId);

/// Wraps the body of a COM method: no exception leaves it. `report` converts a Failure into the
/// result.
template <class Work, class Report>
HRESULT guarded(Work work, Report report) noexcept {
  try {
    try {
      return work();
    } catch (...) {
      return report(currentFailure());
    }
  } catch (...) {
    return E_OUTOFMEMORY;
  }
}

template <class Work>
HRESULT guarded(Work work) noexcept {
  return guarded(work, [](const Failure& failure) { return failure.result; });
}

}  // namespace tlpacscfg
