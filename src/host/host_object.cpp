#include "host/host_object.h"

#include "data/direct_connections.h"
#include "data/mod_main.h"
#include "data/row_error.h"
#include "data/tl_comm_client.h"
#include "host/version.h"
#include "log/log_support.h"
#include "support/ini_file.h"
#include "support/runtime_error.h"
#include "support/system.h"
#include "support/text.h"

namespace tlpacscfg {

clsConfig::clsConfig() {
  modMain.g_blnSqlConnected = false;
  modMain.g_objConfig = settings;
}

bool clsConfig::Init() {
  if (Initialized) return false;
  std::wstring step = L"Init failed";
  try {
    DisconnectDatabase();
    if (!openDataPath()) return false;
    m_colPACSConfig = std::make_shared<colPACSConfiguration>();
    step = L"Init failed to load Interface_PACS_cfg";
    m_colPACSConfig->GetPACSConfigurations();
    step = L"Init failed";
    m_colWorkstation = std::make_shared<colWorkstation>();
    if (modMain.g_blnUseOfflineDB) {
      m_colWorkstation->GetOfflineWorkstationInfo();
    } else {
      m_colWorkstation->GetWorkstationsList();
    }
    ReadNetworkRootDir();
    path = OpenedPath::ofModules(*settings);
    Initialized = true;
    return true;
  } catch (const std::exception& error) {
    // The host gets the result only; the log says why.
    const auto* const row = dynamic_cast<const RowError*>(&error);
    logFailure(row ? step + L", " + row->place() : step, describe(error));
    return false;
  }
}

bool clsConfig::openDataPath() {
  if (modMain.g_blnUseOfflineDB) return ConnectToOfflineDatabase(*settings);
  if (modMain.g_blnTlCommClientEnabled && ConnectTlCommClient(*settings)) return true;
  return ConnectToDatabase(*settings);
}

std::wstring clsConfig::Version() const {
  return decimal(kVersionMajor) + L"." + decimal(kVersionMinor) + L"." + decimal(kVersionRevision);
}

void ReadNetworkRootDir() {
  if (!modMain.g_objConfig || modMain.g_objConfig->Talora_INIFile.empty()) return;
  modMain.g_strNetworkRootDir =
      trimBlanks(readIniValue(modMain.g_objConfig->Talora_INIFile, L"System", L"NetworkRootDir"));
  if (modMain.g_strNetworkRootDir.empty()) {
    system::showMessage({.text = L"Error - NetworkRootDir was not specified in the TALORA.INI "
                                 L"Configuration file.",
                         .icon = system::Icon::Critical,
                         .modality = system::Modality::Application});
  }
}

}  // namespace tlpacscfg
