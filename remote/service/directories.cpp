#include "service/directories.h"

#include <algorithm>
#include <span>
#include <system_error>
#include <utility>

#include "service/refusal.h"
#include "support/pattern.h"
#include "support/text.h"

namespace tlpacscfg::service {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kMaxPatternLength = 255;
constexpr std::size_t kMaxDepth = 64;

[[noreturn]] void unknownDirectory() {
  throw Refusal(http_status::kFailed, "The directory is not shared or does not exist.");
}

/// The names in a path. Both kinds of slash separate them; repeated ones count once.
std::vector<std::wstring> namesIn(std::wstring path) {
  std::replace(path.begin(), path.end(), L'/', L'\\');
  std::vector<std::wstring> names;
  for (const std::wstring_view name : split(path, L'\\')) {
    if (!name.empty()) names.emplace_back(name);
  }
  return names;
}

bool isPlainName(const std::wstring& name) {
  return name != L"." && name != L".." && name.find(L':') == name.npos;
}

/// The entry of that name, else the only one whose name differs in letter case only.
fs::path childOf(const fs::path& directory, const std::wstring& name) {
  std::error_code error;
  fs::path exact = directory / toUtf8(name);
  if (fs::exists(exact, error)) return exact;
  fs::path found;
  for (fs::directory_iterator entry(directory, error), end; !error && entry != end;
       entry.increment(error)) {
    if (!equalIgnoringCase(fromUtf8(entry->path().filename().string()), name)) continue;
    if (!found.empty()) unknownDirectory();
    found = entry->path();
  }
  if (found.empty()) unknownDirectory();
  return found;
}

bool isBelow(const fs::path& path, const fs::path& root) {
  const auto [rootEnd, ignored] = std::mismatch(root.begin(), root.end(), path.begin(), path.end());
  return rootEnd == root.end();
}

/// The directory at the place. Refuses a link that leads out of the root.
fs::path follow(const Place& place) {
  std::error_code error;
  const fs::path top = fs::canonical(place.root, error);
  if (error) unknownDirectory();
  fs::path directory = top;
  for (const std::wstring& name : namesIn(place.below)) {
    directory = fs::canonical(childOf(directory, name), error);
    if (error || !isBelow(directory, top)) unknownDirectory();
  }
  if (!fs::is_directory(directory, error)) unknownDirectory();
  return directory;
}

}  // namespace

Place placeOf(const std::vector<SharedDirectory>& shared, const std::wstring& clientPath) {
  const std::vector<std::wstring> names = namesIn(clientPath);
  if (names.size() > kMaxDepth) unknownDirectory();
  const SharedDirectory* best = nullptr;
  std::size_t depth = 0;
  for (const SharedDirectory& directory : shared) {
    const std::vector<std::wstring> prefix = namesIn(fromUtf8(directory.clientPath));
    const bool holds = prefix.size() <= names.size() &&
                       std::equal(prefix.begin(), prefix.end(), names.begin(), equalIgnoringCase);
    if (holds && (best == nullptr || prefix.size() > depth)) {
      best = &directory;
      depth = prefix.size();
    }
  }
  if (best == nullptr) unknownDirectory();
  Place place{best->localPath.string(), {}};
  for (const std::wstring& name : std::span(names).subspan(depth)) {
    if (!isPlainName(name)) unknownDirectory();
    place.below += L'\\' + name;
  }
  return place;
}

std::vector<std::wstring> listFiles(const FileQuery& query) {
  const bool plainPattern = query.pattern.find_first_of(L"\\/") == query.pattern.npos;
  if (query.pattern.empty() || query.pattern.size() > kMaxPatternLength || !plainPattern) {
    throw Refusal(http_status::kFailed, "The pattern is not one for file names.");
  }
  const auto folded = [&](std::wstring_view text) {
    return query.ignoreCase ? upperCase(text) : std::wstring(text);
  };
  // On Windows *.* matches every file, also one without an extension.
  const std::wstring pattern = query.pattern == L"*.*" ? L"*" : folded(query.pattern);

  std::vector<std::wstring> names;
  std::error_code error;
  const fs::path directory = follow(query.place);
  for (fs::directory_iterator entry(directory, error), end; !error && entry != end;
       entry.increment(error)) {
    std::error_code unreadable;
    if (!fs::is_regular_file(entry->symlink_status(unreadable))) continue;
    std::wstring name = fromUtf8(entry->path().filename().string());
    if (matchesPattern(folded(name), pattern)) names.push_back(std::move(name));
  }
  if (error) throw Refusal(http_status::kFailed, "The directory cannot be read.");
  if (query.sorted) {
    std::sort(names.begin(), names.end(), [&](const auto& first, const auto& second) {
      return std::pair(folded(first), first) < std::pair(folded(second), second);
    });
  }
  return names;
}

}  // namespace tlpacscfg::service
