#include <filesystem>
#include <fstream>
#include <iterator>

#include "support/ini_file.h"
#include "support/text.h"

namespace tlpacscfg {

std::wstring readIniValue(const std::wstring& file, const std::wstring& section,
                          const std::wstring& key) {
  constexpr std::size_t kBufferCharacters = 128;
  std::ifstream stream(std::filesystem::path(toUtf8(file)), std::ios::binary);
  const std::string bytes{std::istreambuf_iterator<char>(stream), {}};
  return findIniValue(fromUtf8(bytes), section, key).substr(0, kBufferCharacters - 1);
}

}  // namespace tlpacscfg
