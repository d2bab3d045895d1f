#include "data/host_settings.h"

namespace tlpacscfg {

bool g_blnUseOfflineDB = false;
bool g_blnTlCommClientEnabled = false;
std::wstring g_strLocalTaloraDir;
std::wstring g_strOfflineDbPath;
std::wstring g_strNetworkRootDir;
std::shared_ptr<HostSettings> g_objConfig;

void setLocalTaloraDirectory(const std::wstring& directory) {
  g_strLocalTaloraDir = directory;
  g_strOfflineDbPath = directory + L"\\OFFLINE\\SYSTEM.MDB";
}

}  // namespace tlpacscfg
