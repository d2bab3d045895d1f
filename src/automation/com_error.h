#pragma once

#include <windows.h>

#include <wtypes.h>

#include <cstdint>
#include <optional>
#include <string>

namespace tlpacscfg {

/// A call that COM itself refuses, for instance an argument of the wrong type.
class ComError {
 public:
  explicit ComError(HRESULT result, std::optional<UINT> argument = std::nullopt)
      : result_(result), argument_(argument) {}

  HRESULT result() const { return result_; }
  /// Its place in DISPPARAMS::rgvarg.
  std::optional<UINT> argument() const { return argument_; }

 private:
  HRESULT result_;
  std::optional<UINT> argument_;
};

/// What a host learns of an exception.
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

/// The exception being handled.
Failure currentFailure();

/// Leaves source and description for GetErrorInfo.
void publish(const Failure& failure, const wchar_t* source, REFGUID interfaceId);

/// The border to COM: no exception passes. `report` turns a Failure into the result.
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
