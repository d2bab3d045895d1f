#include <windows.h>
#include <commctrl.h>

#include <algorithm>
#include <vector>

#include "benchmarks/bare/list_view.h"
#include "benchmarks/measurements.h"
#include "benchmarks/measuring.h"
#include "support/conversions.h"
#include "ui/workstation_list/view/workstation_list_window.h"
#include "ui/resource.h"

namespace tlpacscfg::bench {
namespace {

SIZE sizeOf(HWND window) {
  RECT frame{};
  GetWindowRect(window, &frame);
  return {frame.right - frame.left, frame.bottom - frame.top};
}

/// The rows of the filter that the window begins with, as the model has them.
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

}  // namespace

void measureListWindow(const Site& site, int repetitions) {
  const std::shared_ptr<clsConfig> config = initialised(site);
  frmPACSList window(config);
  window.Show();
  const HWND list = window.item(IDC_frmPACSList_lvwPACSList);

  const WorkstationRows rows = rowsOf(*config);
  const std::vector<bare::Row> texts = textsOf(rows);
  bare::ListView bareList(sizeOf(list));
  compare("filling", site, repetitions, {[&] {
            window.FillPCList();
            UpdateWindow(list);
          }},
          {[&] { bareList.fill(texts); }, [&] { bareList.clear(); }});

  // In the order in which the window shows them when it opens.
  WorkstationRows shown = rows;
  sort(shown, WorkstationRows::kName, SortType::Text);
  const std::vector<std::int32_t> identifiers = identifiersOf(shown);
  WorkstationRows sorted;
  std::vector<std::int32_t> keys;
  compare("sorting", site, repetitions * 3,
          {[&] { sort(sorted, WorkstationRows::kConfigID, SortType::WholeNumber); },
           [&] { sorted = shown; }},
          {[&] { std::stable_sort(keys.begin(), keys.end()); }, [&] { keys = identifiers; }});
  window.destroy();
  disconnect();
}

}  // namespace tlpacscfg::bench
