#include "automation/com_class.h"
#include "automation/member_table.h"
#include "com/identities.h"
#include "data/host_settings.h"
#include "data/mod_main.h"
#include "host/host_object.h"
#include "log/log_support.h"
#include "support/conversions.h"
#include "support/text.h"
#include "ui/show_form/show_form.h"

namespace tlpacscfg {
namespace {

/// A property with one value for each object.
template <class Value>
auto setting(Value HostSettings::*member) {
  return [member](clsConfig& config) -> Value& { return (*config.settings).*member; };
}

/// A property with one value for all objects.
template <class Value>
auto shared(Value& variable) {
  return [&variable](clsConfig&) -> Value& { return variable; };
}

std::vector<Member> configMembers() {
  using Configurations = std::shared_ptr<colPACSConfiguration>;
  using Workstations = std::shared_ptr<colWorkstation>;
  const auto setConfigurations = [](clsConfig& config, Configurations configurations) {
    config.m_colPACSConfig = std::move(configurations);
  };
  const auto setWorkstations = [](clsConfig& config, Workstations workstations) {
    config.m_colWorkstation = std::move(workstations);
  };
  return MemberTable<clsConfig>()
      .get(L"TlCommClientEnabled", 1,
           [](clsConfig&) { return std::wstring(truthWord(modMain.g_blnTlCommClientEnabled)); })
      .put(L"TlCommClientEnabled", 1,
           [](clsConfig&, const std::wstring& v_blnEnabled) {
             modMain.g_blnTlCommClientEnabled = toBoolean(v_blnEnabled);
           })
      .field(L"TlCommClientHostIP", 2, setting(&HostSettings::TlCommClientHostIP))
      .field(L"TlCommClientHostPort", 3, setting(&HostSettings::TlCommClientHostPort))
      .field(L"TlCommClientTimeout", 4, setting(&HostSettings::TlCommClientTimeout))
      .get(L"colWS", 5, [](clsConfig& config) { return config.m_colWorkstation; })
      .get(L"colPACSConfig", 6, [](clsConfig& config) { return config.m_colPACSConfig; })
      .putRef(L"colPACSConfig", 6, setConfigurations)
      .get(L"m_colPACSConfig", 7, [](clsConfig& config) { return config.m_colPACSConfig; })
      .put(L"m_colPACSConfig", 7, setConfigurations)
      .putRef(L"m_colPACSConfig", 7, setConfigurations)
      .get(L"m_colWorkstation", 8, [](clsConfig& config) { return config.m_colWorkstation; })
      .put(L"m_colWorkstation", 8, setWorkstations)
      .putRef(L"m_colWorkstation", 8, setWorkstations)
      .field(L"ConfigLoaded", 9, &clsConfig::ConfigLoaded)
      .field(L"User_ID", 10, setting(&HostSettings::User_ID))
      .field(L"DebugMode", 11, shared(modLogSupport.g_intDebugMode))
      .field(L"LogFile", 12, shared(modLogSupport.g_strLogFile))
      .field(L"Initialized", 13, &clsConfig::Initialized)
      .field(L"SqlServerName", 14, setting(&HostSettings::SqlServerName))
      .secret(L"Password", 15, setting(&HostSettings::Password))
      .field(L"SqlUserName", 16, setting(&HostSettings::SqlUserName))
      .field(L"SqlDbName", 17, setting(&HostSettings::SqlDbName))
      .field(L"SQLDSN", 18, setting(&HostSettings::SQLDSN))
      .field(L"SqlTimeout", 19, setting(&HostSettings::SqlTimeout))
      .field(L"Dynamic_DataSource", 20, setting(&HostSettings::Dynamic_DataSource))
      .field(L"Talora_INIFile", 21, setting(&HostSettings::Talora_INIFile))
      .field(L"UseOfflineDB", 22, shared(modMain.g_blnUseOfflineDB))
      .get(L"LocalTaloraDirectory", 23, [](clsConfig&) { return modMain.g_strLocalTaloraDir; })
      .put(L"LocalTaloraDirectory", 23,
           [](clsConfig&, const std::wstring& p_strLocalTaloraDir) {
             setLocalTaloraDirectory(p_strLocalTaloraDir);
           })
      .method(L"Init", 24, {}, &clsConfig::Init)
      .method(L"ShowForm", 25, {},
              [](const std::shared_ptr<clsConfig>& config) { return ShowForm(config); })
      .method(L"Version", 26, {}, &clsConfig::Version)
      .members();
}

}  // namespace

template <>
const ComClass& comClassOf<clsConfig>() {
  static const ComClass type{CLSID_clsConfig, DIID__clsConfig, configMembers()};
  return type;
}

}  // namespace tlpacscfg
