#pragma once

#include <sql.h>
#include <sqlext.h>

namespace tlpacscfg::odbc {

/// Without a window a driver asks for nothing.
inline SQLHWND promptParent() { return nullptr; }

}  // namespace tlpacscfg::odbc
