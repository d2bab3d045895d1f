#include "cli/formats/files.h"

#include <cerrno>
#include <fstream>
#include <iostream>
#include <iterator>
#include <sstream>
#include <utility>

#include "cli/base/failure.h"
#include "cli/base/system_reason.h"

namespace tlpacscfg::cli {

std::filesystem::path pathOf(std::string_view utf8) {
  return {std::u8string(utf8.begin(), utf8.end())};
}

std::string utf8Of(const std::filesystem::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

namespace {

std::string withoutByteOrderMark(std::string content) {
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  if (content.starts_with(kByteOrderMark)) content.erase(0, kByteOrderMark.size());
  return content;
}

}  // namespace

std::string readFile(const std::string& file) {
  if (file == "-") return withoutByteOrderMark({std::istreambuf_iterator<char>(std::cin), {}});
  std::error_code ignored;
  std::ifstream stream(pathOf(file), std::ios::binary);
  if (!stream || std::filesystem::is_directory(pathOf(file), ignored)) {
    const int reason = stream ? EISDIR : errno;
    throw Failure(ExitCode::Usage, "The file '" + file + "' cannot be read: " +
                                       systemReason({reason, std::generic_category()}) + ".");
  }
  std::ostringstream content;
  content << stream.rdbuf();
  return withoutByteOrderMark(std::move(content).str());
}

void writeFile(const std::filesystem::path& file, std::string_view content, Lasting lasting) {
  if (const auto error = replaceFile(file, content, lasting)) {
    throw Failure(ExitCode::Usage, "The file '" + utf8Of(file) +
                                       "' cannot be written: " + systemReason(error) + ".");
  }
}

}  // namespace tlpacscfg::cli
