#include "harness/scratch.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include "support/text.h"

#ifdef _WIN32
#include <windows.h>
#endif

namespace tlpacscfg::test {
namespace {

std::string ofEnvironment(const char* variable) {
  const char* const value = std::getenv(variable);
  if (value == nullptr) throw std::runtime_error("Run the tests through tools/in-scratch.");
  return value;
}

std::string directory() { return ofEnvironment("TL_SCRATCH") + "/test"; }

std::filesystem::path asPath(const std::wstring& path) { return toUtf16(path); }

}  // namespace

std::wstring platformPath(const std::string& path) {
  std::wstring platform = fromUtf8(path);
#ifdef _WIN32
  if (platform.starts_with(L'/')) platform.insert(0, L"Z:");
  std::replace(platform.begin(), platform.end(), L'/', L'\\');
#endif
  return platform;
}

std::string scratchUnixPath(const std::string& name) { return directory() + "/" + name; }

std::wstring scratchPath(const std::wstring& name) {
  return platformPath(scratchUnixPath(toUtf8(name)));
}

void freshScratch() {
  const std::filesystem::path path = asPath(platformPath(directory()));
  std::filesystem::remove_all(path);
  std::filesystem::create_directory(path);
}

std::wstring siteFile() { return scratchPath(L"../site.db"); }

bool fileExists(const std::wstring& path) { return std::filesystem::exists(asPath(path)); }

std::string readBytes(const std::wstring& path) {
  std::ifstream stream(asPath(path), std::ios::binary);
  EXPECT_TRUE(stream.is_open()) << toUtf8(path);
  return {std::istreambuf_iterator<char>(stream), {}};
}

void writeBytes(const std::wstring& path, const std::string& bytes) {
  std::ofstream stream(asPath(path), std::ios::binary);
  stream << bytes;
  stream.close();
  EXPECT_TRUE(stream) << toUtf8(path);
}

void makeDirectory(const std::wstring& path) { std::filesystem::create_directories(asPath(path)); }

std::string sourceUnixPath(const std::string& name) {
  return ofEnvironment("TL_SOURCE_DIR") + "/" + name;
}

std::wstring sourcePath(const std::string& name) { return platformPath(sourceUnixPath(name)); }

#ifdef _WIN32
std::wstring builtPath(const std::wstring& name) {
  wchar_t program[MAX_PATH];
  GetModuleFileNameW(nullptr, program, MAX_PATH);
  for (std::filesystem::path folder = program; folder.has_relative_path();) {
    folder = folder.parent_path();
    if (exists(folder / name)) return (folder / name).wstring();
  }
  throw std::runtime_error("There is no " + toUtf8(name) + " near this program.");
}
#endif

}  // namespace tlpacscfg::test
