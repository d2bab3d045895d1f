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

/// What requests that are being served have left when the service is to end.
inline constexpr std::chrono::seconds kEndingTime{5};

/// A directory that clients may list, and where it lies here.
struct SharedDirectory {
  std::string clientPath;
  std::filesystem::path localPath;
};

struct ServiceOptions {
  std::string address = "127.0.0.1";
  int port = 8443;  ///< 0 takes any free port.
  std::string certificate;
  std::string key;
  std::string tokenFile;
  bool plainHttp = false;
  std::size_t workers = 8;
  std::size_t waiting = 64;
  std::size_t requestBytes = 1 << 20;
  std::size_t responseBytes = remote::kMostAnswerBytes;
  std::chrono::seconds requestSeconds{10};
  std::chrono::seconds responseSeconds{60};
  std::chrono::seconds statementSeconds{60};
  std::size_t memoryMegabytes = 2048;  ///< Of each process; 0 sets no limit.

  /// ODBC connect strings by the upper-case names that clients use.
  std::map<std::string, std::string> databases;
  std::vector<SharedDirectory> directories;

  bool help = false;
};

/// Wrong settings; the text says which.
class OptionError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The command line, and the configuration file that it names; the command line wins. Throws
/// OptionError, also for settings that would serve plain HTTP to other machines.
ServiceOptions readOptions(const std::vector<std::string>& arguments);

/// The settings of a configuration file's text, added to the options. Throws OptionError.
void applyConfiguration(ServiceOptions& options, std::string_view text);

std::string helpText();

}  // namespace tlpacscfg::service
