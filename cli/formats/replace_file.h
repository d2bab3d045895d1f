#pragma once

#include <filesystem>
#include <string_view>
#include <system_error>

namespace tlpacscfg::cli {

/// Whether a file is there after a failure of the power, too.
enum class Lasting { No, Yes };

/// Replaces the file as a whole: a reader sees the old content or the new, also when the system
/// fails meanwhile. What is no regular file, such as a pipe, gets the content in place.
std::error_code replaceFile(const std::filesystem::path& file, std::string_view content,
                            Lasting lasting);

/// Lets a folder that was made now last, and those that it lies in.
void makeFolderLast(const std::filesystem::path& folder);

// What replaceFile does differs between the systems in these.
std::error_code writeInPlace(const std::filesystem::path& file, std::string_view content,
                             Lasting lasting);
std::error_code moveOver(const std::filesystem::path& from, const std::filesystem::path& to,
                         Lasting lasting);

}  // namespace tlpacscfg::cli
