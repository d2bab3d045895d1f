#pragma once

#include <atomic>
#include <string>
#include <thread>
#include <vector>

namespace tlpacscfg::test {

/// How a service treats one connection.
enum class Treatment {
  Answer,          ///< A proper answer with the text.
  AnswerWhenTold,  ///< The same, but not before answerNow().
  Silence,         ///< Reads and does not answer.
  HalfHandshake,   ///< The beginning of a TLS handshake, and no more.
  DripHeaders,     ///< An answer whose header goes on a letter at a time, for good.
  DripBody,        ///< The same with an answer's text.
};

struct Reply {
  Treatment treatment = Treatment::Silence;
  std::string json = {};
};

/// What a client that connects expects.
inline const Reply kConnects = {Treatment::Answer, R"({"service": "tlcommd", "version": 1})"};

/// A local port that gives one reply to each connection, in order; further connections get the last
/// reply again.
class ScriptedService {
 public:
  explicit ScriptedService(std::vector<Reply> replies);
  ~ScriptedService();
  ScriptedService(const ScriptedService&) = delete;
  ScriptedService& operator=(const ScriptedService&) = delete;

  int port() const { return port_; }

  void answerNow() { released_ = true; }

  /// The number of connections so far.
  int connections() const { return connections_; }

 private:
  void serve();
  void treat(std::uintptr_t connection, const Reply& reply) const;
  bool awaitInput(std::uintptr_t socket) const;

  std::vector<Reply> replies_;
  std::uintptr_t listener_ = 0;
  int port_ = 0;
  std::atomic<int> connections_ = 0;
  std::atomic<bool> over_ = false;
  std::atomic<bool> released_ = false;
  std::thread server_;
};

}  // namespace tlpacscfg::test
