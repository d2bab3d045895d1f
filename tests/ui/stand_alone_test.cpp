#include "data/direct_connections.h"
#include "harness/offline_fixture.h"
#include "ui/window_fixture.h"

namespace tlpacscfg::test {
namespace {

using Texts = std::vector<std::wstring>;

class StandAloneWindowTest : public OfflineTest {
 protected:
  StandAloneWindowTest() {
    system::computerName = [] { return std::wstring(L"READ-08"); };
  }
  ~StandAloneWindowTest() override { DisconnectDatabase(); }

  std::shared_ptr<clsConfig> config_ = std::make_shared<clsConfig>();
};

TEST_F(StandAloneWindowTest, TheLocalComputerIsListedWithNoneAndNotAvailable) {
  ASSERT_TRUE(config_->Init());
  ASSERT_EQ(config_->m_colWorkstation->Item(1)->configID, 12);
  ASSERT_NE(config_->m_colPACSConfig->GetItemNumber(12), 0);
  const std::uint8_t code = showListWhile(config_, [](HWND window) {
    const HWND list = controlOf(window, IDC_frmPACSList_lvwPACSList);
    EXPECT_EQ(list_view::rowCount(list), 1);
    Texts row;
    for (int column = 0; column < 5; ++column) row.push_back(list_view::cell(list, 0, column));
    EXPECT_EQ(row, (Texts{L"1", L"READ-08", L"None", L"N/A", L"12"}));
    click(window, IDC_frmPACSList_btnOk);
  });
  EXPECT_EQ(code, 0);
  EXPECT_TRUE(messages.empty());
}

}  // namespace
}  // namespace tlpacscfg::test
