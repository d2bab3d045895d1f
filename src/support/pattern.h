#pragma once

#include <string_view>

namespace tlpacscfg {

/// Whether the whole text fits: `*` stands for any characters, also none, and `?` for one.
bool matchesPattern(std::wstring_view text, std::wstring_view pattern);

}  // namespace tlpacscfg
