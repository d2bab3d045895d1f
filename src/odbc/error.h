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

/// What the driver said: the text of every diagnostic record, and the first record's codes.
class Error : public RunTimeError {
 public:
  Error(std::int32_t number, std::wstring description, std::wstring sqlState,
        std::int32_t nativeError);

  const std::wstring& sqlState() const { return sqlState_; }
  std::int32_t nativeError() const { return nativeError_; }

  /// Nothing more can be sent over the connection.
  bool connectionIsLost() const;

 private:
  std::wstring sqlState_;
  std::int32_t nativeError_;
};

/// Throws what the handle's diagnostic records say.
[[noreturn]] void fail(SQLSMALLINT handleType, SQLHANDLE handle);

/// Throws unless the return code is a success, with or without information.
void check(SQLRETURN code, SQLSMALLINT handleType, SQLHANDLE handle);

}  // namespace tlpacscfg::odbc
