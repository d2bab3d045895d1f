#include "support/trimmed_line.h"

#include <gtest/gtest.h>

namespace tlpacscfg::test {
namespace {

TEST(TrimmedLineTest, BlanksTabsAndCarriageReturnsAreDroppedAtBothEnds) {
  const std::pair<std::string_view, std::string_view> cases[] = {
      {"", ""},           {" \t\r", ""}, {"a", "a"}, {" \ta b\r", "a b"}, {"a\t \r b", "a\t \r b"},
      {"\na\v", "\na\v"},
  };
  for (const auto& [line, trimmed] : cases) EXPECT_EQ(trimmedLine(line), trimmed);
}

}  // namespace
}  // namespace tlpacscfg::test
