#pragma once

#include <nlohmann/json.hpp>

#include <string>
#include <vector>

#include "harness/core_fixture.h"
#include "remote/harness/raw_client.h"
#include "remote/harness/service_process.h"

namespace tlpacscfg::test {

/// A statement that runs forever in constant memory.
inline constexpr const char* kEndless =
    "WITH RECURSIVE c(x) AS (SELECT 1 UNION ALL SELECT x + 1 FROM c) SELECT count(*) FROM c";

struct ServiceAnswer {
  int status = 0;
  nlohmann::json body;
};

/// A real service on the site's database, and the directory that clients call
/// Z:\site\TALORA\PROMPTS.
class ServiceTest : public SiteTest {
 protected:
  ServiceTest();

  ServiceProcess service;

  /// Asks with the right token, or another one.
  ServiceAnswer ask(const std::string& operation, nlohmann::json members,
                    const std::string& token = kToken) const;
  ServiceAnswer query(const std::string& sql) const;
  ServiceAnswer execute(const std::string& sql) const;
  ServiceAnswer files(const std::string& directory, const std::string& pattern) const;
  /// Sends the body as it stands; -1 without an answer.
  ServiceAnswer post(const std::string& path, const std::string& body) const;

  /// The status of the answer to these bytes; -1 when the connection ends without one.
  int statusOf(const std::string& bytes) const;
  void expectStillServing() const;

  static std::string promptsPath(const std::string& name);
  void makePrompt(const std::string& name) const;
};

}  // namespace tlpacscfg::test
