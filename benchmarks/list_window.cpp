#include <windows.h>
#include <commctrl.h>

#include <algorithm>
#include <vector>

#include "benchmarks/bare/list_view.h"
#include "benchmarks/bare/odbc.h"
#include "benchmarks/measurements.h"
#include "benchmarks/measuring.h"
#include "support/conversions.h"
#include "support/system.h"
#include "support/text.h"
#include "ui/resource.h"
#include "ui/show_form/windows.h"

namespace tlpacscfg::bench {
namespace {

/// The designed size of the list.
constexpr SIZE kListSize = {480, 400};

/// Filling the list requests the identifiers of all configurations.
constexpr const wchar_t* kNumbering =
    L"select config_id  from Interface_PACS_cfg order by config_id";

/// The rows of the window's initial filter.
WorkstationRows rowsOf(const clsConfig& config) {
  WorkstationRows rows;
  rows.fill(*config.m_colWorkstation, *config.m_colPACSConfig, WorkstationFilter::Assigned);
  return rows;
}

std::vector<bare::Row> textsOf(const WorkstationRows& rows) {
  std::vector<bare::Row> texts(rows.rowCount());
  for (std::size_t row = 0; row < texts.size(); ++row) {
    for (std::size_t column = 0; column < texts[row].size(); ++column) {
      texts[row][column] = rows.cell(row, column);
    }
  }
  return texts;
}

void sort(WorkstationRows& rows, WorkstationRows::Column column, SortType type) {
  rows.sortOrder = kDescending;
  SortListView(rows, static_cast<std::int16_t>(column + 1), static_cast<std::int16_t>(type));
}

std::vector<std::int32_t> identifiersOf(const WorkstationRows& rows) {
  std::vector<std::int32_t> identifiers;
  for (std::size_t row = 0; row < rows.rowCount(); ++row) {
    identifiers.push_back(toInt32(rows.cell(row, WorkstationRows::kConfigID)));
  }
  return identifiers;
}

void measureFilling(const Site& site, const std::shared_ptr<clsConfig>& config,
                    const std::vector<bare::Row>& texts) {
  Windows windows(config);
  frmPACSList& window = windows.list;
  window.Show();
  const HWND list = window.item(IDC_frmPACSList_lvwPACSList);
  RECT frame{};
  GetWindowRect(list, &frame);
  bare::ListView bareList({frame.right - frame.left, frame.bottom - frame.top}, texts);
  bare::Connection connection(site.connectString(Path::Direct));
  compare("filling", site.workstations, site.repetitions, {[&] {
            window.FillPCList();
            UpdateWindow(list);
          }},
          {[&] {
            connection.fetch(toUtf16(kNumbering));
            bareList.fill(WorkstationRows::kName, system::computerName());
          }});
  window.destroy();
}

/// Starts with the order of the rows when the window opens.
void measureSorting(const Site& site, WorkstationRows shown) {
  sort(shown, WorkstationRows::kName, SortType::Text);
  const std::vector<std::int32_t> identifiers = identifiersOf(shown);
  WorkstationRows sorted;
  std::vector<std::int32_t> keys;
  compare("sorting", site.workstations, site.repetitions,
          {[&] { sort(sorted, WorkstationRows::kConfigID, SortType::WholeNumber); },
           [&] { sorted = shown; }},
          {[&] { std::stable_sort(keys.begin(), keys.end()); }, [&] { keys = identifiers; }});
}

}  // namespace

void measureListWindow(const Site& site) {
  const std::shared_ptr<clsConfig> config = initialised(site);
  const WorkstationRows rows = rowsOf(*config);
  measureFilling(site, config, textsOf(rows));
  measureSorting(site, rows);
  disconnect();
}

void measureFirstOpening(const Site& site, Series series) {
  const std::shared_ptr<clsConfig> config = initialised(site);
  const auto time = [&](const std::function<void()>& action) {
    record("opening-list", site.workstations, series, secondsOf(action));
  };
  if (series == Series::Component) {
    Windows windows(config);
    frmPACSList& window = windows.list;
    time([&] {
      window.Show();
      UpdateWindow(window.window());
      UpdateWindow(window.item(IDC_frmPACSList_lvwPACSList));
    });
    window.destroy();
  } else {
    const std::vector<bare::Row> texts = textsOf(rowsOf(*config));
    bare::Connection connection(site.connectString(Path::Direct));
    time([&] {
      bare::ListView list(kListSize, texts);
      connection.fetch(toUtf16(kNumbering));
      list.fill(WorkstationRows::kName, system::computerName());
    });
  }
  disconnect();
}

}  // namespace tlpacscfg::bench
