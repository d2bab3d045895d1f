#include <windows.h>

#include "support/directory.h"
#include "support/handle_win.h"
#include "support/text.h"

namespace tlpacscfg {
namespace {

using SearchHandle = UniqueHandle<HANDLE, &FindClose, kInvalidHandle>;

/// The system also reports names whose short alias matches.
bool endsInXml(const std::wstring& name) { return upperCase(name).ends_with(L".XML"); }

}  // namespace

std::vector<std::wstring> findXmlFiles(const std::wstring& directory) {
  std::vector<std::wstring> files;
  WIN32_FIND_DATAW found{};
  const SearchHandle search(FindFirstFileW((directory + L"\\*.XML").c_str(), &found));
  if (!search) return files;
  do {
    const std::wstring name = found.cFileName;
    const bool isDirectory = (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    if (!isDirectory && endsInXml(name)) files.push_back(name);
  } while (FindNextFileW(search.get(), &found));
  return files;
}

}  // namespace tlpacscfg
