#include <windows.h>

#include "support/directory.h"
#include "support/handle_win.h"
#include "support/text.h"

namespace tlpacscfg {
namespace {

class FileSearch {
 public:
  explicit FileSearch(const std::wstring& pattern)
      : handle_(FindFirstFileW(pattern.c_str(), &found_)) {}
  ~FileSearch() {
    if (*this) FindClose(handle_);
  }
  FileSearch(const FileSearch&) = delete;
  FileSearch& operator=(const FileSearch&) = delete;

  explicit operator bool() const { return handle_ != INVALID_HANDLE_VALUE; }
  const WIN32_FIND_DATAW& found() const { return found_; }
  bool next() { return FindNextFileW(handle_, &found_) != FALSE; }

 private:
  WIN32_FIND_DATAW found_{};
  HANDLE handle_;
};

/// The system also reports names whose short alias matches.
bool endsInXml(const std::wstring& name) { return upperCase(name).ends_with(L".XML"); }

}  // namespace

std::vector<std::wstring> findXmlFiles(const std::wstring& directory) {
  std::vector<std::wstring> files;
  FileSearch search(directory + L"\\*.XML");
  if (!search) return files;
  do {
    const std::wstring name = search.found().cFileName;
    const bool isDirectory = (search.found().dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    if (!isDirectory && endsInXml(name)) files.push_back(name);
  } while (search.next());
  return files;
}

}  // namespace tlpacscfg
