#pragma once

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#include "shared/limits.h"

namespace tlpacscfg::service {

/// The time that running requests get to finish when the service is to end.
inline constexpr std::chrono::seconds kEndingTime{5};

/// A directory that clients may list: the path that they use, and the one on this computer.
struct SharedDirectory {
  std::string clientPath;
  std::filesystem::path localPath;
};

struct Database {
  std::string connectString;  ///< For ODBC.
  std::string directory;      ///< With the files of a database that has no server; else empty.
};

enum class Rights { Read, ReadAndWrite };

/// A file with a token.
struct TokenFile {
  std::string name;
  Rights rights = Rights::ReadAndWrite;
  std::string path;
};

struct ServiceOptions {
  std::string address = "127.0.0.1";
  int port = 8443;  ///< 0: any free port.
  std::string certificate;
  std::string key;
  std::string tokenFile;
  bool plainHttp = false;
  std::size_t workers = 8;
  std::size_t waiting = 512;
  std::size_t requestBytes = remote::kRequestBytes;
  std::size_t responseBytes = remote::kMaxAnswerBytes;
  std::chrono::seconds headerSeconds{5};
  std::chrono::seconds requestSeconds{10};
  std::chrono::seconds responseSeconds{60};
  std::chrono::seconds statementSeconds{60};
  std::size_t memoryMegabytes = 1024;  ///< Of the service and of each process for a job.
  std::size_t totalMegabytes = 8192;

  /// `tokenFile` is one of them.
  std::vector<TokenFile> tokens;
  /// By the upper-case names that clients use.
  std::map<std::string, Database> databases;
  std::vector<SharedDirectory> directories;

  /// What --help or --version prints instead of serving.
  std::string answer;

  /// The service is one process of those that share the memory.
  std::size_t jobsAtATime() const { return totalMegabytes / memoryMegabytes - 1; }
};

/// A wrong setting; the text names it.
class OptionError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Reads the configuration file that the command line names, then the command line, which takes
/// precedence. Throws OptionError, also for plain HTTP on an address that others can reach.
ServiceOptions readOptions(const std::vector<std::string>& arguments);

/// Adds the settings in the text of a configuration file. Throws OptionError.
void applyConfiguration(ServiceOptions& options, std::string_view text);

std::string helpText();

}  // namespace tlpacscfg::service
