#pragma once

#include <string>
#include <vector>

/// The test's control connection to the stand-in, and the JSON that both use.
namespace tlpacscfg::test {

std::string json(const std::wstring& text);
std::string joined(const std::vector<std::string>& items);

/// Returns when the stand-in has executed the command. The arguments are the further members of a
/// JSON object. Throws std::runtime_error on failure.
void tellStandIn(const std::string& command, const std::string& arguments = "");
int askStandIn(const std::string& command);

}  // namespace tlpacscfg::test
