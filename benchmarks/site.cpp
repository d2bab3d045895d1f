#include "benchmarks/site.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <numeric>
#include <random>
#include <stdexcept>
#include <vector>

#include "benchmarks/bare/odbc.h"
#include "config/columns.h"
#include "data/direct_connections.h"
#include "data/mod_main.h"
#include "odbc/dialect.h"
#include "support/registry.h"
#include "support/text.h"

namespace tlpacscfg::bench {
namespace {

std::wstring numbered(const wchar_t* prefix, int number) {
  const std::wstring digits = decimal(number);
  return prefix + std::wstring(5 - digits.size(), L'0') + digits;
}

/// The value of an environment variable that ./bench sets.
std::wstring environmentVariable(const char* name) {
  const char* const value = std::getenv(name);
  if (value == nullptr) throw std::runtime_error(std::string(name) + " is not set: run ./bench.");
  return fromUtf8(value);
}

void makeTables(bare::Connection& database) {
  std::ifstream stream(std::filesystem::path(environmentVariable("TL_BENCH_SCHEMA")),
                       std::ios::binary);
  const std::wstring script = fromUtf8(std::string{std::istreambuf_iterator<char>(stream), {}});
  std::wstring text;
  for (const std::wstring_view line : split(script, L'\n')) {
    if (!line.starts_with(L"--")) text.append(line).append(L"\n");
  }
  for (const std::wstring_view statement : split(text, L';')) {
    if (statement.find_first_not_of(L"\r\n ") != statement.npos) {
      database.execute(toUtf16(statement));
    }
  }
}

/// Typical values of a column: paths, addresses and lists of ordinary length.
std::wstring textOf(const std::wstring& property, int id) {
  const std::wstring room = numbered(L"room-", id);
  if (property == L"Description") return L"Reading " + room + L", CT and MR";
  if (property == L"RequestFileName") return L"\\\\nas01\\ris\\" + room + L"\\request.xml";
  if (property == L"ResponseFileName") {
    return L"https://ris.example.org/open?room=" + room + L"&accession={11}&patient={7}";
  }
  if (property == L"LastUpdateUserID") return L"12";
  if (property == L"LastUpdateDate") return L"2024-09-09 11:20:36";
  if (property == L"CustomXMLFile") return L"ClinicMap.xml";
  if (property == L"ApplicableFields") return L"7,11";
  if (property == L"MultiAccessFields") return L"Accession ID,Order ID";
  return L"C:\\pacs\\" + room + L".xml";
}

std::wstring valueFor(const Column& column, int id) {
  if (isText(column.field)) return textOf(column.property, id);
  const std::wstring property = column.property;
  if (property == L"configID") return decimal(id);
  if (property == L"PACSType") return decimal(id % 4);
  if (property == L"Port") return decimal(10000 + id);
  // Codes that the settings window offers for these properties.
  if (property == L"CofirmStartTrigger") return L"10";
  if (property == L"ManualEntryTrigger") return L"8";
  if (property == L"PollingDisplayField") return L"11";
  if (property == L"ContextChangeOption") return L"20";
  if (property == L"ContextUpdate" || property == L"CloseDictationAction") return L"0";
  return decimal(id % 2);
}

std::wstring insertion(const std::wstring& table, std::size_t columns) {
  std::wstring marks = L"?";
  for (std::size_t i = 1; i < columns; ++i) marks += L", ?";
  return L"INSERT INTO " + table + L" VALUES (" + marks + L")";
}

void addConfigurations(bare::Connection& database, int count) {
  std::vector<std::vector<std::wstring>> rows;
  for (int id = 1; id <= count; ++id) {
    std::vector<std::wstring>& row = rows.emplace_back();
    for (const Column& column : columns()) row.push_back(valueFor(column, id));
  }
  database.insert(insertion(L"Interface_PACS_cfg", kColumnCount), rows);
}

/// The numbers from 1 to the count in a reproducible random order.
std::vector<int> shuffledNumbers(int count, unsigned seed) {
  std::vector<int> numbers(static_cast<std::size_t>(count));
  std::iota(numbers.begin(), numbers.end(), 1);
  std::shuffle(numbers.begin(), numbers.end(), std::mt19937(seed));
  return numbers;
}

/// Neither the names nor the assigned configurations are sorted.
void addWorkstations(bare::Connection& database, const Site& site) {
  std::vector<std::vector<std::wstring>> names;
  std::vector<std::vector<std::wstring>> assignments;
  const std::vector<int> assigned = shuffledNumbers(site.workstations, 2);
  for (const int number : shuffledNumbers(site.workstations, 1)) {
    const std::wstring name = numbered(L"READ-", number);
    const int id = assigned[static_cast<std::size_t>(number - 1)] % site.configurations + 1;
    names.push_back({name, L"A1", decimal(number % 2)});
    assignments.push_back({name, L"38", L"PACSConfig", decimal(id), L"-1", L"0"});
  }
  database.insert(insertion(L"System_pc_names", 3), names);
  database.insert(insertion(L"System_workstation_cfg", 6), assignments);
}

void addRows(const Site& site) {
  bare::Connection database(site.connectString(Path::Direct));
  addConfigurations(database, site.configurations);
  addWorkstations(database, site);
}

void setValue(const std::wstring& key, const std::wstring& name, const std::wstring& value) {
  registry::createKey(registry::Root::CurrentUser, key);
  registry::write(registry::Root::CurrentUser, key, name, value);
}

}  // namespace

std::wstring Site::connectString(Path path) const {
  if (path == Path::Direct) return L"DSN=" + dataSource + L";";
  return L"Driver={SQL Server};Server=127.0.0.1;Database=Talora;UID=sa;PWD=;";
}

void makeSite(const Site& site) {
  bare::Connection database(site.connectString(Path::Direct));
  makeTables(database);
  addRows(site);
  setValue(L"SOFTWARE\\ODBC\\ODBC.INI\\" + site.dataSource, L"DATABASE", site.dataSource);
  setValue(L"SOFTWARE\\TlCommClient\\127.0.0.1", L"Token", environmentVariable("TL_BENCH_TOKEN"));
  setValue(L"SOFTWARE\\TlCommClient\\127.0.0.1", L"Transport", L"http");
}

void makeServerSite(const Site& site) {
  bare::Connection control(L"Driver={SQL Server};Server=127.0.0.2;UID=test;PWD=test;");
  control.execute(toUtf16(L"TELL '{\"command\":\"store\",\"path\":\"" +
                          environmentVariable("TL_SCRATCH") + L"/" + site.dataSource + L".db\"}'"));
  addRows(site);
}

std::shared_ptr<clsConfig> configFor(const Site& site, Path path) {
  auto config = std::make_shared<clsConfig>();
  HostSettings& settings = *config->settings;
  modMain.g_blnTlCommClientEnabled = path == Path::Service;
  if (path == Path::Direct) settings.SQLDSN = site.dataSource;
  if (path == Path::Server) {
    settings.SqlServerName = L"127.0.0.1";
    settings.SqlDbName = L"Talora";
  }
  if (path == Path::Service) {
    settings.TlCommClientHostIP = L"127.0.0.1";
    settings.TlCommClientHostPort = environmentVariable("TL_BENCH_PORT");
    settings.TlCommClientTimeout = L"60";
    settings.SqlDbName = site.dataSource;
  }
  return config;
}

std::shared_ptr<clsConfig> initialised(const Site& site, Path path) {
  const std::shared_ptr<clsConfig> config = configFor(site, path);
  init(*config);
  return config;
}

void init(clsConfig& config) {
  if (!config.Init()) throw std::runtime_error("Init failed");
}

void disconnect() {
  modMain.g_rsQuery.reset();
  DisconnectDatabase();
}

std::vector<std::u16string> statementsAt(Path path, const std::wstring& text) {
  std::vector<std::u16string> statements;
  for (const std::wstring& statement :
       statementsFor(path == Path::Direct ? Dialect::Sqlite : Dialect::SqlServer, text)) {
    statements.push_back(toUtf16(statement));
  }
  return statements;
}

}  // namespace tlpacscfg::bench
