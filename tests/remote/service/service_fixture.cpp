#include "remote/service/service_fixture.h"

#include <httplib.h>

#include <cstdlib>
#include <filesystem>

#include "harness/scratch.h"

namespace tlpacscfg::test {

using nlohmann::json;

ServiceTest::ServiceTest() : service(scratchUnixPath("service")) {
  std::filesystem::create_directories(promptsPath(""));
  service.databases = {"Talora = DSN=TlTestSite;"};
  service.databaseFiles = {std::string("Talora = ") + std::getenv("TL_SCRATCH")};
  service.directories = {"Z:\\site\\TALORA\\PROMPTS = " + promptsPath("")};
}

std::string ServiceTest::promptsPath(const std::string& name) {
  return scratchUnixPath("prompts/" + name);
}

void ServiceTest::makePrompt(const std::string& name) const {
  writeBytes(platformPath(promptsPath(name)), "<xml/>");
}

ServiceAnswer ServiceTest::ask(const std::string& operation, json members,
                               const std::string& token) const {
  members["token"] = token;
  return post("/v1/" + operation, members.dump());
}

ServiceAnswer ServiceTest::query(const std::string& sql) const {
  return ask("query", {{"database", "Talora"}, {"sql", sql}});
}

ServiceAnswer ServiceTest::execute(const std::string& sql) const {
  return ask("execute", {{"database", "Talora"}, {"sql", sql}});
}

ServiceAnswer ServiceTest::files(const std::string& directory, const std::string& pattern) const {
  return ask("files", {{"directory", directory},
                       {"pattern", pattern},
                       {"recurse", false},
                       {"sorted", true},
                       {"ignoreCase", true},
                       {"directories", false},
                       {"fullPaths", false}});
}

ServiceAnswer ServiceTest::post(const std::string& path, const std::string& body) const {
  httplib::Client client("127.0.0.1", service.port());
  client.set_read_timeout(60);
  const httplib::Result result = client.Post(path, body, "application/json");
  if (!result) return {-1, {}};
  return {result->status, json::parse(result->body, nullptr, false)};
}

int ServiceTest::statusOf(const std::string& bytes) const {
  const RawClient client(service.port());
  client.send(bytes);
  const std::string answer = client.readToEnd();
  return answer.starts_with("HTTP/1.1 ") ? std::stoi(answer.substr(9)) : -1;
}

void ServiceTest::expectStillServing() const {
  EXPECT_EQ(ask("connect", {{"application", "TLPACSCFG.DLL"}}).status, 200);
}

}  // namespace tlpacscfg::test
