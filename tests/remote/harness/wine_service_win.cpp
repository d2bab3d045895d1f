#include <windows.h>

#include <cstdlib>
#include <filesystem>
#include <stdexcept>

#include "remote/harness/wine_service.h"
#include "support/text.h"
#include "support/handle_win.h"
#include "harness/machine.h"
#include "harness/scratch.h"

namespace tlpacscfg::test {
namespace {

/// Whether there is a service to start, with the programs that it needs.
bool hasLinux() { return std::getenv("TLCOMMD") != nullptr; }

std::string servicesDirectory() { return std::getenv("TL_SCRATCH") + std::string("/services/"); }

std::string configuration() {
  return "[service]\ntoken-file = " + servicesDirectory() +
         "token\n[databases]\nTalora = DSN=TlTestSite;\n[database-files]\nTalora = " +
         std::getenv("TL_SCRATCH") +
         "\n[directories]\n"
         "Z:\\site\\TALORA\\PROMPTS = " +
         scratchUnixPath("prompts") + "\n";
}

}  // namespace

void pauseBriefly() { Sleep(10); }

void runUnixProgram(const std::string& commandLine) {
  if (!hasLinux()) leaveOut("the data service runs on Linux only");
  STARTUPINFOW startup{};
  startup.cb = sizeof(startup);
  PROCESS_INFORMATION process{};
  std::wstring words = fromUtf8(commandLine);
  if (!CreateProcessW(L"Z:\\bin\\bash", words.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                      &startup, &process)) {
    throw std::runtime_error("The Unix program cannot be run.");
  }
  const UniqueHandle<HANDLE, CloseHandle> ownedProcess(process.hProcess);
  const UniqueHandle<HANDLE, CloseHandle> ownedThread(process.hThread);
}

WineService::WineService(std::string name) : name_(std::move(name)) {
  // A test that starts it is left out then.
  if (!hasLinux()) return;
  makeDirectory(promptPath(L""));
  writeBytes(platformPath(servicesDirectory() + "token"), toUtf8(kToken) + "\n");
  writeBytes(platformPath(servicesDirectory() + "conf"), configuration());
}

WineService::~WineService() {
  if (running_) control("end " + name_ + " KILL");
}

std::wstring WineService::promptPath(const std::wstring& name) {
  return scratchPath(L"prompts/" + name);
}

std::wstring WineService::file(const std::string& ending) const {
  return platformPath(servicesDirectory() + name_ + ending);
}

std::string WineService::log() const {
  return fileExists(file(".log")) ? readBytes(file(".log")) : std::string();
}

void WineService::control(const std::string& arguments) const {
  const std::wstring done = file(".done");
  std::filesystem::remove(std::filesystem::path(done));
  runUnixProgram("bash " + sourceUnixPath("tests/remote/service-control") + " " + arguments);
  if (!eventually([&] { return fileExists(done); })) {
    throw std::runtime_error("service-control did not end: " + arguments);
  }
}

void WineService::start(int port, const std::vector<std::string>& more) {
  std::vector<std::string> arguments = {"--plain-http", "yes", "--port", std::to_string(port)};
  arguments.insert(arguments.end(), more.begin(), more.end());
  run(arguments);
}

void WineService::startWithTls(const std::string& certificate, const std::string& key) {
  run({"--certificate", certificate, "--key", key, "--port", "0"});
}

void WineService::run(const std::vector<std::string>& arguments) {
  std::string line = "start " + name_ + " --config " + servicesDirectory() + "conf";
  for (const std::string& argument : arguments) line += " " + argument;
  control(line);
  running_ = true;
  constexpr const char* kListening = " event=listening url=";
  if (!eventually([&] { return log().find('\n') != std::string::npos; }) ||
      log().find(kListening) == std::string::npos) {
    throw std::runtime_error("The service did not start: " + log());
  }
  const std::string text = log();
  port_ = std::stoi(text.substr(text.find(':', text.find("//", text.find(kListening))) + 1));
}

void WineService::end(const std::string& signal) {
  control("end " + name_ + " " + signal);
  running_ = false;
}

}  // namespace tlpacscfg::test
