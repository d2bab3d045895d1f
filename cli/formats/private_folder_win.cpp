#include <string>

#include "cli/base/failure.h"
#include "cli/base/process.h"
#include "cli/base/system_reason.h"
#include "cli/formats/files.h"
#include "cli/formats/private_folder.h"

namespace tlpacscfg::cli {

// The temporary files of a user lie in the profile, which others cannot open.
std::filesystem::path makePrivateFolder() {
  const std::string process = std::to_string(processId());
  for (int attempt = 1;; ++attempt) {
    std::filesystem::path folder = std::filesystem::temp_directory_path() /
                                   ("tlpacscfg-" + process + "-" + std::to_string(attempt));
    std::error_code error;
    if (create_directory(folder, error)) return folder;
    if (!error) continue;
    throw Failure(ExitCode::Usage,
                  "No folder '" + utf8Of(folder) + "' can be made: " + systemReason(error) + ".");
  }
}

}  // namespace tlpacscfg::cli
