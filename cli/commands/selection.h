#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "config/columns.h"
#include "site/site.h"

/// What the words of a command line mean in a site.
namespace tlpacscfg::cli {

/// Whether the text fits the pattern, in which * stands for any letters and ? for one, whatever the
/// letter case.
bool fits(std::wstring_view text, std::wstring_view pattern);
bool isPattern(std::string_view word);

/// "FIELD=VALUE": the field has the value, given as text, code or words. Text may be a pattern.
class FieldFilter {
 public:
  /// Throws Failure.
  explicit FieldFilter(const std::string& condition);

  bool accepts(const clsPACSConfiguration& record) const;

 private:
  const Column& column_;
  std::wstring pattern_;
  FieldValue value_;
};

/// The workstations that have one of the names or fit one of the patterns, each once, in the order
/// of the site; all of them when there are no words. Throws Failure for a word that fits none.
std::vector<const SiteWorkstation*> selectWorkstations(const Site& site,
                                                       const std::vector<std::string>& words);

/// The configurations of the numbers, descriptions and patterns that also satisfy every condition
/// "FIELD=VALUE", each once. Without a word and a condition there is none. Throws Failure for a
/// word that fits none, and when none is left.
std::vector<Site::Configuration> selectConfigurations(const Site& site,
                                                      const std::vector<std::string>& words,
                                                      const std::vector<std::string>& conditions);

}  // namespace tlpacscfg::cli
