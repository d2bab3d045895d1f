#include "ui/settings/values/settings_files.h"

#include "data/data_path.h"
#include "data/mod_main.h"
#include "support/text.h"

namespace tlpacscfg {

std::vector<std::wstring> promptXmlFiles() {
  std::vector<std::wstring> files =
      dataPath().xmlFiles(modMain.g_strNetworkRootDir + L"\\TALORA\\PROMPTS");
  std::erase_if(files, [](const std::wstring& name) {
    return equalIgnoringCase(name, L"SiteWindowCfg.xml") ||
           equalIgnoringCase(name, L"SysWindowCfg.xml");
  });
  return files;
}

}  // namespace tlpacscfg
