#include "ui/workstation_list/values/assignment_question.h"

#include <gtest/gtest.h>

namespace tlpacscfg::test {
namespace {

TEST(AssignmentQuestionTest, UpToFiveConflictsAreNamedAndFurtherOnesCounted) {
  std::vector<AssignmentConflict> conflicts(5, {L"PC1", 1, L"0"});
  EXPECT_EQ(conflictQuestion(conflicts, nullptr).find(L" more"), std::wstring::npos);
  conflicts.push_back({L"PC6", 1, L"0"});
  EXPECT_NE(conflictQuestion(conflicts, nullptr).find(L"\r\nand 1 more\r\n"), std::wstring::npos);
}

}  // namespace
}  // namespace tlpacscfg::test
