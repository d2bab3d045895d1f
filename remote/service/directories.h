#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "service/options.h"

namespace tlpacscfg::service {

/// A directory that a client names: a shared one, and the path from there down, whose names follow
/// a backslash each.
struct Place {
  std::string root;
  std::wstring below;
};

/// The place below the deepest shared directory that holds it. Touches no file. Throws Refusal when
/// there is none.
Place placeOf(const std::vector<SharedDirectory>& shared, const std::wstring& clientPath);

struct FileQuery {
  Place place;
  std::wstring pattern;
  bool sorted = true;
  bool ignoreCase = true;
};

/// The names of the regular files in a directory that match the pattern. Throws Refusal, also for a
/// link that leads out of the root.
std::vector<std::wstring> listFiles(const FileQuery& query);

}  // namespace tlpacscfg::service
