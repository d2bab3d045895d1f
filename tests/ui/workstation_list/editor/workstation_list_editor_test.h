#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "data/mod_main.h"
#include "harness/core_fixture.h"
#include "support/text.h"
#include "ui/workstation_list/editor/workstation_list_editor.h"

namespace tlpacscfg::test {

inline constexpr const wchar_t* kRefuseInserts =
    L"CREATE TRIGGER refuse BEFORE INSERT ON System_workstation_cfg BEGIN SELECT RAISE(ABORT, "
    L"'refused'); END";

/// The workstation list's commands on a site, without a window.
class WorkstationListEditorTest : public SiteTest {
 protected:
  using Texts = std::vector<std::wstring>;

  WorkstationListEditorTest() {
    host->settings = std::make_shared<HostSettings>();
    modMain.g_objConfig = host->settings;
  }

  void open(WorkstationFilter filter = WorkstationFilter::All) {
    connect();
    host->m_colPACSConfig = std::make_shared<colPACSConfiguration>();
    host->m_colPACSConfig->GetPACSConfigurations();
    host->m_colWorkstation = std::make_shared<colWorkstation>();
    host->m_colWorkstation->GetWorkstationsList();
    editor.filter = filter;
    ASSERT_TRUE(editor.FillPCList());
  }

  Texts column(std::size_t index) const {
    Texts texts;
    for (std::size_t row = 0; row < editor.rows.rowCount(); ++row) {
      texts.emplace_back(editor.rows.cell(row, index));
    }
    return texts;
  }

  Texts row(std::size_t index) const {
    Texts texts;
    for (std::size_t i = 0; i < WorkstationRows::kColumns; ++i) {
      texts.emplace_back(editor.rows.cell(index, i));
    }
    return texts;
  }

  std::wstring stored(const std::wstring& workstation) {
    return site
        .value(L"select key_value from System_workstation_cfg where pc_name = '" + workstation +
               L"'")
        .value_or(L"<none>");
  }

  std::shared_ptr<clsConfig> host = std::make_shared<clsConfig>();
  std::vector<std::size_t> progress;
  WorkstationListEditor editor{
      host, [this] { return [this](std::size_t done, std::size_t) { progress.push_back(done); }; }};
};

}  // namespace tlpacscfg::test
