#pragma once

#include <initializer_list>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "odbc/table.h"

/// The JSON messages between client and service.
namespace tlpacscfg::client::protocol {

using Member = std::pair<const char*, std::variant<std::wstring, bool>>;

std::string requestOf(const std::wstring& token, std::initializer_list<Member> members);

/// The service's reason in the body of an answer that is not a success, or one that names the
/// status.
std::wstring refusalIn(const std::string& answer, unsigned status);

/// Parse the body of an answer; throw ClientError when it is malformed.
std::vector<Table> tablesIn(const std::string& answer);
std::vector<std::wstring> filesIn(const std::string& answer);

}  // namespace tlpacscfg::client::protocol
