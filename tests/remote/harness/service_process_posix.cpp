#include "remote/harness/service_process.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <thread>

namespace tlpacscfg::test {
namespace {

constexpr const char* kListening = " event=listening url=";

/// The state and the parent of a process.
struct ProcessState {
  char state = 'X';
  pid_t parent = 0;
};

ProcessState stateOf(const std::filesystem::path& directory) {
  std::ifstream stream(directory / "stat");
  std::string text;
  std::getline(stream, text);
  // The name in parentheses before them may contain any character.
  std::istringstream rest(text.substr(text.rfind(')') + 1));
  ProcessState found;
  rest >> found.state >> found.parent;
  return found;
}

bool hasEnded(const ProcessState& process) { return process.state == 'Z' || process.state == 'X'; }

}  // namespace

bool isAlive(pid_t process) { return !hasEnded(stateOf("/proc/" + std::to_string(process))); }

void internal::pauseBriefly() { std::this_thread::sleep_for(std::chrono::milliseconds(10)); }

ServiceProcess::ServiceProcess(std::string directory) : directory_(std::move(directory)) {
  std::filesystem::create_directories(directory_);
  writeFile("token", std::string(kToken) + "\n");
}

ServiceProcess::~ServiceProcess() {
  if (isRunning()) end(SIGKILL);
}

void ServiceProcess::writeConfiguration() const {
  std::string text = "[service]\ntoken-file = " + tokenFile() + "\nport = 0\n";
  const auto add = [&text](const char* section, const std::vector<std::string>& lines) {
    text += section;
    for (const std::string& line : lines) text += "\n" + line;
    text += "\n";
  };
  add("[tokens]", tokens);
  add("[databases]", databases);
  add("[database-files]", databaseFiles);
  add("[directories]", directories);
  writeFile("tlcommd.conf", text);
}

std::string ServiceProcess::writeFile(const std::string& name, const std::string& text) const {
  const std::string file = directory_ + "/" + name;
  std::ofstream stream(file);
  stream << text;
  if (!stream.flush()) throw std::runtime_error(file + " cannot be written");
  using std::filesystem::perms;
  std::filesystem::permissions(file, perms::owner_read | perms::owner_write);
  return file;
}

bool ServiceProcess::start(const std::vector<std::string>& arguments) {
  writeConfiguration();
  std::vector<std::string> all = {"--config", configurationFile()};
  const bool tls = !arguments.empty() && arguments.front() == "--certificate";
  if (!tls) all.insert(all.end(), {"--plain-http", "yes"});
  all.insert(all.end(), arguments.begin(), arguments.end());
  spawn(all);
  if (!eventually([this] { return logHolds(kListening) || !isRunning(); })) return false;
  if (!isRunning()) return false;
  const std::string text = log();
  const std::size_t colon = text.find(':', text.find("//", text.find(kListening)));
  port_ = std::stoi(text.substr(colon + 1));
  return true;
}

void ServiceProcess::makeCertificate() const {
  const std::string command = "'" TL_MAKE_CERTIFICATE "' '" + directory_ + "'";
  if (std::system(command.c_str()) != 0) throw std::runtime_error("make-certificate failed");
}

bool ServiceProcess::startWithTls(const std::vector<std::string>& arguments) {
  const std::string key = directory_ + "/key.pem";
  makeCertificate();
  std::vector<std::string> all = {"--certificate", certificateFile(), "--key", key};
  all.insert(all.end(), arguments.begin(), arguments.end());
  return start(all);
}

int ServiceProcess::runToEnd(const std::vector<std::string>& arguments) {
  spawn(arguments);
  return awaitEnd();
}

void ServiceProcess::spawn(const std::vector<std::string>& arguments) {
  const std::string logFile = directory_ + "/log";
  std::vector<char*> words;
  std::string program = TL_TLCOMMD;
  words.push_back(program.data());
  std::vector<std::string> copies = arguments;
  for (std::string& copy : copies) words.push_back(copy.data());
  words.push_back(nullptr);
  const int output = open(logFile.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
  pid_ = fork();
  if (pid_ == 0) {
    dup2(output, STDOUT_FILENO);
    dup2(output, STDERR_FILENO);
    beforeStart();
    execv(program.c_str(), words.data());
    _exit(127);
  }
  close(output);
  if (pid_ < 0) throw std::runtime_error("fork failed");
}

bool ServiceProcess::isRunning() {
  if (pid_ <= 0) return false;
  if (waitpid(pid_, &status_, WNOHANG) == 0) return true;
  pid_ = 0;
  return false;
}

int ServiceProcess::awaitEnd() {
  if (!eventually([this] { return !isRunning(); })) {
    kill(pid_, SIGKILL);
    waitpid(pid_, &status_, 0);
    pid_ = 0;
    throw std::runtime_error("The service did not end.");
  }
  return WIFEXITED(status_) ? WEXITSTATUS(status_) : -WTERMSIG(status_);
}

int ServiceProcess::end(int signal) {
  if (pid_ > 0) kill(pid_, signal);
  return awaitEnd();
}

std::vector<pid_t> ServiceProcess::children() const {
  std::vector<pid_t> found;
  for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
    const std::string name = entry.path().filename().string();
    if (name.find_first_not_of("0123456789") != name.npos) continue;
    const ProcessState process = stateOf(entry.path());
    if (process.parent == pid_ && !hasEnded(process)) found.push_back(std::stoi(name));
  }
  return found;
}

std::string ServiceProcess::log() const {
  std::ifstream stream(directory_ + "/log", std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

bool ServiceProcess::logHolds(const std::string& text) const {
  return log().find(text) != std::string::npos;
}

}  // namespace tlpacscfg::test
