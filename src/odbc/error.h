#pragma once

#include <cstdint>
#include <string>

#include "odbc/platform.h"
#include "support/runtime_error.h"

namespace tlpacscfg::odbc {

/// The number of a failed or timed-out login, as Windows' ODBC layer reports it.
inline constexpr std::int32_t kLoginFailed = -2147467259;
/// The number of every other ODBC failure.
inline constexpr std::int32_t kOdbcFailed = 40002;

/// The text of every diagnostic record of the driver, and the codes of the first.
class Error : public RunTimeError {
 public:
  Error(std::int32_t number, std::wstring description, std::wstring sqlState,
        std::int32_t nativeError);

  const std::wstring& sqlState() const { return sqlState_; }
  std::int32_t nativeError() const { return nativeError_; }

  /// Whether the connection can no longer be used.
  bool connectionIsLost() const;

 private:
  std::wstring sqlState_;
  std::int32_t nativeError_;
};

/// Throws the handle's diagnostic records as an Error.
[[noreturn]] void fail(SQLSMALLINT handleType, SQLHANDLE handle);

/// Throws Error unless the code is SQL_SUCCESS or SQL_SUCCESS_WITH_INFO.
void check(SQLRETURN code, SQLSMALLINT handleType, SQLHANDLE handle);

}  // namespace tlpacscfg::odbc
