#pragma once

#include <string>
#include <vector>

/// What is registered of a COM server, as texts: for the DLL itself and for its installer.
namespace tlpacscfg {

/// One value below HKEY_CLASSES_ROOT; an empty name is the key's default value.
struct RegistryEntry {
  std::wstring key;
  std::wstring name;
  std::wstring value;
};

/// GUIDs stand in braces, in upper case.
struct RegisteredClass {
  std::wstring id;
  std::wstring progId;
  /// Empty without a type library; then the class has no version either.
  std::wstring typeLibrary;
};

inline constexpr int kTypeLibraryMajor = 1;
inline constexpr int kTypeLibraryMinor = 0;

std::wstring classKey(const RegisteredClass& type);
std::wstring versionedProgId(const RegisteredClass& type);

/// The names of the class, which the 32-bit and the 64-bit server share.
std::vector<RegistryEntry> nameEntries(const RegisteredClass& type);

/// The server of the class in one file.
std::vector<RegistryEntry> serverEntries(const RegisteredClass& type,
                                         const std::wstring& modulePath);

}  // namespace tlpacscfg
