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

/// The names of the plain files in a directory that match the pattern. Only shared directories and
/// what lies below them can be listed; everything else throws Refusal.
std::vector<std::wstring> listFiles(const std::vector<SharedDirectory>& shared,
                                    const FileQuery& query);

/// Whether the whole name fits a pattern in which * stands for any characters and ? for one.
bool matchesPattern(std::wstring_view name, std::wstring_view pattern);

}  // namespace tlpacscfg::service
