// Attacks two services for some seconds while proper clients use them from another address, and has
// them read their tokens and changing certificates again all the time:
//   tlcommd-soak SECONDS [SEED]
// Ends with 0 when every proper request was answered correctly, both services ended cleanly, and
// neither leaked descriptors or revealed its token.
#include <httplib.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>
#include <nlohmann/json.hpp>
#include <sstream>
#include <thread>

#include "remote/soak/attacks.h"

namespace tlpacscfg::test {
namespace {

using Clock = std::chrono::steady_clock;
using nlohmann::json;

constexpr int kAttackers = 12;
constexpr int kProperClients = 2;

std::atomic<int> failures = 0;

void require(bool condition, const std::string& what) {
  if (condition) return;
  ++failures;
  std::cerr << "FAILED: " << what << std::endl;
}

std::string directoryOf(const ServiceProcess& service) {
  return std::filesystem::path(service.certificateFile()).parent_path().string() + "/";
}

std::string content(const std::string& file) {
  std::ifstream stream(file);
  return {std::istreambuf_iterator<char>(stream), {}};
}

class ProperClient {
 public:
  ProperClient(const ServiceProcess& service, bool tls)
      : client_((tls ? "https://localhost:" : "http://localhost:") +
                std::to_string(service.port())) {
    if (tls) client_.set_ca_cert_path(directoryOf(service) + "both.pem");
    // The attackers have another address.
    client_.set_interface("127.0.0.2");
    client_.set_hostname_addr_map({{"localhost", "127.0.0.1"}});
    client_.set_read_timeout(120);
  }

  json ask(const std::string& operation, json members) {
    members["token"] = kToken;
    members["database"] = "site";
    const auto start = Clock::now();
    const httplib::Result result =
        client_.Post("/v1/" + operation, members.dump(), "application/json");
    slowest_ = std::max(slowest_, Clock::now() - start);
    ++requests_;
    if (!result) {
      require(false, operation + ": " + httplib::to_string(result.error()));
      return {};
    }
    require(result->status == 200, operation + ": " + result->body);
    return json::parse(result->body, nullptr, false);
  }

  void workOnce(const std::string& name) {
    const std::string literal = "'O''Brien \u00fc\u65e5 " + name + "'";
    ask("execute", {{"sql", "insert into soak values(" + literal + ")"}});
    const json rows = ask("query", {{"sql", "select name from soak where name = " + literal}});
    require(rows == json::parse(R"({"tables":[{"columns":1,"rows":[["O'Brien )"
                                "\u00fc\u65e5 " +
                                name + "\"]]}]}"),
            "a row came back as " + rows.dump());
    ask("execute", {{"sql", "delete from soak where name = " + literal}});
    const json files = ask("files", {{"directory", "Z:\\site"},
                                     {"pattern", "*.xml"},
                                     {"recurse", false},
                                     {"sorted", true},
                                     {"ignoreCase", true},
                                     {"directories", false},
                                     {"fullPaths", false}});
    const httplib::Result health = client_.Get("/v1/health");
    require(health && health->body == R"({"status":"up"})", "the service is not up");
    require(files == json::parse(R"({"files":["A.XML"]})"), "files came back as " + files.dump());
  }

  int requests() const { return requests_; }
  Clock::duration slowest() const { return slowest_; }

 private:
  httplib::Client client_;
  int requests_ = 0;
  Clock::duration slowest_{};
};

std::size_t descriptors(const ServiceProcess& service) {
  const std::filesystem::directory_iterator entries("/proc/" + std::to_string(service.pid()) +
                                                    "/fd");
  return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
}

std::string residentMemory(const ServiceProcess& service) {
  std::ifstream status("/proc/" + std::to_string(service.pid()) + "/status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with("VmRSS:")) return line.substr(line.find_first_not_of(" \t", 6));
  }
  return "?";
}

/// The status and the failure of a request; of other events the whole line without its time.
std::string outcomeIn(const std::string& line) {
  const std::size_t event = line.find(" event=");
  require(event != line.npos, "a line that is not the service's own: " + line);
  if (event == line.npos) return line;
  const std::size_t status = line.find(" status=");
  if (status == line.npos) return line.substr(event, line.find(" connections=") - event);
  const std::size_t failure = line.find(" failure=");
  return line.substr(status, line.find(' ', status + 1) - status) +
         (failure == line.npos ? "" : line.substr(failure));
}

void printJournal(const ServiceProcess& service) {
  std::map<std::string, int> outcomes;
  std::istringstream lines(service.log());
  for (std::string line; std::getline(lines, line);) {
    ++outcomes[outcomeIn(line)];
  }
  for (const auto& [status, count] : outcomes) std::cout << "  " << status << ": " << count << '\n';
}

void prepare(ServiceProcess& service, const std::string& scratch, bool tls) {
  service.databases = {"site = DSN=TlTestSite;"};
  service.databaseFiles = {"site = " + scratch};
  service.directories = {"Z:\\site = " + scratch + "/files"};
  const std::vector<std::string> limits = {"--header-seconds",   "1", "--request-seconds",   "2",
                                           "--response-seconds", "5", "--statement-seconds", "2"};
  require(tls ? service.startWithTls(limits) : service.start(limits), service.log());
}

constexpr const char* kCertificateFiles[] = {"certificate.pem", "key.pem"};

/// Two certificates that the service may use in turn, and a file with both for clients.
void makeCertificates(const ServiceProcess& service) {
  const std::string own = directoryOf(service);
  for (const char* number : {"0", "1"}) {
    service.makeCertificate();
    for (const char* file : kCertificateFiles)
      std::filesystem::copy_file(own + file, own + number + file);
  }
  std::ofstream(own + "both.pem") << content(own + "0certificate.pem")
                                  << content(own + "1certificate.pem");
}

/// Gives the service one of its two certificates and makes it read everything again.
void reload(const ServiceProcess& service, int round) {
  const std::string own = directoryOf(service);
  for (const char* file : kCertificateFiles) {
    std::filesystem::copy_file(own + std::to_string(round % 2) + file, own + file,
                               std::filesystem::copy_options::overwrite_existing);
  }
  kill(service.pid(), SIGHUP);
}

void finish(ServiceProcess& service, std::size_t descriptorsBefore) {
  require(eventually([&] { return descriptors(service) <= descriptorsBefore; }),
          "descriptors are kept");
  std::cout << "Memory at the end: " << residentMemory(service) << ", descriptors "
            << descriptors(service) << "\n";
  const bool endedWell = service.end(SIGTERM) == 0;
  const std::string log = service.log();
  require(endedWell, "the service ended badly: " +
                         log.substr(log.size() - std::min<std::size_t>(log.size(), 4000)));
  require(!service.logHolds(kToken) && !service.logHolds("insert into"), "the journal tells");
  printJournal(service);
}

int soak(int seconds, unsigned seed) {
  const std::string scratch = std::getenv("TL_SCRATCH");
  std::filesystem::create_directories(scratch + "/files");
  std::ofstream(scratch + "/files/A.XML");
  ServiceProcess plain(scratch + "/plain");
  ServiceProcess tls(scratch + "/tls");
  prepare(plain, scratch, false);
  prepare(tls, scratch, true);
  if (failures > 0) return EXIT_FAILURE;
  makeCertificates(tls);
  reload(tls, 0);

  ProperClient first(plain, false);
  first.ask("execute", {{"sql", "create table soak(name text)"}});
  for (int i = 0; i < 30; ++i) {
    first.ask("execute", {{"sql", "insert into soak values('" + std::to_string(i) + "')"}});
  }
  first.workOnce("first");
  ProperClient(tls, true).workOnce("second");
  const std::size_t plainDescriptors = descriptors(plain);
  const std::size_t tlsDescriptors = descriptors(tls);
  std::cout << "Seed " << seed << ", memory at the start: " << residentMemory(plain) << " and "
            << residentMemory(tls) << "\n";

  const auto deadline = Clock::now() + std::chrono::seconds(seconds);
  std::vector<std::atomic<int>> counts(attacks().size());
  std::atomic<int> refused = 0;
  std::vector<std::thread> threads;
  for (unsigned attacker = 0; attacker < kAttackers; ++attacker) {
    threads.emplace_back([&, attacker] {
      Random random(seed + attacker);
      while (Clock::now() < deadline) {
        const std::size_t chosen = below(random, attacks().size());
        const int port = random() % 2 == 0 ? plain.port() : tls.port();
        try {
          attacks()[chosen].run(port, random);
        } catch (const std::exception&) {
          ++refused;
        }
        ++counts[chosen];
      }
    });
  }
  threads.emplace_back([&] {
    for (int round = 0; Clock::now() < deadline; ++round) {
      reload(tls, round);
      kill(plain.pid(), SIGHUP);
      std::this_thread::sleep_for(std::chrono::milliseconds(300));
    }
  });
  std::atomic<int> properRequests = 0;
  std::atomic<std::int64_t> slowest = 0;
  for (int number = 0; number < kProperClients; ++number) {
    threads.emplace_back([&, number] {
      const bool withTls = number % 2 == 1;
      ProperClient client(withTls ? tls : plain, withTls);
      for (int i = 0; Clock::now() < deadline; ++i) {
        client.workOnce(std::to_string(number) + "-" + std::to_string(i));
      }
      properRequests += client.requests();
      const auto time = std::chrono::duration_cast<std::chrono::milliseconds>(client.slowest());
      std::int64_t known = slowest;
      while (known < time.count() && !slowest.compare_exchange_weak(known, time.count())) {
      }
    });
  }
  for (std::thread& thread : threads) thread.join();

  int total = 0;
  for (std::size_t i = 0; i < counts.size(); ++i) {
    std::cout << "  " << attacks()[i].name << ": " << counts[i] << '\n';
    total += counts[i];
  }
  std::cout << total << " attacks (" << refused << " found no connection or no end), "
            << properRequests << " proper requests, the slowest took " << slowest << " ms\n";
  require(refused == 0, "connections were refused or not ended");
  for (const bool withTls : {false, true}) {
    ProperClient client(withTls ? tls : plain, withTls);
    client.workOnce("last");
    std::cout << client.ask("status", json::object()).dump(1) << '\n';
  }
  finish(plain, plainDescriptors);
  finish(tls, tlsDescriptors);
  std::cout << (failures == 0 ? "passed\n" : "There were failures.\n");
  return failures == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}

}  // namespace
}  // namespace tlpacscfg::test

int main(int count, char** arguments) {
  const int seconds = count > 1 ? std::atoi(arguments[1]) : 5;
  const unsigned seed = count > 2 ? static_cast<unsigned>(std::atoi(arguments[2])) : 1;
  return tlpacscfg::test::soak(seconds, seed);
}
