#include "wire/wire_fixture.h"

#include <sstream>
#include <utility>

#include "data/direct_connections.h"
#include "harness/scratch.h"
#include "support/text.h"
#include "wire/stand_in.h"

namespace tlpacscfg::test {
namespace {

std::string jsonRow(const ProbeRow& row) {
  std::vector<std::string> cells;
  for (const std::optional<std::wstring>& cell : row) cells.push_back(cell ? json(*cell) : "null");
  return joined(cells);
}

}  // namespace

WireTest::WireTest() {
  config.SqlServerName = L"127.0.0.1";
  config.SqlDbName = L"Talora";
  config.Password = L"geheim";
  config.User_ID = 4711;
  tellStandIn("reset");
}

void WireTest::connect() {
  ASSERT_TRUE(ConnectToDatabase(config)) << toUtf8(messages.empty() ? L"" : messages[0].text);
  newRecord();
}

void WireTest::stallLogin() {
  login_ = R"("stall")";
  writeScript();
}

void WireTest::hangUpAtLogin() {
  login_ = R"("close")";
  writeScript();
}

void WireTest::refuseLogin(int number, const std::wstring& text) {
  login_ = R"({"number":)" + std::to_string(number) + R"(,"text":)" + json(text) + "}";
  writeScript();
}

void WireTest::answer(const std::wstring& to, const WireColumns& columns, const ProbeRows& rows,
                      AfterRows afterRows) {
  std::vector<std::string> metadata;
  for (const auto& [name, type] : columns) {
    metadata.push_back("[\"" + name + "\",\"" + type + "\"]");
  }
  std::vector<std::string> lines;
  for (const ProbeRow& row : rows) lines.push_back(jsonRow(row));
  answers_.push_back(R"({"to":)" + json(to) + R"(,"columns":)" + joined(metadata) + R"(,"rows":)" +
                     joined(lines) +
                     (afterRows == AfterRows::HangsUp ? R"(,"closes":true})" : "}"));
  writeScript();
}

void WireTest::fail(const std::wstring& to, int statement, int number, const std::wstring& text,
                    AfterFailure afterFailure) {
  answers_.push_back(
      R"({"to":)" + json(to) + R"(,"fails":{"statement":)" + std::to_string(statement) +
      R"(,"number":)" + std::to_string(number) + R"(,"text":)" + json(text) +
      (afterFailure == AfterFailure::UndoesTransaction ? R"(,"undoes":true}})" : "}}"));
  writeScript();
}

void WireTest::stall(const std::wstring& to) {
  answers_.push_back(R"({"to":)" + json(to) + R"(,"stalls":true})");
  writeScript();
}

void WireTest::answerTestStatement() {
  answer(L"SELECT GetDate()", {{"", "datetime"}}, {{L"2026-01-05T09:08:07"}});
}

std::vector<std::string> WireTest::record() const {
  const std::wstring path = scratchPath(L"server-record.jsonl");
  std::vector<std::string> lines;
  if (!fileExists(path)) return lines;
  std::istringstream stream(readBytes(path));
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

std::vector<std::string> WireTest::newRecord() {
  std::vector<std::string> lines = record();
  const std::size_t known = std::exchange(seen_, lines.size());
  lines.erase(lines.begin(), lines.begin() + static_cast<std::ptrdiff_t>(known));
  return lines;
}

std::string WireTest::login(const std::wstring& user, const std::wstring& password,
                            const std::wstring& database) {
  return R"({"login":{"user":)" + json(user) + R"(,"password":)" + json(password) +
         R"(,"application":"TLPACSCFG.DLL","server":"127.0.0.1","database":)" + json(database) +
         "}}";
}

std::string WireTest::batch(const std::wstring& text) { return R"({"batch":)" + json(text) + "}"; }

std::string WireTest::takenBack() { return R"({"stopped":true})"; }

std::string WireTest::transaction(const std::string& event) {
  return R"({"transaction":")" + event + R"("})";
}

void WireTest::writeScript() const {
  writeBytes(scratchPath(L"server-script.json"),
             R"({"login":)" + login_ + R"(,"answers":)" + joined(answers_) + "}");
}

}  // namespace tlpacscfg::test
