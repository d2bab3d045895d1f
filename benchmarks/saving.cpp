#include <stdexcept>

#include "benchmarks/bare/odbc.h"
#include "benchmarks/measurements.h"
#include "benchmarks/measuring.h"
#include "data/workstation_key.h"
#include "host/site_access.h"
#include "workstation/assignment_batches.h"
#include "workstation/assignments.h"

namespace tlpacscfg::bench {
namespace {

using Batches = std::vector<std::vector<std::wstring>>;

Batches batchesOf(const clsConfig& config, Path path) {
  std::vector<colWorkstation::Pointer> all;
  for (const auto& workstation : config.m_colWorkstation->ColWorkStations->items()) {
    all.push_back(workstation);
  }
  Batches batches;
  forEachAssignmentCommand(all, [&](const std::wstring& command, std::size_t) {
    batches.push_back(statementsAt(path, command));
  });
  batches.push_back(statementsAt(path, kOfflineUpdateStatement));
  return batches;
}

void execute(bare::Connection& connection, const std::vector<std::wstring>& statements) {
  for (const std::wstring& statement : statements) connection.execute(statement);
}

/// Like closing the list: reads the stored rows before and after.
void saveAsList(clsConfig& config) {
  const SiteAccess access(config);
  if (!saveAssignments(*config.m_colWorkstation, {}, [](std::size_t, std::size_t) {}).empty()) {
    throw std::runtime_error("Nobody else has assigned anything.");
  }
}

}  // namespace

void measureSaving(const Site& site, Path path) {
  const std::shared_ptr<clsConfig> config = initialised(site, path);
  const Batches batches = batchesOf(*config, path);
  const std::wstring listing = statementsAt(path, kListStatement).front();
  bare::Connection connection(site.connectString(path));
  if (path == Path::Direct) {
    compare("saving", site.workstations, site.repetitions,
            {[&] { config->m_colWorkstation->SaveAllWorkStationSettings(); }}, {[&] {
              for (const auto& batch : batches) {
                connection.together([&] { execute(connection, batch); });
              }
            }});
  }
  compare(path == Path::Direct ? "saving-checked" : "saving-server", site.workstations,
          site.repetitions, {[&] { saveAsList(*config); }}, {[&] {
            connection.serializably([&] {
              connection.fetch(listing);
              for (const auto& batch : batches) execute(connection, batch);
              connection.fetch(listing);
            });
          }});
  disconnect();
}

void measureServiceSaving(const Site& site) {
  const std::shared_ptr<clsConfig> direct = initialised(site);
  const std::shared_ptr<clsConfig> remote = initialised(site, Path::Service);
  compare("saving-service", site.workstations, site.repetitions, {[&] { saveAsList(*remote); }},
          {[&] { saveAsList(*direct); }});
  disconnect();
}

}  // namespace tlpacscfg::bench
