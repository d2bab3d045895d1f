#pragma once

#include <string>
#include <vector>

/// The test's own line to the stand-in, and the notation they share.
namespace tlpacscfg::test {

std::string json(const std::wstring& text);
std::string joined(const std::vector<std::string>& items);

/// Returns when the stand-in has obeyed. The arguments are the further members of a JSON object.
/// Throws std::runtime_error when it could not.
void tellStandIn(const std::string& command, const std::string& arguments = "");
int askStandIn(const std::string& command);

}  // namespace tlpacscfg::test
