#include <gmock/gmock.h>

#include <oleacc.h>

#include "ui/accessible_names.h"
#include "ui/settings/view/settings_fixture.h"

namespace tlpacscfg::test {
namespace {

using ::testing::IsEmpty;

class WindowNamesTest : public SettingsTest {
 protected:
  RecordedAnnotations annotations_;
};

TEST_F(WindowNamesTest, EveryControlOfTheListAndOfTheAssignmentHasANameOfItsOwn) {
  makeSite();
  initialise();
  showWhile([this](HWND list) {
    const std::vector<ControlFacts> facts = factsOf(list, annotations_);
    EXPECT_THAT(nameProblems({facts}), IsEmpty());
    EXPECT_EQ(accessibleName(facts, 1), L"Display:");
    EXPECT_EQ(accessibleName(facts, 3), L"Workstations");

    click(list, IDC_frmPACSList_cmdEditWorkstation);
    const HWND assignment = windowNamed(L"Workstation Setting");
    EXPECT_THAT(nameProblems({factsOf(assignment, annotations_)}), IsEmpty());
    EXPECT_EQ(annotations_.roleOf(controlOf(assignment, IDC_frmWorkstationSettings_SSPanel1)),
              ROLE_SYSTEM_GROUPING);
    click(list, IDC_frmPACSList_btnOk);
  });
  EXPECT_EQ(annotations_.count(), 0U);
}

}  // namespace
}  // namespace tlpacscfg::test
