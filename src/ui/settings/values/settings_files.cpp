#include "ui/settings/values/settings_files.h"

#include "data/host_settings.h"
#include "data/tl_comm_client.h"
#include "support/text.h"

namespace tlpacscfg {

std::vector<std::wstring> offeredXmlFiles(std::vector<std::wstring> files) {
  std::erase_if(files, [](const std::wstring& name) {
    return equalIgnoringCase(name, L"SiteWindowCfg.xml") ||
           equalIgnoringCase(name, L"SysWindowCfg.xml");
  });
  return files;
}

std::vector<std::wstring> promptXmlFiles() {
  const std::wstring directory = g_strNetworkRootDir + L"\\TALORA\\PROMPTS";
  if (!TlCommClientConnected()) return offeredXmlFiles(findXmlFiles(directory));
  std::vector<std::wstring> files;
  if (!TlCommClientGetFileList(directory, L"*.XML", files)) return {};
  return offeredXmlFiles(std::move(files));
}

}  // namespace tlpacscfg
