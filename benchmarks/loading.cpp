#include <stdexcept>

#include "benchmarks/bare/odbc.h"
#include "benchmarks/measurements.h"
#include "benchmarks/measuring.h"
#include "config/columns.h"

namespace tlpacscfg::bench {
namespace {

/// The workstation list's statement in SQLite's words.
constexpr const wchar_t* kWorkstations =
    L"select p.pc_name,(select key_value from system_workstation_cfg where key_name = 'PACSConfig' "
    L"and pc_name = p.pc_name) AS key_value, access_string, p.flag2 from system_pc_names p";

using Fetch = std::size_t (bare::Connection::*)(const std::wstring&);

void fetchAll(const Site& site, Fetch fetch) {
  bare::Connection connection(site.connectString());
  const std::size_t configurations = (connection.*fetch)(loadingStatement());
  const std::size_t workstations = (connection.*fetch)(kWorkstations);
  if (configurations != static_cast<std::size_t>(site.configurations) ||
      workstations != static_cast<std::size_t>(site.workstations)) {
    throw std::runtime_error("The bare loop read another number of rows.");
  }
}

}  // namespace

void measureLoading(const Site& site, int repetitions) {
  std::shared_ptr<clsConfig> config;
  const Timed init{[&] {
                     if (!config->Init()) throw std::runtime_error("Init failed");
                   },
                   [&] {
                     disconnect();
                     config = configFor(site);
                   }};
  compare("loading-blocks", site, repetitions, init,
          {[&] { fetchAll(site, &bare::Connection::fetchByBlocks); }});
  compare("loading-cells", site, repetitions, init,
          {[&] { fetchAll(site, &bare::Connection::fetchByCells); }});
  disconnect();
}

}  // namespace tlpacscfg::bench
