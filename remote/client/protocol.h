#pragma once

#include <initializer_list>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "client/endpoint.h"
#include "odbc/table.h"

/// The JSON messages between client and service.
namespace tlpacscfg::client::protocol {

using Member = std::pair<const char*, std::variant<std::wstring, bool>>;

/// Sends a request and returns the body of a successful answer; throws ClientError with the
/// service's reason otherwise.
std::string ask(const Endpoint& endpoint, const wchar_t* operation,
                std::initializer_list<Member> members);

/// Parse the body of an answer; throw ClientError when it is malformed.
std::vector<Table> tablesOf(const std::string& answer);
std::vector<std::wstring> filesOf(const std::string& answer);

}  // namespace tlpacscfg::client::protocol
