#include "data/mod_main.h"
#include "faults/commands/odbc_calls.h"
#include "harness/core_fixture.h"
#include "harness/offline_fixture.h"
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

TEST_F(ConnectingTest, TheDatabaseServerNeverAsksTheUser) {
  config.SqlUserName = L"anna";
  config.Password = L"secret";
  connect();
  EXPECT_EQ(lastConnectCall().text, L"DSN=TlTestSite;UID=anna;PWD=secret;APP=TLPACSCFG.DLL;");
  EXPECT_EQ(lastConnectCall().completion, SQL_DRIVER_NOPROMPT);
}

using OfflineConnectingTest = OfflineTest;

TEST_F(OfflineConnectingTest, TheDriverOfTheAccessFileMayAskForWhatIsMissing) {
  connectOffline();
  EXPECT_EQ(lastConnectCall().text,
            L"UID=;PWD=;DRIVERID=25;Driver={Microsoft Access Driver (*.mdb)};DBQ=" +
                modMain.g_strOfflineDbPath + L";");
  EXPECT_EQ(lastConnectCall().completion, SQL_DRIVER_COMPLETE);
}

}  // namespace
}  // namespace tlpacscfg::test
