#include "service/journal.h"

#include <gtest/gtest.h>

namespace tlpacscfg::test {
namespace {

TEST(JournalTest, AnEventWithoutFieldsIsOneField) {
  EXPECT_EQ(service::journalText("stopping", {}), "event=stopping");
}

TEST(JournalTest, AValueThatIsNoPlainWordIsQuoted) {
  const struct {
    const char* value;
    const char* shown;
  } cases[] = {
      {"192.0.2.1", "192.0.2.1"},
      {"https://[2001:db8::1]:8443", "https://[2001:db8::1]:8443"},
      {"", R"("")"},
      {"too slow", R"("too slow")"},
      {"a=b", R"("a=b")"},
      {R"(a"b)", R"("a\"b")"},
      {R"(a\b)", R"("a\\b")"},
      {"a\r\nevent=forged", R"("a\x0d\x0aevent=forged")"},
      {"\x1b[0m\x7f", R"("\x1b[0m\x7f")"},
      {"Gr\u00fc\u00dfe", "\"Gr\u00fc\u00dfe\""},
  };
  for (const auto& [value, shown] : cases) {
    EXPECT_EQ(service::journalText("x", {{"name", value}, {"next", "1"}}),
              std::string("event=x name=") + shown + " next=1");
  }
}

}  // namespace
}  // namespace tlpacscfg::test
