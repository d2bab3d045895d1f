#include "benchmarks/site.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <numeric>
#include <random>
#include <stdexcept>
#include <vector>

#include "benchmarks/bare/odbc.h"
#include "config/columns.h"
#include "data/database.h"
#include "support/registry.h"
#include "support/text.h"

namespace tlpacscfg::bench {
namespace {

std::wstring numbered(const wchar_t* prefix, int number) {
  const std::wstring digits = decimal(number);
  return prefix + std::wstring(5 - digits.size(), L'0') + digits;
}

void makeTables(bare::Connection& database, const std::wstring& schema) {
  std::ifstream stream(std::filesystem::path(schema), std::ios::binary);
  const std::wstring script = fromUtf8(std::string{std::istreambuf_iterator<char>(stream), {}});
  std::wstring text;
  for (const std::wstring_view line : split(script, L'\n')) {
    if (!line.starts_with(L"--")) text.append(line).append(L"\n");
  }
  for (const std::wstring_view statement : split(text, L';')) {
    if (statement.find_first_not_of(L"\r\n ") != statement.npos) {
      database.execute(std::wstring(statement));
    }
  }
}

/// What such a column holds at a site: paths, addresses and lists of ordinary length.
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
  // The codes that the settings window offers are further apart.
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
  database.insert(insertion(L"Interface_PACS_cfg", kColumnCount), std::move(rows));
}

/// The numbers from 1 up, in an order that is the same in every run.
std::vector<int> shuffledNumbers(int count, unsigned seed) {
  std::vector<int> numbers(static_cast<std::size_t>(count));
  std::iota(numbers.begin(), numbers.end(), 1);
  std::shuffle(numbers.begin(), numbers.end(), std::mt19937(seed));
  return numbers;
}

/// Neither the names nor the assigned configurations come in order.
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
  database.insert(insertion(L"System_pc_names", 3), std::move(names));
  database.insert(insertion(L"System_workstation_cfg", 6), std::move(assignments));
}

}  // namespace

void makeSite(const Site& site, const std::wstring& schema) {
  bare::Connection database(site.connectString());
  makeTables(database, schema);
  addConfigurations(database, site.configurations);
  addWorkstations(database, site);

  const std::wstring key = L"SOFTWARE\\ODBC\\ODBC.INI\\" + site.dataSource;
  registry::createKey(registry::Root::CurrentUser, key);
  registry::write(registry::Root::CurrentUser, key, L"DATABASE", site.dataSource);
}

std::shared_ptr<clsConfig> configFor(const Site& site) {
  auto config = std::make_shared<clsConfig>();
  config->settings->SQLDSN = site.dataSource;
  return config;
}

std::shared_ptr<clsConfig> initialised(const Site& site) {
  const std::shared_ptr<clsConfig> config = configFor(site);
  if (!config->Init()) throw std::runtime_error("Init failed");
  return config;
}

void disconnect() {
  g_rsQuery.reset();
  DisconnectDatabase();
}

}  // namespace tlpacscfg::bench
