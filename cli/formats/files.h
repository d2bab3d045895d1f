#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace tlpacscfg::cli {

/// The path of a UTF-8 text.
std::filesystem::path pathOf(std::string_view utf8);
std::string utf8Of(const std::filesystem::path& path);

/// The whole content; "-" reads standard input. Throws Failure.
std::string readFile(const std::string& file);

/// Replaces the file as a whole: a reader sees the old content or the new. Throws Failure.
void writeFile(const std::filesystem::path& file, std::string_view content);

}  // namespace tlpacscfg::cli
