#pragma once

#include <windows.h>

#include <sql.h>
#include <sqlext.h>

namespace tlpacscfg::odbc {

/// The window above which a driver may ask for missing information.
inline SQLHWND promptParent() { return GetDesktopWindow(); }

}  // namespace tlpacscfg::odbc
