#include "ui/assignment/editor/assignment_editor.h"

#include <gtest/gtest.h>

#include "harness/core_fixture.h"
#include "support/runtime_error.h"

namespace tlpacscfg::test {
namespace {

class AssignmentEditorTest : public SiteTest {
 protected:
  void open(std::int16_t configID) {
    addConfiguration(1, L"description = 'Default & more'");
    addConfiguration(5, L"description = 'Five'");
    addWorkstation(L"A&B");
    connect();
    host->m_colPACSConfig = std::make_shared<colPACSConfiguration>();
    host->m_colPACSConfig->GetPACSConfigurations();
    host->m_colWorkstation = std::make_shared<colWorkstation>();
    host->m_colWorkstation->GetWorkstationsList();
    editor.turnTo(L"A&B", configID);
    editor.LoadList();
  }

  std::shared_ptr<clsConfig> host = std::make_shared<clsConfig>();
  AssignmentEditor editor{host};
};

TEST_F(AssignmentEditorTest, OffersNoneAndEveryConfigurationButThePlaceholder) {
  open(5);
  EXPECT_EQ(editor.choices(), (std::vector<ConfigurationChoice>{
                                  {0, L"<None>"}, {1, L"1 - Default & more"}, {5, L"5 - Five"}}));
}

TEST_F(AssignmentEditorTest, SelectsTheWorkstationsConfigurationNoneOrNothing) {
  open(5);
  EXPECT_EQ(2, editor.position());
  editor.turnTo(L"A&B", 0);
  EXPECT_EQ(0, editor.position());
  editor.turnTo(L"A&B", 7);
  EXPECT_EQ(-1, editor.position());
}

TEST_F(AssignmentEditorTest, SelectsTheLastOfTwoConfigurationsToWhichAHostGaveOneIdentifier) {
  open(5);
  (*host->m_colPACSConfig->ColPACSConfigs->items().begin())->configID = 5;
  editor.LoadList();
  ASSERT_EQ(4U, editor.choices().size());
  EXPECT_EQ(5, editor.choices()[1].configID);
  EXPECT_EQ(3, editor.position());
}

TEST_F(AssignmentEditorTest, AnAssignmentIsMadeInTheCollectionAndNotWritten) {
  open(0);
  editor.assign(5);
  EXPECT_EQ(5, host->m_colWorkstation->Item(1)->configID);
  editor.assign(0);
  EXPECT_EQ(0, host->m_colWorkstation->Item(1)->configID);
  EXPECT_EQ(L"0", site.value(L"select count(*) from System_workstation_cfg"));
}

TEST_F(AssignmentEditorTest, AWorkstationThatIsGoneCannotBeAssigned) {
  open(0);
  editor.turnTo(L"PC-9", 0);
  EXPECT_THROW(editor.assign(5), RunTimeError);
}

}  // namespace
}  // namespace tlpacscfg::test
