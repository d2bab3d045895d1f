#pragma once

#include <string>

#include "cli/base/failure.h"
#include "cli/connection/connection_options.h"
#include "support/runtime_error.h"

namespace tlpacscfg::cli {

/// The site that the options name, in words and without passwords: the same for the same site.
/// Empty when they name none. Throws Failure.
std::string nameOfSite(const ConnectionOptions& options);

/// The password or token that the site needs, which may be asked for; empty for a site without one.
/// Throws Failure, also for options that name no site.
std::wstring secretOf(const ConnectionOptions& options);

/// The data path to a site: open while this exists. There is one at a time, as the core has one.
class SiteConnection {
 public:
  /// With the settings of the site that the options name. Throws Failure.
  explicit SiteConnection(const ConnectionOptions& options);
  SiteConnection(const ConnectionOptions& options, std::wstring secret);
  ~SiteConnection();
  SiteConnection(const SiteConnection&) = delete;
  SiteConnection& operator=(const SiteConnection&) = delete;
};

/// Throws Failure when the statements are more than the service takes in one request.
void requireFittingRequest(const ConnectionOptions& options, const std::wstring& sql);

/// An error of the data path that is open: the connection is lost, or the database refused.
Failure failureOf(const RunTimeError& error);

/// Opens the site, runs the work and closes the site. Throws Failure.
template <class Work>
auto onSite(const ConnectionOptions& options, Work work) {
  const SiteConnection connection(options);
  try {
    return work();
  } catch (const RunTimeError& error) {
    throw failureOf(error);
  }
}

/// Whether the XML files of the site's prompts directory can be listed.
bool knowsPromptFiles();

}  // namespace tlpacscfg::cli
