#include "service/options.h"

#include <algorithm>
#include <charconv>
#include <functional>

#include "service/private_file.h"
#include "shared/loopback.h"
#include "support/text.h"
#include "support/trimmed_line.h"

namespace tlpacscfg::service {
namespace {

struct Setting {
  const char* name;
  const char* explanation;
  std::function<void(ServiceOptions&, const std::string&)> apply;
};

template <class Number>
Number toNumber(const std::string& text, Number min, Number max) {
  Number number{};
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc() || stop != end || number < min || number > max) {
    throw OptionError("'" + text + "' is not a number from " + std::to_string(min) + " to " +
                      std::to_string(max));
  }
  return number;
}

template <class Number>
auto number(Number ServiceOptions::*member, Number min, Number max) {
  return [=](ServiceOptions& options, const std::string& text) {
    options.*member = toNumber(text, min, max);
  };
}

auto seconds(std::chrono::seconds ServiceOptions::*member) {
  return [=](ServiceOptions& options, const std::string& text) {
    options.*member = std::chrono::seconds(toNumber(text, 1, 3600));
  };
}

auto text(std::string ServiceOptions::*member) {
  return [=](ServiceOptions& options, const std::string& value) { options.*member = value; };
}

void setPlainHttp(ServiceOptions& options, const std::string& value) {
  if (value != "yes" && value != "no") throw OptionError("plain-http is either yes or no");
  options.plainHttp = value == "yes";
}

const std::vector<Setting>& settings() {
  constexpr std::size_t kMaxBytes = 1 << 30;
  static const std::vector<Setting> all = {
      {"address", "address to listen on (127.0.0.1)", text(&ServiceOptions::address)},
      {"port", "port to listen on, 0 for any (8443)", number(&ServiceOptions::port, 0, 65535)},
      {"certificate", "file with the certificate chain, PEM", text(&ServiceOptions::certificate)},
      {"key", "file with the certificate's private key, PEM", text(&ServiceOptions::key)},
      {"token-file", "file with a token to read and write, named 'default'",
       text(&ServiceOptions::tokenFile)},
      {"plain-http", "yes serves without TLS, on a loopback address only (no)", setPlainHttp},
      {"workers", "requests handled at a time (8)",
       number<std::size_t>(&ServiceOptions::workers, 1, 256)},
      {"waiting", "connections that may wait for their first byte or a worker (512)",
       number<std::size_t>(&ServiceOptions::waiting, 1, 10'000)},
      {"request-bytes", "largest request (1048576)",
       number<std::size_t>(&ServiceOptions::requestBytes, 1024, kMaxBytes)},
      {"response-bytes", "largest response (67108864)",
       number<std::size_t>(&ServiceOptions::responseBytes, 1024, remote::kMaxAnswerBytes)},
      {"header-seconds", "time for a connection's first byte, TLS handshake and headers (5)",
       seconds(&ServiceOptions::headerSeconds)},
      {"request-seconds", "time for a request to arrive (10)",
       seconds(&ServiceOptions::requestSeconds)},
      {"response-seconds", "time for a response to be taken (60)",
       seconds(&ServiceOptions::responseSeconds)},
      {"statement-seconds", "time for a statement, its wait for a free process included (60)",
       seconds(&ServiceOptions::statementSeconds)},
      {"memory-megabytes", "memory of the service and of each statement (1024)",
       number<std::size_t>(&ServiceOptions::memoryMegabytes, 64, 1 << 20)},
      {"total-megabytes", "memory of all together: it bounds the statements at a time (8192)",
       number<std::size_t>(&ServiceOptions::totalMegabytes, 128, 1 << 30)},
  };
  return all;
}

void applySetting(ServiceOptions& options, const std::string& name, const std::string& value) {
  for (const Setting& setting : settings()) {
    if (name != setting.name) continue;
    try {
      return setting.apply(options, value);
    } catch (const OptionError& error) {
      throw OptionError(name + ": " + error.what());
    }
  }
  throw OptionError("there is no setting '" + name + "'");
}

/// NAME = RIGHTS, FILE
TokenFile tokenOf(const std::string& name, std::string_view value) {
  // The name is a field of the journal.
  constexpr const char* kLetters =
      "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-_.";
  if (name.empty() || name.size() > 64 || name.find_first_not_of(kLetters) != name.npos) {
    throw OptionError("the name of a token has letters, digits, '-', '_' and '.'");
  }
  const std::size_t comma = value.find(',');
  const std::string_view rights = trimmedLine(value.substr(0, comma));
  if (comma == value.npos || (rights != "read" && rights != "read-write")) {
    throw OptionError("a token is 'NAME = read, FILE' or 'NAME = read-write, FILE'");
  }
  return {name, rights == "read" ? Rights::Read : Rights::ReadAndWrite,
          std::string(trimmedLine(value.substr(comma + 1)))};
}

void applyLine(ServiceOptions& options, const std::string& section, const std::string& name,
               const std::string& value) {
  if (section == "service") {
    applySetting(options, name, value);
  } else if (section == "tokens") {
    options.tokens.push_back(tokenOf(name, value));
  } else if (section == "databases") {
    options.databases[toUtf8(upperCase(fromUtf8(name)))].connectString = value;
  } else if (section == "database-files") {
    options.databases[toUtf8(upperCase(fromUtf8(name)))].directory = value;
  } else if (section == "directories") {
    options.directories.push_back({name, value});
  } else {
    throw OptionError("there is no section [" + section + "]");
  }
}

void check(const ServiceOptions& options) {
  if (options.tokens.empty()) throw OptionError("token-file is missing, or a section [tokens]");
  if (options.totalMegabytes < 2 * options.memoryMegabytes) {
    throw OptionError("total-megabytes has no room for the service and one statement");
  }
  for (const auto& [name, database] : options.databases) {
    if (database.connectString.empty()) throw OptionError("there is no database '" + name + "'");
  }
  if (options.plainHttp) {
    if (!remote::isLoopback(fromUtf8(options.address))) {
      throw OptionError("plain-http is for loopback addresses only");
    }
    if (!options.certificate.empty() || !options.key.empty()) {
      throw OptionError("plain-http has no use for a certificate");
    }
  } else if (options.certificate.empty() || options.key.empty()) {
    throw OptionError("certificate and key are needed (or plain-http, on a loopback address)");
  }
}

}  // namespace

void applyConfiguration(ServiceOptions& options, std::string_view configuration) {
  std::string section;
  int lineNumber = 0;
  while (!configuration.empty()) {
    const std::size_t end = configuration.find('\n');
    const std::string_view line = trimmedLine(configuration.substr(0, end));
    configuration.remove_prefix(end == configuration.npos ? configuration.size() : end + 1);
    ++lineNumber;
    try {
      if (line.empty() || line[0] == '#' || line[0] == ';') continue;
      if (line.front() == '[' && line.back() == ']') {
        section = line.substr(1, line.size() - 2);
        continue;
      }
      const std::size_t equals = line.find('=');
      if (equals == line.npos) throw OptionError("a line is 'name = value'");
      applyLine(options, section, std::string(trimmedLine(line.substr(0, equals))),
                std::string(trimmedLine(line.substr(equals + 1))));
    } catch (const OptionError& error) {
      throw OptionError("line " + std::to_string(lineNumber) + ": " + error.what());
    }
  }
}

ServiceOptions readOptions(const std::vector<std::string>& arguments) {
  std::string configuration;
  std::vector<std::pair<std::string, std::string>> fromCommandLine;
  ServiceOptions options;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string& argument = arguments[i];
    if (argument == "--help" || argument == "--version") {
      options.answer = argument == "--help" ? helpText() : "tlcommd " TL_VERSION "\n";
      return options;
    }
    if (!argument.starts_with("--")) throw OptionError("'" + argument + "' is no option");
    const std::size_t equals = argument.find('=');
    const std::string name = argument.substr(2, equals - 2);
    if (equals == argument.npos && i + 1 == arguments.size()) {
      throw OptionError("--" + name + " needs a value");
    }
    const std::string value =
        equals == argument.npos ? arguments[++i] : argument.substr(equals + 1);
    if (name == "config") {
      configuration = value;
    } else {
      fromCommandLine.emplace_back(name, value);
    }
  }
  if (!configuration.empty()) {
    applyConfiguration(options, readPrivateFile("the configuration file", configuration));
  }
  for (const auto& [name, value] : fromCommandLine) applySetting(options, name, value);
  if (!options.tokenFile.empty()) {
    options.tokens.push_back({"default", Rights::ReadAndWrite, options.tokenFile});
  }
  options.headerSeconds = std::min(options.headerSeconds, options.requestSeconds);
  check(options);
  return options;
}

std::string helpText() {
  std::string help =
      "tlcommd --config FILE [--SETTING VALUE]...\n"
      "tlcommd --help | --version\n"
      "\n"
      "Serves databases and directory listings to remote data clients.\n"
      "\n"
      "Settings, in the file's section [service] or on the command line, which wins:\n";
  for (const Setting& setting : settings()) {
    std::string name = std::string("  ") + setting.name;
    name.resize(21, ' ');
    help += name + setting.explanation + "\n";
  }
  return help +
         "\n"
         "Section [tokens]: NAME = read, FILE or NAME = read-write, FILE\n"
         "Section [databases]: NAME = ODBC connect string\n"
         "Section [database-files]: NAME = directory of a database without a server\n"
         "Section [directories]: directory as clients name it = directory here\n";
}

}  // namespace tlpacscfg::service
