#include <cerrno>
#include <cstdlib>

#include "cli/base/failure.h"
#include "cli/base/system_reason.h"
#include "cli/formats/private_folder.h"

namespace tlpacscfg::cli {

std::filesystem::path makePrivateFolder() {
  std::string folder = (std::filesystem::temp_directory_path() / "tlpacscfg-XXXXXX").string();
  if (mkdtemp(folder.data()) != nullptr) return folder;
  throw Failure(ExitCode::Usage, "No folder '" + folder + "' can be made: " +
                                     systemReason({errno, std::generic_category()}) + ".");
}

}  // namespace tlpacscfg::cli
