#pragma once

#include <string_view>

namespace tlpacscfg {

/// Whether the text is a query that changes nothing, so that it may be executed again, and for a
/// client that may not write. When in doubt false: for a comment, a semicolon, a name in quotes or
/// brackets, or letters outside ASCII in a name, because databases disagree on where these end.
/// The functions that a query calls are taken to change nothing.
bool onlyReads(std::wstring_view sql);

}  // namespace tlpacscfg
