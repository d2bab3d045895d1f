#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

#include "benchmarks/bare/odbc.h"
#include "config/columns.h"
#include "data/workstation_key.h"
#include "odbc/dialect.h"
#include "support/text.h"
#include "workstation/workstation.h"

/// The least work of some commands of the command line, which is compared with it:
///   bare_command list|check SITE
///   bare_command diff SITE SITE
///   bare_command export SITE FOLDER FILES BYTES
///   bare_command assign SITE STATEMENTS
/// A site is a data source.
namespace tlpacscfg::bench {
namespace {

namespace fs = std::filesystem;
using Arguments = std::span<const std::string>;

std::u16string listing() { return toUtf16(statementsFor(Dialect::Sqlite, kListStatement).front()); }

bare::Connection open(const std::string& site) {
  return bare::Connection(L"DSN=" + fromUtf8(site) + L";");
}

std::string contentOf(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary);
  if (!stream) throw std::runtime_error("There is no file " + file.string() + ".");
  return {std::istreambuf_iterator<char>(stream), {}};
}

void fetchSite(bare::Connection& site) {
  site.fetch(toUtf16(loadingStatement()));
  site.fetch(listing());
}

void list(Arguments arguments) {
  bare::Connection site = open(arguments[0]);
  fetchSite(site);
}

/// The tables of workstations one by one, which shows assignments of those that are not listed.
void check(Arguments arguments) {
  bare::Connection site = open(arguments[0]);
  site.fetch(
      u"SELECT pc_name, key_value FROM System_workstation_cfg WHERE key_name = 'PACSConfig'");
  site.fetch(toUtf16(loadingStatement()));
  site.fetch(u"SELECT pc_name, flag2 FROM System_pc_names");
}

void diff(Arguments arguments) {
  list(arguments.first(1));
  list(arguments.subspan(1));
}

/// Writes that many files of that size.
void exportSite(Arguments arguments) {
  list(arguments.first(1));
  const fs::path folder = arguments[1];
  const std::string content(std::stoul(arguments[3]), ' ');
  fs::create_directories(folder);
  for (int i = std::stoi(arguments[2]); i > 0; --i) {
    std::ofstream(folder / ("configuration-" + std::to_string(i) + ".txt"), std::ios::binary)
        .write(content.data(), static_cast<std::streamsize>(content.size()));
  }
}

/// The statements of a file, which end in a NUL each.
std::vector<std::u16string> statementsIn(const std::string& file) {
  const std::string content = contentOf(file);
  std::vector<std::u16string> statements;
  for (std::string_view left = content; !left.empty();) {
    const std::size_t end = left.find('\0');
    statements.push_back(toUtf16(fromUtf8(left.substr(0, end))));
    left.remove_prefix(end + 1);
  }
  return statements;
}

/// Reads the site for the plan, again in the transaction, where nobody else can change it any more,
/// and at its end what has been stored.
void assign(Arguments arguments) {
  bare::Connection site = open(arguments[0]);
  const std::vector<std::u16string> statements = statementsIn(arguments[1]);
  fetchSite(site);
  site.serializably([&] {
    fetchSite(site);
    for (const std::u16string& statement : statements) site.execute(statement);
    site.fetch(listing());
  });
}

struct Task {
  std::string_view name;
  std::size_t arguments;
  void (*run)(Arguments);
};
constexpr Task kTasks[] = {{"list", 1, list},
                           {"check", 1, check},
                           {"diff", 2, diff},
                           {"export", 4, exportSite},
                           {"assign", 2, assign}};

}  // namespace
}  // namespace tlpacscfg::bench

int main(int count, char** words) {
  using namespace tlpacscfg::bench;
  const std::vector<std::string> arguments(words + 1, words + count);
  try {
    for (const Task& task : kTasks) {
      if (arguments.size() != task.arguments + 1 || arguments.front() != task.name) continue;
      task.run(Arguments(arguments).subspan(1));
      return 0;
    }
    throw std::runtime_error("Run ./bench.");
  } catch (const std::exception& error) {
    std::cerr << "bare_command: " << error.what() << '\n';
    return 1;
  }
}
