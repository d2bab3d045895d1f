#include <arpa/inet.h>
#include <httplib.h>
#include <netinet/in.h>
#include <sql.h>
#include <sqlext.h>
#include <sys/socket.h>

#include <barrier>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "benchmarks/measuring.h"

/// Measures one statement over the service beside the same over ODBC, with several clients at a
/// time, and the service's memory for a waiting connection:
///   service_bench smallest|full PORT PROCESS-ID DATABASE CONNECT-STRING
/// TL_BENCH_TOKEN is the service's token.
namespace tlpacscfg::bench {
namespace {

constexpr const char* kSql = "SELECT COUNT(*) FROM System_pc_names";

struct Service {
  int port;
  std::string processId;
  std::string database;
};

/// An address of this computer for each client: the service limits what one address may take.
in_addr_t addressOf(int client) {
  return htonl(INADDR_LOOPBACK + 1 + static_cast<in_addr_t>(client));
}

void useAddress(int socket, int client) {
  sockaddr_in source{};
  source.sin_family = AF_INET;
  source.sin_addr.s_addr = addressOf(client);
  if (bind(socket, reinterpret_cast<sockaddr*>(&source), sizeof(source)) != 0) {
    throw std::runtime_error("An address of this computer cannot be used.");
  }
}

void askService(const Service& service, int client) {
  httplib::Client http("127.0.0.1", service.port);
  http.set_tcp_nodelay(true);
  http.set_read_timeout(std::chrono::minutes(2));
  http.set_socket_options([client](int socket) { useAddress(socket, client); });
  const std::string request = std::string(R"({"token":")") + std::getenv("TL_BENCH_TOKEN") +
                              R"(","database":")" + service.database + R"(","sql":")" + kSql +
                              "\"}";
  const httplib::Result answer = http.Post("/v1/query", request, "application/json");
  if (!answer || answer->status != 200) throw std::runtime_error("The service did not answer.");
}

void check(SQLRETURN code) {
  if (!SQL_SUCCEEDED(code)) throw std::runtime_error("An ODBC call failed.");
}

/// On a connection that is opened for it, as in the service.
void askDatabase(SQLHENV environment, std::string connect) {
  SQLHDBC connection = SQL_NULL_HDBC;
  check(SQLAllocHandle(SQL_HANDLE_DBC, environment, &connection));
  check(SQLDriverConnect(connection, nullptr, reinterpret_cast<SQLCHAR*>(connect.data()), SQL_NTS,
                         nullptr, 0, nullptr, SQL_DRIVER_NOPROMPT));
  SQLHSTMT statement = SQL_NULL_HSTMT;
  check(SQLAllocHandle(SQL_HANDLE_STMT, connection, &statement));
  std::string sql = kSql;
  check(SQLExecDirect(statement, reinterpret_cast<SQLCHAR*>(sql.data()), SQL_NTS));
  check(SQLFetch(statement));
  SQLFreeHandle(SQL_HANDLE_STMT, statement);
  SQLDisconnect(connection);
  SQLFreeHandle(SQL_HANDLE_DBC, connection);
}

/// Records how long each statement takes while that many clients send one after the other.
void measureAtOnce(int clients, int each, Series series, const std::function<void(int)>& ask) {
  std::barrier start(clients);
  std::mutex recording;
  std::vector<std::thread> threads;
  for (int client = 0; client < clients; ++client) {
    threads.emplace_back([&, client] {
      start.arrive_and_wait();
      for (int i = 0; i < each; ++i) {
        const double seconds = secondsOf([&] { ask(client); });
        const std::scoped_lock lock(recording);
        record("statement-service", clients, series, seconds);
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
}

std::size_t openFiles(const Service& service) {
  const std::filesystem::directory_iterator files("/proc/" + service.processId + "/fd");
  return static_cast<std::size_t>(std::distance(begin(files), end(files)));
}

/// Bytes of its own that are in memory.
double memoryOf(const Service& service) {
  std::ifstream status("/proc/" + service.processId + "/status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with("RssAnon:")) return std::stod(line.substr(8)) * 1024;
  }
  throw std::runtime_error("The service's memory is not known.");
}

class SilentConnection {
 public:
  SilentConnection(const Service& service, int client)
      : socket_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    useAddress(socket_, client);
    sockaddr_in target{};
    target.sin_family = AF_INET;
    target.sin_port = htons(static_cast<in_port_t>(service.port));
    target.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (connect(socket_, reinterpret_cast<sockaddr*>(&target), sizeof(target)) != 0) {
      throw std::runtime_error("There is no connection to the service.");
    }
  }
  ~SilentConnection() { close(socket_); }
  SilentConnection(const SilentConnection&) = delete;
  SilentConnection& operator=(const SilentConnection&) = delete;

 private:
  int socket_;
};

void awaitOpenFiles(const Service& service, const std::function<bool(std::size_t)>& enough) {
  const auto latest = std::chrono::steady_clock::now() + std::chrono::seconds(10);
  while (!enough(openFiles(service))) {
    if (std::chrono::steady_clock::now() > latest) {
      throw std::runtime_error("The service did not accept or close all connections.");
    }
    std::this_thread::yield();
  }
}

/// `filesAtRest`: those that the service has open without any connection.
void measureWaiting(const Service& service, std::size_t filesAtRest, int connections) {
  awaitOpenFiles(service, [&](std::size_t files) { return files <= filesAtRest; });
  const double before = memoryOf(service);
  std::vector<std::unique_ptr<SilentConnection>> waiting;
  for (int i = 0; i < connections; ++i) {
    waiting.push_back(std::make_unique<SilentConnection>(service, i));
  }
  awaitOpenFiles(service, [&](std::size_t files) { return files >= filesAtRest + waiting.size(); });
  record("waiting-memory", 0, Series::Component, (memoryOf(service) - before) / connections);
}

void run(bool full, const Service& service, const std::string& connect) {
  const std::size_t filesAtRest = openFiles(service);
  SQLHENV environment = SQL_NULL_HENV;
  check(SQLAllocHandle(SQL_HANDLE_ENV, SQL_NULL_HANDLE, &environment));
  check(SQLSetEnvAttr(environment, SQL_ATTR_ODBC_VERSION,
                      reinterpret_cast<SQLPOINTER>(static_cast<std::intptr_t>(SQL_OV_ODBC3)), 0));
  const auto overService = [&](int client) { askService(service, client); };
  const auto overOdbc = [&](int) { askDatabase(environment, connect); };
  for (const int clients : {1, 8, 64}) {
    const int rounds = full ? 6 : 1;
    const int each = full ? std::max(2, 40 / clients) : 1;
    for (int round = 0; round < rounds; ++round) {
      const auto ours = [&] { measureAtOnce(clients, each, Series::Component, overService); };
      const auto beside = [&] { measureAtOnce(clients, each, Series::Baseline, overOdbc); };
      round % 2 == 0 ? beside() : ours();
      round % 2 == 0 ? ours() : beside();
    }
  }
  measureWaiting(service, filesAtRest, full ? 200 : 20);
  SQLFreeHandle(SQL_HANDLE_ENV, environment);
}

}  // namespace
}  // namespace tlpacscfg::bench

int main(int count, char** arguments) {
  if (count != 6) {
    std::cerr << "service_bench smallest|full PORT PROCESS-ID DATABASE CONNECT-STRING\n";
    return 2;
  }
  try {
    tlpacscfg::bench::run(std::string(arguments[1]) == "full",
                          {std::stoi(arguments[2]), arguments[3], arguments[4]}, arguments[5]);
    return 0;
  } catch (const std::exception& error) {
    std::cerr << "service_bench: " << error.what() << '\n';
    return 1;
  }
}
