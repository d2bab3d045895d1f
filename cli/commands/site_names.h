#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "site/site.h"

namespace tlpacscfg::cli {

/// Finds workstations by name, and configurations by number or description, whatever the letter
/// case.
class SiteNames {
 public:
  explicit SiteNames(const Site& site);

  /// Null when there is none.
  const SiteWorkstation* workstation(const std::string& name) const;

  /// Those with the description; null when there is none.
  const std::vector<Site::Configuration>* described(std::wstring_view description) const;
  /// Several when they have the description.
  std::vector<Site::Configuration> configurations(const std::string& word) const;
  /// Null when there is none. Throws Failure when there are several.
  Site::Configuration find(const std::string& word) const;
  /// Throws Failure for the number of a configuration that cannot be read.
  void requireReadable(const std::string& word) const;
  /// Throws Failure unless there is one.
  Site::Configuration require(const std::string& word) const;

  std::string suggestWorkstation(const std::string& name) const;
  std::string suggestConfiguration(const std::string& word) const;

 private:
  const Site& site_;
  std::unordered_map<std::wstring, const SiteWorkstation*> workstations_;
  std::unordered_map<std::wstring, std::vector<Site::Configuration>> configurations_;
};

}  // namespace tlpacscfg::cli
