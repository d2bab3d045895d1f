#include <cstdio>
#include <memory>

#include "log/log_file.h"
#include "support/runtime_error.h"
#include "support/text.h"

namespace tlpacscfg {
namespace {

struct FileCloser {
  void operator()(std::FILE* file) const { std::fclose(file); }
};

}  // namespace

void appendToLogFile(const std::wstring& file, std::wstring_view text) {
  const std::unique_ptr<std::FILE, FileCloser> stream(std::fopen(toUtf8(file).c_str(), "ab"));
  if (!stream) raise(ErrorNumber::PathFileAccess);
  const std::string bytes = toUtf8(text);
  const bool written = std::fwrite(bytes.data(), 1, bytes.size(), stream.get()) == bytes.size();
  if (!written || std::fflush(stream.get()) != 0) raise(ErrorNumber::DiskFull);
}

}  // namespace tlpacscfg
