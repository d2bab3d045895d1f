#include "cli/formats/replace_file.h"

namespace tlpacscfg::cli {

std::error_code replaceFile(const std::filesystem::path& file, std::string_view content,
                            Lasting lasting) {
  std::error_code ignored;
  if (exists(file, ignored) && !is_regular_file(file, ignored)) {
    return writeInPlace(file, content, Lasting::No);
  }
  std::filesystem::path unfinished = file;
  unfinished += ".new";
  if (const auto error = writeInPlace(unfinished, content, lasting)) return error;
  return moveOver(unfinished, file, lasting);
}

}  // namespace tlpacscfg::cli
