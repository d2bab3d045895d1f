#include "ui/accessible_names.h"

#include <gmock/gmock.h>

#include <commctrl.h>

namespace tlpacscfg::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using Controls = std::vector<ControlFacts>;

constexpr DWORD kTabStop = WS_VISIBLE | WS_TABSTOP;
constexpr DWORD kFrame = WS_VISIBLE | SS_ETCHEDFRAME;

std::vector<std::wstring> namesOf(const Controls& controls) {
  std::vector<std::wstring> names;
  for (std::size_t i = 0; i < controls.size(); ++i) names.push_back(accessibleName(controls, i));
  return names;
}

TEST(AccessibleNameTest, AButtonAndATextAreNamedByTheirOwnTexts) {
  EXPECT_THAT(namesOf({{L"Button", L"&Save"}, {L"Static", L"Port"}, {L"#32770", L"General"}}),
              ElementsAre(L"Save", L"Port", L"General"));
}

TEST(AccessibleNameTest, AFieldIsNamedByTheTextBeforeIt) {
  EXPECT_THAT(namesOf({{L"Static", L"&Port"}, {L"Edit", L"104", kTabStop}}),
              ElementsAre(L"Port", L"Port"));
  EXPECT_THAT(namesOf({{L"Static", L"Hidden", 0}, {L"ComboBox", L"", kTabStop}}),
              ElementsAre(L"Hidden", L"Hidden"));
}

TEST(AccessibleNameTest, AFieldHasNoNameWhenAnotherTabStopOrGroupComesFirst) {
  EXPECT_THAT(
      namesOf({{L"Static", L"Port"}, {L"Edit", L"", kTabStop}, {WC_LISTVIEWW, L"", kTabStop}}),
      ElementsAre(L"Port", L"Port", L""));
  EXPECT_THAT(
      namesOf({{L"Static", L"Port"}, {L"Button", L"On", WS_VISIBLE | WS_GROUP}, {L"Edit", L""}}),
      ElementsAre(L"Port", L"On", L""));
  EXPECT_THAT(namesOf({{L"Static", L"Port"}, {L"Edit", L"", WS_TABSTOP}, {L"Edit", L""}}),
              ElementsAre(L"Port", L"Port", L"Port"));
  EXPECT_THAT(namesOf({{L"Edit", L"text"}}), ElementsAre(L""));
}

TEST(AccessibleNameTest, AnAnnotationReplacesEveryOtherName) {
  EXPECT_THAT(namesOf({{L"Button", L"User", kTabStop, L"Corvane User"},
                       {L"Static", L"", kFrame, L"Corvane"}}),
              ElementsAre(L"Corvane User", L"Corvane"));
}

TEST(AccessibleNameTest, EmptyAndEqualNamesAreProblems) {
  EXPECT_THAT(nameProblems({{{L"Static", L"Port"}, {L"Edit", L""}, {L"Button", L"OK"}}}),
              IsEmpty());
  EXPECT_THAT(nameProblems({{{L"Edit", L""}, {L"Static", L"", kFrame}}}), SizeIs(2));
  EXPECT_THAT(nameProblems({{{L"Edit", L"", 0}}}), IsEmpty());
  EXPECT_THAT(nameProblems({{{L"Button", L"User Name"}, {L"Button", L"&UserName"}}}), SizeIs(1));
  EXPECT_THAT(nameProblems({{{L"Button", L"OK"}}, {{L"Button", L"OK"}}}), SizeIs(1));
}

}  // namespace
}  // namespace tlpacscfg::test
