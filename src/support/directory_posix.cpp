#include <algorithm>
#include <filesystem>
#include <system_error>

#include "support/directory.h"
#include "support/text.h"

namespace tlpacscfg {

std::vector<std::wstring> findXmlFiles(const std::wstring& directory) {
  std::string path = toUtf8(directory);
  std::replace(path.begin(), path.end(), '\\', '/');
  std::vector<std::wstring> files;
  std::error_code ignored;
  const auto end = std::filesystem::directory_iterator();
  for (auto entry = std::filesystem::directory_iterator(path, ignored); entry != end;
       entry.increment(ignored)) {
    std::wstring name = fromUtf8(entry->path().filename().string());
    if (!entry->is_regular_file(ignored) || !upperCase(name).ends_with(L".XML")) continue;
    files.push_back(std::move(name));
  }
  std::sort(files.begin(), files.end());
  return files;
}

}  // namespace tlpacscfg
