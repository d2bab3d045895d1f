#pragma once

#ifdef _WIN32
#include <windows.h>
#endif
#include <sql.h>
#include <sqlext.h>

#include <string>
#include <string_view>

#include "support/text.h"

/// ODBC speaks UTF-16; these two cross the border in each direction.
namespace tlpacscfg::odbc {

inline std::u16string toOdbc(std::wstring_view text) { return toUtf16(text); }

inline SQLWCHAR* odbcText(std::u16string& text) { return reinterpret_cast<SQLWCHAR*>(text.data()); }

inline std::u16string_view odbcView(const SQLWCHAR* text, std::size_t length) {
  return {reinterpret_cast<const char16_t*>(text), length};
}

/// The window above which a driver may ask for missing information.
inline SQLHWND promptParent() {
#ifdef _WIN32
  return GetDesktopWindow();
#else
  return nullptr;
#endif
}

}  // namespace tlpacscfg::odbc
