#include "ui/workstation_list/values/assignment_question.h"

#include <gtest/gtest.h>

namespace tlpacscfg::test {
namespace {

TEST(AssignmentQuestionTest, EachConflictHasALine) {
  EXPECT_EQ(conflictQuestion({{L"PC1", 7, L"0"}, {L"PC2", 0, L""}}, nullptr),
            L"Somebody else reassigned workstations that were reassigned here too:\r\n"
            L"PC1: here 7, stored None\r\n"
            L"PC2: here None, stored removed\r\n"
            L"Save the assignments made here? No keeps the stored ones.");
}

TEST(AssignmentQuestionTest, UpToFiveConflictsAreNamedAndFurtherOnesCounted) {
  std::vector<AssignmentConflict> conflicts(5, {L"PC1", 1, L"0"});
  EXPECT_EQ(conflictQuestion(conflicts, nullptr).find(L" more"), std::wstring::npos);
  conflicts.push_back({L"PC6", 1, L"0"});
  EXPECT_NE(conflictQuestion(conflicts, nullptr).find(L"\r\nand 1 more\r\n"), std::wstring::npos);
}

}  // namespace
}  // namespace tlpacscfg::test
