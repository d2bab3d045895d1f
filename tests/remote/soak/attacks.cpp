#include "remote/soak/attacks.h"

#include <chrono>
#include <memory>
#include <thread>

#include "remote/harness/raw_client.h"

namespace tlpacscfg::test {
namespace {

std::string bytes(Random& random, std::size_t max) {
  std::string text(below(random, max), '\0');
  for (char& c : text) c = static_cast<char>(random());
  return text;
}

std::string asking(const std::string& token, const std::string& members) {
  return "{\"token\":\"" + token + "\"," + members + "}";
}

std::string query(const std::string& sql) {
  return properRequest("/v1/query", asking(kToken, R"("database":"site","sql":")" + sql + "\""));
}

void sendAndRead(int port, const std::string& request) {
  const RawClient client(port);
  client.send(request);
  client.readToEnd();
}

void sendAndVanish(int port, Random& random, const std::string& request) {
  RawClient client(port);
  client.send(request);
  if (random() % 2 == 0) client.reset();
}

void garbage(int port, Random& random) { sendAndVanish(port, random, bytes(random, 20'000)); }

void halfRequest(int port, Random& random) {
  const std::string whole = query("select name from soak");
  sendAndVanish(port, random, whole.substr(0, below(random, whole.size())));
}

void changedBytes(int port, Random& random) {
  std::string request = query("select name from soak where name = 'x'");
  for (std::size_t i = 0; i <= below(random, 8); ++i) {
    request[below(random, request.size())] = static_cast<char>(random());
  }
  sendAndVanish(port, random, request);
}

void wrongToken(int port, Random& random) {
  std::string token = kToken;
  token[below(random, token.size())] = '!';
  sendAndRead(port, properRequest("/v1/execute",
                                  asking(token, R"("database":"site","sql":"delete from soak")")));
}

void wrongSql(int port, Random& random) {
  static const char* const pieces[] = {"select", "from",    "'",     "''",     "(",
                                       ")",      "top",     "soak",  "*",      "GetDate()",
                                       ";",      "--",      "/*",    "=",      "\\r\\n\\r\\n",
                                       "name",   "\\u00e4", "1e999", "insert", "x'"};
  std::string sql = "select ";
  for (std::size_t i = 0; i < below(random, 40); ++i) {
    sql += pieces[below(random, std::size(pieces))] + std::string(" ");
  }
  sendAndRead(port, query(sql));
}

void strangeHeaders(int port, Random& random) {
  static const std::string lines[] = {
      "Content-Length: 99999999999999999999\r\n",
      "Content-Length: -1\r\n",
      "Content-Length: 1\r\nContent-Length: 2\r\n",
      "Transfer-Encoding: chunked\r\n",
      "Content-Encoding: gzip\r\n",
      "Content-Encoding: br\r\n",
      "Content-Type: multipart/form-data; boundary=" + std::string(500, 'x') + "\r\n",
      "Content-Type: application/json\r\n",
      "Expect: 100-continue\r\n",
      "Range: bytes=0-0,-1,5-2\r\n",
      "Range: bytes=" + std::string(2'000, '9') + "-\r\n",
      "Accept-Encoding: gzip, br\r\n",
      "Connection: keep-alive, upgrade\r\nUpgrade: h2c\r\n",
      ": \r\n",
      "X\r\n",
      "X:" + std::string(3'000, ' ') + "\r\n",
  };
  std::string headers;
  for (std::size_t i = 0; i < 1 + below(random, 4); ++i) {
    headers += lines[below(random, std::size(lines))];
  }
  static const char* const first[] = {"POST /v1/query HTTP/1.1",   "POST /v1/query HTTP/1.0",
                                      "GET /v1/query HTTP/1.1",    "PRI * HTTP/2.0",
                                      "POST /v1/%2e%2e/ HTTP/1.1", "OPTIONS * HTTP/1.1"};
  sendAndVanish(port, random,
                httpRequest(first[below(random, std::size(first))], headers, "5\r\nx"));
}

void endlessHeader(int port, Random&) {
  const RawClient client(port);
  client.send("POST /v1/query HTTP/1.1\r\n");
  for (int i = 0; i < 2'000 && client.send("X-Line: " + std::string(200, 'x') + "\r\n"); ++i) {
  }
}

void deepJson(int port, Random& random) {
  const std::string body(100'000 + below(random, 900'000), random() % 2 == 0 ? '[' : '{');
  sendAndRead(port, properRequest("/v1/query", body));
}

void longText(int port, Random& random) {
  const std::string sql = "select '" + std::string(below(random, 1 << 20), 'x') + "'";
  sendAndRead(port, query(sql));
}

void unreadResponse(int port, Random& random) {
  sendAndVanish(port, random, query("select a.name, b.name, c.name from soak a, soak b, soak c"));
}

void strangeDirectory(int port, Random& random) {
  static const char* const steps[] = {"Z:\\\\site", "..", ".", "", "C:", "\\u00e4", "*", "NUL"};
  std::string directory = "Z:\\\\site";
  for (std::size_t i = 0; i < below(random, 100); ++i) {
    directory +=
        std::string(random() % 2 == 0 ? "\\\\" : "/") + steps[below(random, std::size(steps))];
  }
  sendAndRead(port,
              properRequest("/v1/files",
                            asking(kToken, "\"directory\":\"" + directory + "\",\"pattern\":\"" +
                                               std::string(below(random, 300), '*') +
                                               "\",\"recurse\":false,\"sorted\":true,"
                                               "\"ignoreCase\":true,\"directories\":false,"
                                               "\"fullPaths\":false")));
}

void drips(int port, Random& random) {
  const RawClient client(port);
  const std::string request = query("select 1");
  for (std::size_t i = 0; i < 10 + below(random, 20); ++i) {
    if (!client.send(request.substr(i, 1))) return;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
}

void silence(int port, Random& random) {
  std::vector<std::unique_ptr<RawClient>> clients;
  for (std::size_t i = 0; i < 1 + below(random, 4); ++i) {
    clients.push_back(std::make_unique<RawClient>(port));
  }
  std::this_thread::sleep_for(std::chrono::milliseconds(below(random, 300)));
}

/// More than one address may have, most of them silent.
void flood(int port, Random& random) {
  std::vector<std::unique_ptr<RawClient>> clients;
  for (int i = 0; i < 100; ++i) {
    clients.push_back(std::make_unique<RawClient>(port));
    if (i % 20 == 0) clients.back()->send("POST");
  }
  std::this_thread::sleep_for(std::chrono::milliseconds(below(random, 300)));
}

void endlessStatement(int port, Random&) {
  sendAndRead(port, query("WITH RECURSIVE c(x) AS (SELECT 1 UNION ALL SELECT x + 1 FROM c) "
                          "SELECT count(*) FROM c"));
}

void endlessRows(int port, Random&) {
  sendAndRead(port, query("SELECT x FROM (WITH RECURSIVE c(x) AS (SELECT 1 UNION ALL "
                          "SELECT x + 1 FROM c) SELECT x FROM c)"));
}

void hugeCell(int port, Random&) { sendAndRead(port, query("SELECT hex(zeroblob(40000000))")); }

void handshake(int port, Random& random) {
  std::string hello = "\x16\x03\x01";
  hello += static_cast<char>(random());
  hello += static_cast<char>(random());
  sendAndVanish(port, random, hello + '\x01' + bytes(random, 600));
}

}  // namespace

std::size_t below(Random& random, std::size_t bound) { return bound == 0 ? 0 : random() % bound; }

const std::vector<Attack>& attacks() {
  static const std::vector<Attack> all = {
      {"garbage", garbage},
      {"half a request", halfRequest},
      {"changed bytes", changedBytes},
      {"wrong token", wrongToken},
      {"wrong SQL", wrongSql},
      {"strange headers", strangeHeaders},
      {"endless header", endlessHeader},
      {"deep JSON", deepJson},
      {"long text", longText},
      {"unread response", unreadResponse},
      {"strange directory", strangeDirectory},
      {"drips", drips},
      {"silence", silence},
      {"flood", flood},
      {"endless statement", endlessStatement},
      {"endless rows", endlessRows},
      {"huge cell", hugeCell},
      {"TLS handshake", handshake},
  };
  return all;
}

}  // namespace tlpacscfg::test
