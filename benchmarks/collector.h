#pragma once

#include <functional>
#include <string>
#include <vector>

namespace tlpacscfg::bench {

/// The texts that an action hands over to be executed; none of them is.
std::vector<std::wstring> textsExecutedBy(const std::function<void()>& action);

}  // namespace tlpacscfg::bench
