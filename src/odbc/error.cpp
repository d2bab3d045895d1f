#include "odbc/error.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

namespace tlpacscfg::odbc {
namespace {

struct Diagnostic {
  std::wstring sqlState;
  std::wstring text;
  SQLINTEGER nativeError = 0;
};

std::vector<Diagnostic> diagnostics(SQLSMALLINT handleType, SQLHANDLE handle) {
  std::vector<Diagnostic> records;
  std::array<SQLWCHAR, 6> state{};
  std::vector<SQLWCHAR> text(1024);
  for (SQLSMALLINT number = 1;; ++number) {
    Diagnostic record;
    SQLSMALLINT length = 0;
    SQLRETURN code = SQLGetDiagRecW(handleType, handle, number, state.data(), &record.nativeError,
                                    text.data(), static_cast<SQLSMALLINT>(text.size()), &length);
    if (!SQL_SUCCEEDED(code)) return records;
    if (static_cast<std::size_t>(length) >= text.size()) {
      text.resize(static_cast<std::size_t>(length) + 1);
      code = SQLGetDiagRecW(handleType, handle, number, state.data(), &record.nativeError,
                            text.data(), static_cast<SQLSMALLINT>(text.size()), &length);
      if (!SQL_SUCCEEDED(code)) return records;
    }
    record.sqlState = fromUtf16(odbcView(state.data(), 5));
    record.text = fromUtf16(odbcView(text.data(), static_cast<std::size_t>(length)));
    records.push_back(std::move(record));
  }
}

/// Connection failures, refused logins and expired time-outs.
bool isLoginFailure(const Diagnostic& record) {
  constexpr SQLINTEGER kServerRefusedLogin = 18456;
  return record.sqlState.starts_with(L"08") || record.sqlState.starts_with(L"28") ||
         record.sqlState.starts_with(L"HYT") || record.nativeError == kServerRefusedLogin;
}

}  // namespace

Error::Error(std::int32_t number, std::wstring description, std::wstring sqlState,
             std::int32_t nativeError)
    : RunTimeError(number, std::move(description)),
      sqlState_(std::move(sqlState)),
      nativeError_(nativeError) {}

bool Error::connectionIsLost() const {
  constexpr const wchar_t* kConnectionTimedOut = L"HYT01";
  return sqlState_.starts_with(L"08") || sqlState_ == kConnectionTimedOut;
}

void fail(SQLSMALLINT handleType, SQLHANDLE handle) {
  std::vector<Diagnostic> records = diagnostics(handleType, handle);
  if (records.empty()) records.push_back({L"HY000", L"The ODBC driver gave no reason.", 0});
  std::wstring description;
  for (const Diagnostic& record : records) {
    if (!description.empty()) description += kLineBreak;
    description += record.sqlState + L": " + record.text;
  }
  const bool login = std::any_of(records.begin(), records.end(), isLoginFailure);
  throw Error(login ? kLoginFailed : kOdbcFailed, std::move(description), records[0].sqlState,
              records[0].nativeError);
}

void check(SQLRETURN code, SQLSMALLINT handleType, SQLHANDLE handle) {
  if (!SQL_SUCCEEDED(code)) fail(handleType, handle);
}

}  // namespace tlpacscfg::odbc
