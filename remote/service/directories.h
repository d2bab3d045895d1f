#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "service/options.h"

namespace tlpacscfg::service {

struct FileQuery {
  std::wstring directory;
  std::wstring pattern;
  bool sorted = true;
  bool ignoreCase = true;
};

/// The names of the regular files in a directory that match the pattern. Throws Refusal for a
/// directory that is not shared or below a shared one.
std::vector<std::wstring> listFiles(const std::vector<SharedDirectory>& shared,
                                    const FileQuery& query);

/// Whether the whole name matches the pattern: * any characters, ? one character.
bool matchesPattern(std::wstring_view name, std::wstring_view pattern);

}  // namespace tlpacscfg::service
