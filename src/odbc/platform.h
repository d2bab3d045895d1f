#pragma once

#ifdef _WIN32
#include "odbc/platform_win.h"
#else
#include "odbc/platform_posix.h"
#endif

#include <string>
#include <string_view>

#include "support/text.h"

/// ODBC's own headers, and the conversion of texts: the W functions take and give UTF-16.
namespace tlpacscfg::odbc {

inline std::u16string toOdbc(std::wstring_view text) { return toUtf16(text); }

inline SQLWCHAR* odbcText(std::u16string& text) { return reinterpret_cast<SQLWCHAR*>(text.data()); }

inline std::u16string_view odbcView(const SQLWCHAR* text, std::size_t length) {
  return {reinterpret_cast<const char16_t*>(text), length};
}

}  // namespace tlpacscfg::odbc
