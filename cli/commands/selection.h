#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "cli/formats/output.h"
#include "config/columns.h"
#include "site/site.h"

/// What the words of a command line mean in a site.
namespace tlpacscfg::cli {

/// readSite, on a terminal with its progress.
Site loadSite();

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

/// Rows for a listing of workstations with their configurations.
Listing listingOf(const Site& site, const std::vector<const SiteWorkstation*>& workstations);

/// Says on standard error which configurations of the site cannot be read. True when there are any.
bool reportUnreadable(const Site& site);

}  // namespace tlpacscfg::cli
