#pragma once

#include <string>
#include <vector>

namespace tlpacscfg::test {

/// The native service, started from a Windows program. It uses the site's database under the name
/// Talora, and ends with this object.
class WineService {
 public:
  explicit WineService(std::string name = "tlcommd");
  ~WineService();
  WineService(const WineService&) = delete;
  WineService& operator=(const WineService&) = delete;

  /// Serves plain HTTP on the port, 0 for any.
  void start(int port = 0, const std::vector<std::string>& more = {});
  /// Serves TLS with this certificate and key.
  void startWithTls(const std::string& certificate, const std::string& key);
  /// Ends it with the signal of that name.
  void end(const std::string& signal = "TERM");

  int port() const { return port_; }
  std::wstring portText() const { return std::to_wstring(port_); }
  std::string log() const;

  /// What clients call Z:\site\TALORA\PROMPTS.
  static std::wstring promptPath(const std::wstring& name);

  static constexpr const wchar_t* kToken = L"the-token-that-tests-show";

 private:
  void run(const std::vector<std::string>& arguments);
  void control(const std::string& arguments) const;
  std::wstring file(const std::string& ending) const;

  std::string name_;
  int port_ = 0;
  bool running_ = false;
};

/// Runs a program of the Unix side; its end cannot be waited for.
void runUnixProgram(const std::string& commandLine);

/// Waits until the condition holds; false when it does not within a minute.
template <class Condition>
bool eventually(Condition condition);

void pauseBriefly();

template <class Condition>
bool eventually(Condition condition) {
  for (int i = 0; i < 6000; ++i) {
    if (condition()) return true;
    pauseBriefly();
  }
  return condition();
}

}  // namespace tlpacscfg::test
