#include "support/list_view_sort.h"
#include "support/text.h"

namespace tlpacscfg {

std::string collationKey(std::wstring_view text) { return toUtf8(upperCase(text)); }

}  // namespace tlpacscfg
