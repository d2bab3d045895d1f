#include "client/protocol.h"

#include <nlohmann/json.hpp>

#include "client/client_error.h"
#include "support/text.h"

namespace tlpacscfg::client::protocol {
namespace {

using nlohmann::json;

constexpr unsigned kOk = 200;
constexpr std::size_t kMaxColumns = 4096;

[[noreturn]] void notUnderstood() { throw ClientError(L"The service's answer makes no sense."); }

json parse(const std::string& text) {
  json value = json::parse(text, nullptr, false);
  if (!value.is_object()) notUnderstood();
  return value;
}

const json& arrayIn(const json& object, const char* name) {
  const auto found = object.find(name);
  if (found == object.end() || !found->is_array()) notUnderstood();
  return *found;
}

std::wstring refusalOf(const Answer& answer) {
  const json value = json::parse(answer.body, nullptr, false);
  if (value.is_object()) {
    const auto reason = value.find("error");
    if (reason != value.end() && reason->is_string()) {
      return fromUtf8(reason->get_ref<const std::string&>());
    }
  }
  return L"The service refused the request (status " + decimal(answer.status) + L").";
}

Table tableOf(const json& value) {
  if (!value.is_object()) notUnderstood();
  const auto columns = value.find("columns");
  if (columns == value.end() || !columns->is_number_unsigned()) notUnderstood();
  const auto count = columns->get<std::size_t>();
  if (count < 1 || count > kMaxColumns) notUnderstood();
  Table table(count);
  for (const json& row : arrayIn(value, "rows")) {
    if (!row.is_array() || row.size() != count) notUnderstood();
    for (const json& cell : row) {
      if (cell.is_null()) {
        table.append(std::nullopt);
      } else if (cell.is_string()) {
        table.append(fromUtf8(cell.get_ref<const std::string&>()));
      } else {
        notUnderstood();
      }
    }
  }
  return table;
}

}  // namespace

std::string ask(const Endpoint& endpoint, const wchar_t* operation,
                std::initializer_list<Member> members) {
  json request = {{"token", toUtf8(endpoint.token())}};
  for (const auto& [name, value] : members) {
    if (const auto* text = std::get_if<std::wstring>(&value)) {
      request[name] = toUtf8(*text);
    } else {
      request[name] = std::get<bool>(value);
    }
  }
  Answer answer = endpoint.post(std::wstring(L"/v1/") + operation, request.dump());
  if (answer.status != kOk) throw ClientError(refusalOf(answer));
  return std::move(answer.body);
}

std::vector<Table> tablesOf(const std::string& answer) {
  const json value = parse(answer);
  std::vector<Table> tables;
  for (const json& table : arrayIn(value, "tables")) tables.push_back(tableOf(table));
  return tables;
}

std::vector<std::wstring> filesOf(const std::string& answer) {
  const json value = parse(answer);
  std::vector<std::wstring> files;
  for (const json& file : arrayIn(value, "files")) {
    if (!file.is_string()) notUnderstood();
    files.push_back(fromUtf8(file.get_ref<const std::string&>()));
  }
  return files;
}

}  // namespace tlpacscfg::client::protocol
