#include "host/site_access.h"

#include "data/data_path.h"
#include "data/direct_connections.h"
#include "data/mod_main.h"
#include "data/statements.h"
#include "data/tl_comm_client.h"
#include "harness/core_fixture.h"
#include "harness/errors.h"
#include "harness/fake_client.h"
#include "host/host_object.h"

namespace tlpacscfg::test {
namespace {

class SiteAccessTest : public SiteTest {
 protected:
  std::shared_ptr<clsConfig> initialised() {
    auto host = std::make_shared<clsConfig>();
    host->settings->SQLDSN = config.SQLDSN;
    host->settings->User_ID = 42;
    EXPECT_TRUE(host->Init());
    return host;
  }

  std::wstring count() { return *site.value(L"select count(*) from Interface_PACS_cfg"); }

  static void saveNumber(std::int16_t id) {
    clsPACSConfiguration record;
    record.configID = id;
    record.SaveConfiguration();
  }
};

TEST_F(SiteAccessTest, TheModuleStateOfAnotherObjectIsRestoredAfterwards) {
  const auto host = initialised();
  const auto other = std::make_shared<clsConfig>();
  ASSERT_FALSE(modMain.g_blnSqlConnected);
  saveNumber(1);
  EXPECT_EQ(count(), L"0") << "A host's own save goes nowhere now.";
  {
    const SiteAccess access(*host);
    EXPECT_EQ(modMain.g_objConfig, host->settings);
    saveNumber(2);
    EXPECT_EQ(count(), L"1");
  }
  EXPECT_FALSE(modMain.g_blnSqlConnected);
  EXPECT_EQ(modMain.g_objConfig, other->settings);
}

TEST_F(SiteAccessTest, APathThatAnotherObjectClosedIsReopened) {
  const auto host = initialised();
  DisconnectDatabase();
  {
    const SiteAccess access(*host);
    saveNumber(1);
    EXPECT_EQ(count(), L"1");
  }
  EXPECT_FALSE(modMain.g_blnSqlConnected);
  const SiteAccess again(*host);
  saveNumber(2);
  EXPECT_EQ(count(), L"2");
}

TEST_F(SiteAccessTest, APathThatCannotBeReopenedIsAnErrorAndTheNextTryWorks) {
  const auto host = initialised();
  DisconnectDatabase();
  host->path.settings.SQLDSN = L"TlMissingSite";
  registerDataSource(L"TlMissingSite", L"site");
  EXPECT_THROW(SiteAccess{*host}, RunTimeError);
  EXPECT_EQ(modMain.g_conSql, nullptr);
  EXPECT_FALSE(modMain.g_blnSqlConnected);
  host->path.settings.SQLDSN = L"TlTestSite";
  const SiteAccess access(*host);
  saveNumber(1);
  EXPECT_EQ(count(), L"1");
}

TEST_F(SiteAccessTest, TheOtherObjectKeepsItsSite) {
  const auto host = initialised();
  const auto other = initialised();
  const auto others = modMain.g_conSql;
  ASSERT_NE(host->path.connection, others);
  {
    const SiteAccess access(*host);
    EXPECT_NE(modMain.g_conSql, others);
    const SiteAccess nested(*host);
    EXPECT_NE(modMain.g_conSql, others);
  }
  EXPECT_EQ(modMain.g_conSql, others);
  EXPECT_EQ(modMain.g_objConfig, other->settings);
}

TEST_F(SiteAccessTest, ALostConnectionIsReplacedForTheHostToo) {
  const auto host = initialised();
  const auto lost = modMain.g_conSql;
  lost->close();
  EXPECT_THROW(ExecuteSQL(L"DELETE FROM Interface_PACS_cfg"), RunTimeError);
  { const SiteAccess access(*host); }
  EXPECT_NE(modMain.g_conSql, lost);
  EXPECT_TRUE(modMain.g_blnSqlConnected);
  saveNumber(1);
  EXPECT_EQ(count(), L"1");
}

TEST_F(SiteAccessTest, AnObjectInStandAloneModeWritesToNoOtherObjectsSite) {
  const auto host = std::make_shared<clsConfig>();
  host->path.standAlone = true;
  const auto other = initialised();
  const SiteAccess access(*host);
  EXPECT_FALSE(dataPath().executes());
  saveNumber(1);
  EXPECT_EQ(count(), L"0");
}

TEST_F(SiteAccessTest, ARemotePathThatWasClosedIsConnectedAgainWithItsOwnSettings) {
  const auto script = installFakeClient();
  modMain.g_blnTlCommClientEnabled = true;
  const auto host = std::make_shared<clsConfig>();
  host->settings->TlCommClientHostIP = L"10.0.0.1";
  host->settings->TlCommClientHostPort = L"7000";
  host->settings->TlCommClientTimeout = L"5";
  host->settings->SqlDbName = L"site";
  ASSERT_TRUE(host->Init());
  DisconnectDatabase();
  EXPECT_FALSE(TlCommClientConnected());
  script->calls.clear();
  {
    const SiteAccess access(*host);
    ASSERT_FALSE(script->calls.empty());
    EXPECT_EQ(script->calls[0], L"ConnectToService(TLPACSCFG.DLL, 10.0.0.1, 7000, 5)");
    ExecuteSQL(L"something");
    EXPECT_EQ(script->calls.back(), L"SQLExecuteText(site, something)");
  }
  EXPECT_FALSE(TlCommClientConnected());
  DisconnectTlCommClient();
  script->connects = false;
  host->path.client->disconnected = true;
  EXPECT_RUNTIME_ERROR(SiteAccess{*host}, 40002, L"The remote data client could not connect.");
}

TEST_F(SiteAccessTest, ANestedAccessChangesNothing) {
  const auto host = initialised();
  const auto other = std::make_shared<clsConfig>();
  const SiteAccess access(*host);
  {
    const SiteAccess nested(*host);
    EXPECT_TRUE(modMain.g_blnSqlConnected);
  }
  EXPECT_TRUE(modMain.g_blnSqlConnected);
  EXPECT_EQ(modMain.g_objConfig, host->settings);
}

TEST_F(SiteAccessTest, AnObjectThatIsInitialisedMeanwhileKeepsItsOwnPath) {
  const auto host = initialised();
  std::shared_ptr<clsConfig> other;
  {
    const SiteAccess access(*host);
    other = initialised();
  }
  EXPECT_EQ(modMain.g_conSql, other->path.connection);
  EXPECT_EQ(modMain.g_objConfig, other->settings);
}

}  // namespace
}  // namespace tlpacscfg::test
