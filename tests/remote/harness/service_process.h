#pragma once

#include <sys/types.h>

#include <functional>
#include <string>
#include <vector>

namespace tlpacscfg::test {

inline constexpr const char* kToken = "a-token-of-more-than-sixteen-characters";

/// Waits until the condition holds; false when it does not within half a minute.
template <class Condition>
bool eventually(Condition condition);

/// Whether there is such a process that has not ended.
bool isAlive(pid_t process);

/// A running tlcommd with its files in the given directory. The process ends with this object.
class ServiceProcess {
 public:
  explicit ServiceProcess(std::string directory);
  ~ServiceProcess();
  ServiceProcess(const ServiceProcess&) = delete;
  ServiceProcess& operator=(const ServiceProcess&) = delete;

  /// Lines for the sections of the configuration file.
  std::vector<std::string> databases;
  std::vector<std::string> databaseFiles;
  std::vector<std::string> directories;
  std::vector<std::string> tokens;

  /// Runs in its process before it becomes the service.
  std::function<void()> beforeStart = [] {};

  /// Starts it with plain HTTP on any free port, or as the arguments have it, and waits until it
  /// listens. False when it ended instead.
  bool start(const std::vector<std::string>& arguments = {});

  /// The same with TLS; the certificate is one for localhost.
  bool startWithTls(const std::vector<std::string>& arguments = {});
  /// Makes another certificate and key in place of the ones that there are.
  void makeCertificate() const;
  std::string certificateFile() const { return directory_ + "/certificate.pem"; }

  /// Runs it with exactly these arguments and waits for its end; gives its exit code.
  int runToEnd(const std::vector<std::string>& arguments);

  /// Sends the signal and waits for the end; the exit code, or minus the signal that ended it.
  int end(int signal);
  bool isRunning();

  int port() const { return port_; }
  pid_t pid() const { return pid_; }
  /// The processes that it has started and that have not ended.
  std::vector<pid_t> children() const;
  /// What it has written so far.
  std::string log() const;
  bool logHolds(const std::string& text) const;

  std::string configurationFile() const { return directory_ + "/tlcommd.conf"; }
  std::string tokenFile() const { return directory_ + "/token"; }
  void writeConfiguration() const;
  /// Writes a file that only this user can read; gives its path.
  std::string writeFile(const std::string& name, const std::string& text) const;

 private:
  void spawn(const std::vector<std::string>& arguments);
  int awaitEnd();

  std::string directory_;
  pid_t pid_ = 0;
  int status_ = 0;
  int port_ = 0;
};

namespace internal {
void pauseBriefly();
inline constexpr int kMaxPauses = 3000;
}  // namespace internal

template <class Condition>
bool eventually(Condition condition) {
  for (int i = 0; i < internal::kMaxPauses; ++i) {
    if (condition()) return true;
    internal::pauseBriefly();
  }
  return condition();
}

}  // namespace tlpacscfg::test
