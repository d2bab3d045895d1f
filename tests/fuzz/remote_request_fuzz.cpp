#include <functional>

#include "fuzz/fuzz_tools.h"
#include "service/json_text.h"
#include "service/refusal.h"
#include "service/request.h"
#include "support/text.h"

using namespace tlpacscfg;
using fuzz::require;

namespace {

/// Throws Refusal for a member that is missing or of another type.
bool has(const std::function<void()>& read) {
  try {
    read();
    return true;
  } catch (const service::Refusal& refusal) {
    require(refusal.status() == service::http_status::kMalformed, "a refusal says malformed");
    return false;
  }
}

/// The body of a request is read, or refused.
void readForeign(std::string_view body) {
  try {
    const service::Request request(body);
    for (const char* name : {"token", "sql", "recurse"}) {
      const bool text = has([&] { request.utf8(name); });
      const bool truth = has([&] { static_cast<void>(request.truth(name)); });
      require(!text || !truth, "a member has one type");
      if (text) require(request.utf8(name).find('\0') == std::string::npos, "no text holds a zero");
    }
  } catch (const service::Refusal& refusal) {
    require(refusal.status() == service::http_status::kMalformed, "a refusal says malformed");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  readForeign({reinterpret_cast<const char*>(data), size});

  FuzzedDataProvider input(data, size);
  const std::string token = toUtf8(fuzz::takeText(input, 100));
  const std::string sql = toUtf8(fuzz::takeText(input, 400));
  const bool flag = input.ConsumeBool();
  const service::Request request("{\"token\":" + service::quoted(token) +
                                 ",\"recurse\":" + (flag ? "true" : "false") +
                                 ", \"sql\" :" + service::quoted(sql) + "}");
  require(request.utf8("token") == token, "a text arrives unchanged");
  require(request.utf8("sql") == sql, "another text arrives unchanged");
  require(request.truth("recurse") == flag, "a truth value arrives unchanged");
  return 0;
}
