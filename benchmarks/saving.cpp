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

using Batches = std::vector<std::vector<std::u16string>>;

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

void execute(bare::Connection& connection, const std::vector<std::u16string>& statements) {
  for (const std::u16string& statement : statements) connection.execute(statement);
}

/// Like closing the list: reads the stored rows before and after.
void saveAsList(clsConfig& config) {
  const SiteAccess access(config);
  if (!saveAssignments(*config.m_colWorkstation, {}, [](std::size_t, std::size_t) {}).empty()) {
    throw std::runtime_error("Nobody else has assigned anything.");
  }
}

/// The statements of closing the list alone, on a connection of their own.
class BareSave {
 public:
  BareSave(const Site& site, const clsConfig& config, Path path)
      : batches_(batchesOf(config, path)),
        listing_(statementsAt(path, kListStatement).front()),
        connection_(site.connectString(path)) {}

  void saveUnchecked() {
    for (const auto& batch : batches_) connection_.together([&] { execute(connection_, batch); });
  }

  void saveAsList() {
    connection_.serializably([&] {
      connection_.fetch(listing_);
      for (const auto& batch : batches_) execute(connection_, batch);
      connection_.fetch(listing_);
    });
  }

 private:
  const Batches batches_;
  const std::u16string listing_;
  bare::Connection connection_;
};

}  // namespace

void measureSaving(const Site& site, Path path) {
  const std::shared_ptr<clsConfig> config = initialised(site, path);
  BareSave bare(site, *config, path);
  if (path == Path::Direct) {
    compare("saving", site.workstations, site.repetitions,
            {[&] { config->m_colWorkstation->SaveAllWorkStationSettings(); }},
            {[&] { bare.saveUnchecked(); }});
  }
  compare(path == Path::Direct ? "saving-checked" : "saving-server", site.workstations,
          site.repetitions, {[&] { saveAsList(*config); }}, {[&] { bare.saveAsList(); }});
  disconnect();
}

void measureServiceSaving(const Site& site) {
  const std::shared_ptr<clsConfig> config = initialised(site, Path::Service);
  BareSave bare(site, *config, Path::Direct);
  compare("saving-service", site.workstations, site.repetitions, {[&] { saveAsList(*config); }},
          {[&] { bare.saveAsList(); }});
  disconnect();
}

}  // namespace tlpacscfg::bench
