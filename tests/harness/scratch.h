#pragma once

#include <string>

/// The files of a test. Texts are paths as programs of this platform write them.
namespace tlpacscfg::test {

/// The test's own directory, created empty by freshScratch.
std::wstring scratchPath(const std::wstring& name);
void freshScratch();

/// A path of the Unix file system as this program names it; a path of Windows stays as it is.
std::wstring platformPath(const std::string& path);

/// The path of a scratch file as Unix programs name it, ODBC drivers among them.
std::string scratchUnixPath(const std::string& name);

/// The SQLite database of the data source TlTestSite.
std::wstring siteFile();

bool fileExists(const std::wstring& path);
/// Fails the test when the file cannot be read.
std::string readBytes(const std::wstring& path);
void writeBytes(const std::wstring& path, const std::string& bytes);
void makeDirectory(const std::wstring& path);

/// A file that belongs to the sources of the project; the second as Unix programs name it.
std::wstring sourcePath(const std::string& name);
std::string sourceUnixPath(const std::string& name);

#ifdef _WIN32
/// A file that was built with this program: in its folder, or else in the nearest one above.
std::wstring builtPath(const std::wstring& name);
#endif

}  // namespace tlpacscfg::test
