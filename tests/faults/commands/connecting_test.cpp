#include "faults/commands/odbc_calls.h"
#include "harness/core_fixture.h"
#include "odbc/connection.h"

namespace tlpacscfg::test {
namespace {

class ConnectingTest : public SiteTest {};

TEST_F(ConnectingTest, ADriverManagerWithoutACursorLibraryConnectsAllTheSame) {
  const RefusedConnectAttribute hint(SQL_ATTR_ODBC_CURSORS);
  for (const auto library : {odbc::CursorLibrary::NotUsed, odbc::CursorLibrary::Used}) {
    odbc::Connection connection(
        std::make_shared<odbc::Environment>(library, std::chrono::seconds(5)), L"TlTestSite",
        odbc::Prompt::Never, L"");
    EXPECT_EQ(connection.query(L"SELECT 'read'").at(0, 0), L"read");
  }
  EXPECT_EQ(hint.refusals(), 2);
}

}  // namespace
}  // namespace tlpacscfg::test
