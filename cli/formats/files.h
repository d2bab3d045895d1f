#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "cli/formats/replace_file.h"

namespace tlpacscfg::cli {

/// The path of a UTF-8 text.
std::filesystem::path pathOf(std::string_view utf8);
std::string utf8Of(const std::filesystem::path& path);

/// The whole content without a byte order mark; "-" reads standard input. Throws Failure.
std::string readFile(const std::string& file);

/// Replaces the file as a whole. Throws Failure with the system's reason.
void writeFile(const std::filesystem::path& file, std::string_view content,
               Lasting lasting = Lasting::No);

}  // namespace tlpacscfg::cli
